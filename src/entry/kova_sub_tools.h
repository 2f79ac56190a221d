#pragma once

#include <afx.h>
#include <afxdisp.h>
#include <afxwin.h>

#include "entry/kovacomdlg_export.h"
#include "entry/post_list.h"

class CKovaDBSys;
class CPatientDB;
class CPatientDB2;
struct _NEXTCARDDATA;
struct _TMPRECEIPT;
struct _TMPSALEITEM;
struct tagPATIENTDB;
struct tagRESERVATION;
struct tagSALE;

/// The calculations and file exchanges that must come out alike in all applications of the suite. All
/// operations are static, keep nothing between calls, read the settings that they need afresh and run on the
/// caller's thread. Texts are code page 932; dates are YYYYMMDD; amounts are whole yen in 32 bits. No
/// exception leaves an operation: where memory or a file fails, the answer is the one given for "nothing
/// there".
class KOVACOMDLG_API CKovaSubTools {
 public:
  // ---- The practice's settings: "GLOBALSETTING.ini" in the database folder that the application profile
  // names
  // ("GLOBAL"/"DATABASE"), or "GLOBALSETTING_n.ini" where "GLOBAL"/"PROFILE" is n.

  /// TRUE when "GLOBALSETTING.ini" exists, whatever "PROFILE" says (deliberately).
  static int IsExistGlobalSettingFile();

  /// The value of a key, at most 999 bytes; the default when there is no database folder, file, section or
  /// key.
  static CString GetGlobalSettingString(const char* section, const char* key, const char* defaultValue);
  /// Stores a value; makes file, section and key as needed. A failing write is silent. A null value removes
  /// the key.
  static void SetGlobalSettingString(const char* section, const char* key, const char* value);

  /// The value as a number by atoi's rule: a key that is there but empty or no number gives 0, not the
  /// default.
  static int GetGlobalSettingInt(const char* section, const char* key, int defaultValue);
  static void SetGlobalSettingInt(const char* section, const char* key, int value);

  /// The number on the first line of a switch file in the database folder; 0 when there is none.
  static int GetGlobalOptSys(const char* fileName);

  // ---- Folders. Each ends in "\"; empty means not available.

  /// The running program's folder.
  static CString GetProgramFolder();
  /// The folder above it.
  static CString GetInstallFolder();
  /// "tmp\" in the program folder, made when missing.
  static CString GetTemporaryFolder();
  /// "templates\" in the database folder; neither made nor looked for.
  static CString GetTemplatesFolder();
  /// The profile's "GLOBAL"/"Photo" as stored, or "Photo\" in the database folder, made when missing.
  static CString GetPhotoPath();
  /// A patient's folder in the photo path; made when `create` is non-zero.
  static CString GetPatientPhotoFolder(const char* patientId, int create);
  /// The full name of the patient's face photo, which need not exist.
  static CString GetFacePhotoPath(const char* patientId, int create);
  /// Folders in the database folder whose existence switches a link on; empty when they do not exist.
  static CString GetGoogleConnectPath();
  static CString GetWebConnectPath();
  static CString GetCheckInPath();
  /// TRUE when the matching path is not empty.
  static int IsGoogleConnect();
  static int IsWebConnect();
  static int IsCheckIn();

  /// Copies the empty database that is installed beside the program ("KovaEmptyDB" beside the program's
  /// folder) into a folder, which is made when missing. 0 for success. Other than 0: nothing is there that
  /// was not before. A folder that holds a database, or a file that the copy would write over, is left as it
  /// is.
  static int DoCopyEmptyDB(const char* folder);

  // ---- Consumption tax (settings section "MENTE").

  /// The rate in force on `date`, as a fraction: 0.08 is 8 %. 0.0 when no period contains the date.
  ///
  /// @param contractDate  date of the contract, or "": counts as "GLOBAL"/"ConsumptionTaxCont2" says
  /// @param reduced       non-zero for the reduced rate
  static double GetTaxRate(const char* date, const char* contractDate, int reduced);
  /// TRUE when the period of `date` has a reduced rate above zero.
  static int IsTaxReduce(const char* date);
  /// Whole yen by a rounding mode: 1 half up, 2 up, 3 down, other toward zero; see charges/rounding.h.
  static long RoundOff(short mode, double value);
  static long GetRoundOffLong(double value);

