#include "hosts/reception/patient_list.h"

#include <afxcmn.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "entry/kova_com_dlg.h"
#include "hosts/reception/resource.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::GetText;

constexpr char kSection[] = "PatientList";

using Patient = tagPATIENTDB;

std::string WithGuardian(const Patient& patient, bool isWanted) {
  const std::string name(GetText(patient.name));
  const std::string guardian(GetText(patient.guardianName));
  return !isWanted || guardian.empty() ? name : name + "（" + guardian + "）";
}

std::string Dotted(std::string_view date) {
  if (date.size() != 8) return std::string(date);
  return std::string(date.substr(0, 4)) + "." + std::string(date.substr(4, 2)) + "." +
         std::string(date.substr(6));
}

/// A column of the list: its number in the profile is its place here.
struct ListedField {
  const char* title;
  int width;  // in 96ths of an inch on a workstation that has not set up its columns; negative: hidden
  std::string (*text)(const Patient& patient, bool withGuardian);
};
constexpr std::array<ListedField, 7> kFields = {{
    {"ＩＤ", 80, [](const Patient& patient, bool) { return std::string(GetText(patient.patientCode)); }},
    {"フリガナ", 120, [](const Patient& patient, bool) { return std::string(GetText(patient.reading)); }},
    {"氏名", 140, &WithGuardian},
    {"性別", 40,
     [](const Patient& patient, bool) {
       return std::string(patient.sexCode == 1 ? "男" : patient.sexCode == 2 ? "女" : "");
     }},
    {"生年月日", 100, [](const Patient& patient, bool) { return Dotted(GetText(patient.birthDate)); }},
    {"電話", -100, [](const Patient& patient, bool) { return std::string(GetText(patient.phone)); }},
    {"住所", -200, [](const Patient& patient, bool) { return std::string(GetText(patient.address)); }},
}};

std::wstring Wide(std::string_view text) {
  const std::u16string utf16 = text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

bool IsShown(const ShownColumn& column) { return column.width >= 0; }

std::vector<ShownColumn> ReadListColumns(HWND window) {
  std::vector<ShownColumn> normally;
  for (const ListedField& field : kFields)
    normally.push_back({static_cast<int>(normally.size()),
                        MulDiv(field.width, static_cast<int>(GetDpiForWindow(window)), 96)});
  return ReadColumns(kSection, normally);
}

}  // namespace

void PatientList::Run(HWND parent) {
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_PATIENTS), parent, &Procedure,
                  reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK PatientList::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    reinterpret_cast<PatientList*>(lParam)->Start(window);
    return TRUE;
  }
  auto* self = reinterpret_cast<PatientList*>(GetWindowLongPtrW(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  if (message == WM_SIZE) self->Stretch();
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == LVN_GETDISPINFOW)
    self->GiveText(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
  if (message == WM_COMMAND && LOWORD(wParam) == IDC_COLUMNS) self->SetUpColumns();
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
    self->KeepWidths();
    EndDialog(window, IDCANCEL);
  }
  return FALSE;
}

void PatientList::Start(HWND window) {
  window_.m_hWnd = GetDlgItem(window, IDC_PATIENTS);
  ListView_SetExtendedListViewStyle(window_.m_hWnd, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  ReadPatients();
  columns_ = ReadListColumns(window_.m_hWnd);
  ShowColumns();
  SendMessageW(window_.m_hWnd, LVM_SETITEMCOUNT, patients_.size(), 0);
  Stretch();
}

void PatientList::ReadPatients() {
  const CKovaReads reads(&db_);
  store::On<CPatientDB> table(db_);
  const int result = store::Walk(table, CPatientDB::Key::ByReading, {}, [&](const tagPATIENTDB& patient) {
    if (patient.neverListed != 1) patients_.push_back(patient);
  });
  if (result == 0) return;
  // Half a list would be taken for all patients.
  patients_.clear();
  const std::string told = "患者を読み込めません（" + std::to_string(result) + "）。画面を開き直してください。";
  MessageBoxW(GetParent(window_.m_hWnd), Wide(told).c_str(), L"患者一覧", MB_ICONWARNING);
}

void PatientList::ShowColumns() {
  withGuardian_ = IsGuardianShown();
  while (ListView_DeleteColumn(window_.m_hWnd, 0)) {
  }
  int at = 0;
  for (const ShownColumn& column : columns_) {
    if (!IsShown(column)) continue;
    std::wstring title = Wide(kFields[static_cast<std::size_t>(column.column)].title);
    LVCOLUMNW added{};
    added.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    added.cx = column.width;
    added.pszText = title.data();
    added.iSubItem = at;
    SendMessageW(window_.m_hWnd, LVM_INSERTCOLUMNW, static_cast<WPARAM>(at++),
                 reinterpret_cast<LPARAM>(&added));
  }
  InvalidateRect(window_.m_hWnd, nullptr, TRUE);
}

// The widths as the user left them; also what the dialog starts from.
void PatientList::KeepWidths() {
  int at = 0;
  for (ShownColumn& column : columns_) {
    if (IsShown(column)) column.width = ListView_GetColumnWidth(window_.m_hWnd, at++);
  }
  WriteColumns(kSection, columns_);
}

void PatientList::SetUpColumns() {
  KeepWidths();
  CListCtrl list;
  list.m_hWnd = window_.m_hWnd;
  CStringArray names;
  for (const ListedField& field : kFields) names.Add(field.title);
  if (CKovaComDlg::OpenListItemSettingSort(&list, kSection, &names, 0, &window_, 0) != 1) return;
  columns_ = ReadListColumns(window_.m_hWnd);
  ShowColumns();
}

void PatientList::GiveText(NMLVDISPINFOW& asked) const {
  LVITEMW& item = asked.item;
  const bool isThere = item.iItem >= 0 && item.iItem < static_cast<int>(patients_.size());
  if ((item.mask & LVIF_TEXT) == 0 || item.cchTextMax <= 0 || !isThere) return;
  std::vector<ShownColumn> shown;
  std::ranges::copy_if(columns_, std::back_inserter(shown), &IsShown);
  if (item.iSubItem >= static_cast<int>(shown.size())) return;
  const ListedField& field =
      kFields[static_cast<std::size_t>(shown[static_cast<std::size_t>(item.iSubItem)].column)];
  const std::wstring text = Wide(field.text(patients_[static_cast<std::size_t>(item.iItem)], withGuardian_));
  lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

// The list takes the room that the window has.
void PatientList::Stretch() const {
  HWND dialog = GetParent(window_.m_hWnd);
  RECT inside{}, place{};
  GetClientRect(dialog, &inside);
  GetWindowRect(window_.m_hWnd, &place);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  MoveWindow(window_.m_hWnd, place.left, place.top, inside.right - 2 * place.left,
             inside.bottom - place.top - place.left, TRUE);
}

}  // namespace kova::hosts
