#pragma once

#include <afxwin.h>

#include "entry/kovacomdlg_export.h"

class CCustomTblDB;
class CKovaDBSys;
class CListCtrl;

/// The dialogs that the suite's applications share, and the fillers of their lists: static operations on the
/// caller's user-interface thread. Every dialog is modal over the top-level window of `parent` (null: over
/// the thread's active window), on Windows only; fillers are everywhere, and so is an address
/// search that has one answer.
class KOVACOMDLG_API CKovaComDlg {
 public:
  CKovaComDlg() = delete;

  /// The editor of the practice's mail templates.
  ///
  /// @param mode    what the template is for: 0 reservation reminder, 1 did not come, 2 visited, 3 treatment
  ///                finished, 4 change confirmation, 5 reservation confirmation; the choice is stored in the
  ///                settings. -1: the chosen number goes to `number` and no setting is written
  /// @param number  receives the chosen number; may be null
  /// @param db      for the preview with real reservations; null for a made-up one
  /// @return 1 when it was closed with OK; 0 otherwise, also for another mode, and `number` is then untouched
  static int OpenMailTemplateSetting(CWnd* parent, int mode, int* number = nullptr, CKovaDBSys* db = nullptr);

  /// The tree of the practice's mail templates, to choose one or to change their order.
  ///
  /// @param number  the number to show selected, and then the chosen one (0: none); may be null
  /// @return 1 when it was closed with OK, 0 otherwise, and `number` is then untouched
  static int MailTemplateTree(CWnd* parent, int* number);

  /// How the practice sends its mail, kept in the settings section "EMail".
  ///
  /// @return 1 when it was closed with OK, and the settings are stored; 0 otherwise
  static int OpenMailSetting(CWnd* parent);

  /// The folder of the practice's database, kept in the application profile ("GLOBAL"/"DATABASE"), on which
  /// `db` is then opened anew; null: nothing is opened. Also makes an empty database in a new folder. A
  /// connection that could not be opened on the chosen folder is closed.
  ///
  /// @return the dialog's result: 1 for OK, 2 for cancelled
  static int OpenSettingDBPath(CKovaDBSys* db, CWnd* parent);

  /// The visit flow board of one day, on a connection of its own to the practice's database. Runs until it is
  /// closed.
  ///
  /// @param date  eight digits YYYYMMDD
  /// @return the dialog's result (2 for closed); -1, and nothing is opened, unless `date` has that length
  static int OpenVisitFlowDialog(CString date);
  /// The same for a day in numbers, which are not checked.
  static int OpenVisitFlowDialog(int year, int month, int day);

  /// Finds a patient by the beginning of the ID ("BYID"), the reading ("BYKANA") or the name ("BYNAME"):
  /// `text` is what is searched for at first. The chosen patient's ID; empty when none was chosen.
  static CString KCDQueryPatientData(CKovaDBSys* db, const char* mode, const char* text);

  // Both look into the postal address list "Address.csv" in the program's folder; without it they find
  // nothing. With several answers the user chooses among them; what is not chosen is empty. docs/postal.md
  // says what is found.

  /// The address of a postal code, or of the code that begins with these digits. Hyphens and full-width
  /// digits are understood.
  ///
  /// @param options  none exist: 0
  static CString SearchAddressFormPost(CWnd* parent, CString postalCode, int options = 0);
  /// The postal code, "231-0017", of an address: that of the place in the list with which it begins, so that
  /// a house number does not matter.
  ///
  /// @param furtherText  the form's second line of address; not looked at
  /// @param options      none exist: 0
  static CString SearchPostFromAddress(CWnd* parent, CString address, CString furtherText = CString(),
                                       int options = 0);

  // The column dialogs store their values as numbers in `section` of the host's profile, from which the host
  // builds its list; docs/controls.md lists keys and defaults. Both give the dialog's result, 1 for OK and 2
  // otherwise; 2 at once when there is no list. Where the profile cannot be written the dialog says so and
  // stays open.

  /// Which columns of `list` are shown.
  static int OpenListItemSetting(CListCtrl* list, const char* section, CWnd* parent);
  /// Which columns are shown and in which order, with the options of the patient list.
  ///
  /// @param names  the names of the columns 0, 1, ...; null for none
  /// Both numbers are taken for the callers' sake and mean nothing.
  static int OpenListItemSettingSort(CListCtrl* list, const char* section, CStringArray* names, int,
                                     CWnd* parent, int);

  // The fillers: each fills a drop-down list from one table of the practice and selects the entry whose code
  // is `current` (none when there is no such entry). With a non-zero `addBlank` an entry without text comes
  // first.
  //
  // Each entry carries a block of bytes as item data, its codes one behind the other, each with its
  // terminator; the blank one carries zeros. The blocks belong to the box: FreeComboItemData frees them,
  // before the box is filled again or destroyed. A retired record is listed only while it is the current one.
  // docs/pickers.md lists tables, texts and data.
  //
  // What gives a number gives the record store's result: 0 when the table was read. A table that cannot be
  // read leaves the box empty, but for the blank entry. A null box gives 18; every other pointer may be null.

  /// The categories of a class: "0" reservation types, "1" units, "3" insurance types, "5" stages, ...
  static int EnumCategories(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank,
                            const char* classCode);
  static int EnumUnit(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  static int EnumInssuranceType(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  static int EnumReservationType(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  static int EnumNewPatientManagement(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  /// Never a retired one. No item data: the code is the text's last two characters.
  static void EnumPaymentMethod(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  static int EnumDoctor(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  /// Never a retired one.
  static int EnumStaffData(CKovaDBSys* db, CComboBox* combo, const char* current);
  /// The items of all credit categories.
  static int EnumCreditData(CKovaDBSys* db, CComboBox* combo, const char* currentCategory,
                            const char* currentItem);
  /// The items of one credit category, read on a connection of its own to the practice's database.
  static int EnumCreditItemsOf(CComboBox* combo, const char* category, const char* currentItem);
  /// A retired category is also listed while it is `extraCode`.
  static int EnumCreditCategory(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank,
                                const char* extraCode);
  static int EnumCondition(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank);
  /// Where there is no category at all, "0000" "その他" is stored first.
  static void EnumMaterialItemCate(CKovaDBSys* db, CComboBox* combo, const char* current);
  static int EnumRecallGroupData(CKovaDBSys* db, CComboBox* combo, const char* current);
  /// @param doctors  emptied, then given a new tagINTRODR for every entry but the blank one, in their order;
  ///                 FreeIntroDoctors frees them. May be null
  /// @param kind     0 dentists, 1 physicians, 2 others; any other number: all, with the code in front
  static int EnumIntroDoctor(CKovaDBSys* db, CComboBox* combo, CPtrArray* doctors, const char* current,
                             unsigned char kind, int addBlank);
  /// The items of a free table, by their codes as numbers: "7" selects "0007". `table` is bound to the
  /// connection, read through and closed; null for one of the call's own.
  static void EnumFreeTblItem(CKovaDBSys* db, CCustomTblDB* table, CComboBox* combo, const char* tableId,
                              const char* current, int addBlank);
  /// "NAME NUMBER" of each free table that has a name. The array is emptied first.
  static void EnumFreeTblName(CStringArray* names);
  /// The same for the free dates in `texts`, and the bare names in `names`.
  static void EnumFreeDateTblName(CStringArray* texts, CStringArray* names);

  /// Frees the item data of a box that a filler filled, and empties the box.
  static void FreeComboItemData(CComboBox* combo);
  /// Frees what EnumIntroDoctor put into the array, and empties it.
  static void FreeIntroDoctors(CPtrArray* doctors);
};