  // ---- Insurance contribution. `charge` points to a tagCONTRIBUTION (charges/contributions.h); null counts
  // as zeros.

  /// The patient's contribution in yen before the amount borne elsewhere is taken off.
  static long CalcPartialContribution(void* charge, int roundMode);
  /// That less the amount borne elsewhere; 0 for a flat-amount charge.
  static long CalcPublicContribution(void* charge, int roundMode);
  /// Both at once.
  static void CalcContribution(long* contribution, long* net, void* charge, int roundMode);
  /// The receipt rate of the period that contains the date, as a fraction; 0.0 when there is none.
  static double GetReceptRate(const char* date);
  /// The same in whole percent; 0 when there is none.
  static int GetReceptPercent(COleDateTime date);
  /// Orders elements by their leading 32-bit number, for qsort; never 0.
  static int cmpRecept(const void* a, const void* b);

  // ---- Reservations and sales.

  /// Turns the fee of a reservation into a sale of one item. `feeRequest` points to a tagFEEREQUEST
  /// (reservations/fee_request.h), whose sale number is set. 0 for success, else the record store's result;
  /// nothing is written then. Opens no transaction of its own: inside the caller's it belongs to that one.
  static int ReservationToSale(CKovaDBSys* db, void* feeRequest);
  /// Sets the patient's finished date, in the database that the application profile names and in a
  /// transaction of its own. Mode non-zero: to `date`, eight digits. Mode 0: to the last day on which a visit
  /// of the patient was finished, empty without one; `date` is not used. 0 for success, else the record
  /// store's result.
  static int SetFinishedDate(const char* patientCode, const char* date, int mode);

  // ---- Mail templates: numbered files in GetTemplatesFolder (docs/mail-files.md). Texts may hold zero
  // bytes.

  /// Stores a template, new or not. 0 for success; -1 when it could not be written, and it is then as it was.
  static int SetReservationTemplate(int number, CString name, CString subject, CString body);
  /// 0 for success; -1 when there is none or it cannot be read, and the texts are then untouched.
  static int GetReservationTemplate(int number, CString& name, CString& subject, CString& body);
  /// A number that no template had before, noted in "$mt.index"; 0 when that file is missing or cannot be
  /// written.
  static int GetNextTemplateNumber();
  /// 0 for success; -1 when there is none or it could not be removed.
  static int DeleteReservationTemplate(int number);
  /// Fills the array with the lines of the selection tree, depth first: "0001" for a template at the top,
  /// "0002-0001" for one under another (its own number first). Gives their count.
  static int LoadTemplateTree(CStringArray* lines);
  /// Stores such lines as the tree; those that name no template are left out, templates without a line go to
  /// the end. 0 for success, -1 when it could not be written.
  static int SaveTemplateTree(const CStringArray* lines);

  // ---- Mails, by the suite's companion programs below the current directory. Each operation waits for its
  // program, at most a minute. 1: the program said that it was done; 0: anything else. Texts go into the
  // command line as they are.

  static int SendMail(const char* to, const char* subject, const char* body, const char* patientId,
                      const char* staffId);
  /// Opens the mail for the user to finish.
  static int DraftMail(const char* to, const char* subject, const char* body, const char* patientId,
                       const char* staffId, const char* itemId);
  /// Sends saved mail files; with a non-zero `doNotKeep` they are not kept.
  static int SendEmlFiles(const char* path, int doNotKeep);
  /// Sends the reservation mails of one day.
  static int SendReservationMail(const char* to, const char* date);

  // ---- Mails about one reservation: the template that the settings name for the purpose, filled with the
  // reservation's and the patient's data. 1 sent, 0 not: there may be no template, no patient, no permission,
  // no address, or the user said No ("GLOBAL"/"WatchConfirm").

