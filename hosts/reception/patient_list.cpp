#include "hosts/reception/patient_list.h"

#include <afxcmn.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "entry/kova_com_dlg.h"
#include "hosts/reception/birth_date.h"
#include "hosts/reception/patient_list_ids.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using controls::PlacedColumn;
using store::GetText;

constexpr char kSection[] = "PatientList";
constexpr int kByReading = 2;

std::string WithGuardian(const tagPATIENTDB& patient, bool isWanted) {
  const std::string name(GetText(patient.name));
  const std::string guardian(GetText(patient.guardianName));
  return !isWanted || guardian.empty() ? name : name + "（" + guardian + "）";
}

/// A column of the list: its numbers in the profile are its place here.
struct ListedField {
  const char* title;
  int width;  // on a workstation that has not set up its columns
  std::string (*text)(const tagPATIENTDB& patient, const controls::PatientListChoices& choices);
};
constexpr std::array<ListedField, 7> kFields = {{
    {"ＩＤ", 80, [](const auto& patient, const auto&) { return std::string(GetText(patient.patientCode)); }},
    {"フリガナ", 120, [](const auto& patient, const auto&) { return std::string(GetText(patient.reading)); }},
    {"氏名", 140,
     [](const auto& patient, const auto& choices) { return WithGuardian(patient, choices.front()); }},
    {"性別", 40,
     [](const auto& patient, const auto&) { return std::string(patient.sexCode == 1 ? "男" : "女"); }},
    {"生年月日", 120,
     [](const auto& patient, const auto&) { return StoredDateText(GetText(patient.birthDate)); }},
    {"電話", -100, [](const auto& patient, const auto&) { return std::string(GetText(patient.phone)); }},
    {"住所", -200, [](const auto& patient, const auto&) { return std::string(GetText(patient.address)); }},
}};

std::wstring Wide(std::string_view text) {
  const std::u16string utf16 = text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

os::IniApplicationProfile Profile() { return {os::RealFiles(), AfxGetApp()->m_pszProfileName}; }

std::vector<PlacedColumn> ReadOrDefaultColumns() {
  const os::IniApplicationProfile profile = Profile();
  if (controls::StoredPositions(profile, kSection) > 0)
    return controls::ReadColumns(profile, kSection, static_cast<int>(kFields.size()));
  std::vector<PlacedColumn> columns;
  for (const ListedField& field : kFields) columns.push_back({static_cast<int>(columns.size()), field.width});
  return columns;
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
  columns_ = ReadOrDefaultColumns();
  ShowColumns();
  SendMessageW(window_.m_hWnd, LVM_SETITEMCOUNT, patients_.size(), 0);
  Stretch();
}

void PatientList::ReadPatients() {
  const CKovaReads reads(&db_);
  CPatientDB table(nullptr, 0);
  if (table.SetAssociatedDB(&db_) != 0 || table.SetKey(kByReading) != 0) return;
  for (int result = table.GetFIRST(); result == 0 && table.IsEOF() == 0; result = table.GetNEXT()) {
    if (table.record.neverListed != 1) patients_.push_back(table.record);
  }
}

void PatientList::ShowColumns() {
  choices_ = controls::ReadPatientListChoices(Profile());
  while (ListView_DeleteColumn(window_.m_hWnd, 0)) {
  }
  int at = 0;
  for (const PlacedColumn& column : columns_) {
    if (!column.IsShown()) continue;
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
  for (PlacedColumn& column : columns_) {
    if (column.IsShown()) column.width = ListView_GetColumnWidth(window_.m_hWnd, at++);
  }
  os::IniApplicationProfile profile = Profile();
  (void)controls::StoreColumns(profile, kSection, columns_);  // they are kept when they can be
}

void PatientList::SetUpColumns() {
  KeepWidths();
  CListCtrl list;
  list.m_hWnd = window_.m_hWnd;
  CStringArray names;
  for (const ListedField& field : kFields) names.Add(field.title);
  if (CKovaComDlg::OpenListItemSettingSort(&list, kSection, &names, 0, &window_, 0) != 1) return;
  columns_ = ReadOrDefaultColumns();
  ShowColumns();
}

void PatientList::GiveText(NMLVDISPINFOW& asked) const {
  LVITEMW& item = asked.item;
  const bool isThere = item.iItem >= 0 && item.iItem < static_cast<int>(patients_.size());
  if ((item.mask & LVIF_TEXT) == 0 || item.cchTextMax <= 0 || !isThere) return;
  std::vector<PlacedColumn> shown;
  std::ranges::copy_if(columns_, std::back_inserter(shown), &PlacedColumn::IsShown);
  if (item.iSubItem >= static_cast<int>(shown.size())) return;
  const ListedField& field =
      kFields[static_cast<std::size_t>(shown[static_cast<std::size_t>(item.iSubItem)].column)];
  const std::wstring text = Wide(field.text(patients_[static_cast<std::size_t>(item.iItem)], choices_));
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