  /// The patient has come.
  static int SendVisitMail(CKovaDBSys* db, tagRESERVATION reservation);
  /// Treatment is finished.
  static int SendFinishedMail(CKovaDBSys* db, tagRESERVATION reservation);
  /// The reservation was changed. "EMail"/"CONTACT": 0 sends it, 1 opens it as a draft, other: no mail.
  static int SendChangeConfirmMail(CKovaDBSys* db, tagRESERVATION reservation);
  /// The mail that template `number` makes of a reservation; sends nothing. 1 filled; 0 without the template
  /// or the patient; -1 when whether they are there cannot be read. The texts are untouched unless filled. `to` is
  /// empty when the patient gets no mail.
  static int FillReservationTemplate(CKovaDBSys* db, int number, tagRESERVATION reservation, CString& to,
                                     CString& subject, CString& body);
  /// Reads the reservation's patient through both tables, which are bound to a connection. Non-zero when both
  /// records are there and the patient allows mail.
  static int SetAppoPatientInfo2(const tagRESERVATION& reservation, CPatientDB* patient,
                                 CPatientDB2* contact);

  // ---- Notices to patients' smartphone application (docs/notices.md).

  /// Drops a notice into the outgoing folder (its name is used as given: with "\" at its end). 0 when there
  /// is nobody to be told: the application ID is empty or "++++++++++". Else 1, also when it could not be
  /// written.
  static int SendNotice(const char* folder, const char* applicationId, const char* title, const char* body);
  /// When a patient last logged in to the application and about how long ago, of the stamp YYYYMMDDhhmmss:
  /// "2024-1-1 09:30:00  (かなり前)". Empty for an empty stamp and for one that holds no date.
  static CString AppliLastLoginStr(const char* stamp);
  /// The address of the machine's network adapter, "00-15-5D-0A-1B-2C"; zeros when it has none.
  static CString GetMacAddressTest();

  // ---- Payments: cash or cashless, at the terminal that the practice has (docs/cashless.md). The dialogs
  // are modal over `parent` (null: the active window), on Windows only; elsewhere they are cancelled.

  /// Takes a payment: 1 paid cashless, 0 cash (or nothing to pay cashless), -1 cancelled or failed. After -1
  /// the money may have been taken all the same; the dialog has said so then, and the payment stays on
  /// record.
  ///
  /// @param result        the code of the payment method to book it under; untouched when no payment dialog
  /// ran
  /// @param text          whom or what it is for; the terminal is told
  /// @param offersChoice  non-zero: cash or cashless is asked only beside a cash changer
  /// @param cashlessOnly  non-zero: it is not asked at all
  static int Payment(CWnd* parent, long amount, CString& result, const char* text, int offersChoice,
                     int cashlessOnly);
  /// Asks the user: 1 cash, 2 cashless, 0 cancelled. 1 without asking when there is nothing to pay or no
  /// terminal. `flag` non-zero: the cash goes through the cash changer.
  static int CashlessOrCash(CWnd* parent, long amount, unsigned type, int flag);
  /// Runs the payment dialog of the terminal; non-zero when the payment was completed. `result` as of
  /// Payment, empty when it was not.
  static int CallCashless(CWnd* parent, long amount, CString& result, const char* text);
  /// The terminal's type: 0 none, 2 and 4 reached by the bridge, any other by a control object.
  static unsigned GetCashlessType();
  /// Passes a sale's change to the cash changer and waits for it: 1 done, 0 not done or not to be done (no
  /// changer, no change, or money to be returned where the profile forbids it).
  static int UseCashChanger(CKovaDBSys* db, tagSALE* sale);

  // ---- The map of patients, from "PostGeo.csv" and "map_tmp.htm" in the program folder
  // (docs/patient-map.md). Where an operation takes `progress`, it shows how far it is in a window over that
  // one, which lets the user stop it; null: it shows nothing.

  /// The whole job: counts how many of the codes lie at each place, writes the page "map.htm" into the
  /// program folder and opens it in the browser, behind a progress window over `parent`. 1 when the page was
  /// opened; 0 when the user stopped it, or it failed, which the user is told. The connection keeps the table
  /// of places; its counts are 0 afterwards.
  static int CallPostToMap(CKovaDBSys* db, CWnd* parent, CStringArray* codes);
  /// The connection's table of places, empty before the first use; null without a connection. It goes with
  /// it.
  static CPostList* GetPostList(CKovaDBSys* db);
  /// An empty table for RemapPostList; FreePlaceList frees it.
  static CPlaceList* NewPlaceList();
  static void FreePlaceList(CPlaceList* places);
  /// Loads the connection's table, unless it is loaded. 0 only when the user stopped it; a file that cannot
  /// be read leaves it empty.
  static int InitPostList(CKovaDBSys* db, CWnd* progress);
  /// Counts one patient's code: without "-", filled up with zeros to seven digits, cut there. An unknown one
  /// is not counted.
  static void SetPostData(CPostList* table, const char* code);
  /// Sets every count to 0.
  static void ResetPostList(CPostList* table);
  /// Gathers what was counted by place into the empty table `places`, and gives the box around it (999, 0,
  /// 999, 0 when nothing was); any of the numbers may be null. 0 when the user stopped it, else 1.
  static int RemapPostList(CWnd* progress, CPostList* table, CPlaceList* places, double* minLatitude,
                           double* maxLatitude, double* minLongitude, double* maxLongitude);
  /// Writes the page of what was counted and opens it; as CallPostToMap.
  static int CallPostMap(CWnd* progress, CPostList* table);

  // ---- Printed documents: files for the suite's form-printing program (docs/receipts.md). A file is written
  // whole or not at all, and flushed; the one that was there before stays until then.

  /// Hands a receipt (printing/receipt.h) over as `basePath` + ".tmp". 0 done; -1 the file could not be
  /// written; -2 there is no receipt, no path, or a line is missing; -3 more columns than the 999 that the
  /// format holds. But for 0 an older ".tmp" is as it was.
  ///
  /// @param db     not used, may be null: the receipt says everything
  /// @param flags  KOVA_PRINT_REISSUED marks a receipt that was printed before; other bits mean nothing
  static int CreatePrintTmp(CKovaDBSys* db, const char* basePath, unsigned int flags, _TMPRECEIPT* receipt);
  /// The same for a stored sale, with its items and its charge. Also -4: no such sale, or it cannot be read; -5, here and
  /// above: the practice's settings cannot be read.
  static int CreatePrintTmpOfSale(CKovaDBSys* db, const char* basePath, unsigned int flags,
                                  const char* saleNumber);
  /// Writes a patient's form data to the file `path`, with what the database that the application profile
  /// names holds of the patient. 0 done; -1 the database or the settings could not be read or the file not written, which
  /// is as it was.
  static long CreatePrintFile(tagPATIENTDB* patient, const CString& path);
  /// The same through the host's own connection, for who prints many: opening one takes longer than all the
  /// rest. Null or closed: -1.
  static long CreatePrintFile(CKovaDBSys* db, tagPATIENTDB* patient, const CString& path);
  /// Fills `card` (printing/next_card.h) with the patient's next appointments, from that database. Gives
  /// their count, 0 to 4; -1, and the card is empty, when they cannot be read.
  static int DoLoadResData(const char* patientCode, _NEXTCARDDATA* card);
  /// Non-zero when a receipt's line is taxed at the reduced rate: its category or item says so, and its date
  /// has one. `printListSum4` is taken for the sake of the callers: whether the line is marked is not asked
  /// here.
  static int CheckReduce(_TMPSALEITEM* item, int printListSum4);

  // ---- Text, numbers, dates.

  /// TRUE when every byte is a digit, so also for the empty text.
  static int IsNumeric(const char* text);
  /// The amount in a text typed with thousands separators.
  static long Str2Long(const char* text);
  /// Kana converted: mode 1 full-width hiragana, 3 full-width katakana, other half-width katakana; then
  /// spaces made half-width (space flag 0) or full-width.
  static CString ChangeFurigana(const char* text, int kanaMode, int spaceFlag);
  /// The reading of what the input method has just put into the window, in the kana mode's form; empty when
  /// there is none. Ask while the result is being reported (WM_IME_COMPOSITION), and append it to the reading
  /// field.
  static CString GetFurigana(CWnd* edit, int kanaMode, int spaceFlag);
  /// The difference of two clock times given as HHMM numbers, as HHMM.
  static short GetTimeSpan(short later, short earlier);
  /// "日" for 1 to "土" for 7; empty for another number.
  static CString GetDayOfWeekString(int weekday);
  static CString GetPrivilegeName(int privilege);
  /// The index of an equal element; -1 after appending the text because there was none.
  static int CmpAdd(CStringArray* list, const char* text);

 private:
  /// Full name of the settings file; empty without a database folder.
  static CString GetGlobalSettingFile();
  /// Runs a companion program.
  static int ExecMail(const char* commandLine);
};
