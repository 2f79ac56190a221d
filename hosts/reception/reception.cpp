#include "hosts/reception/reception.h"

#include <afxcmn.h>
#include <commctrl.h>

#include <cstdio>
#include <cstring>

#include "entry/kova_com_dlg.h"
#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "hosts/reception/addresses.h"
#include "hosts/reception/birth_date.h"
#include "hosts/reception/patient_list.h"
#include "hosts/reception/patient_map.h"
#include "hosts/reception/payment.h"
#include "hosts/reception/print_receipt.h"
#include "hosts/reception/resource.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::GetText;
using store::PutText;

std::wstring Wide(std::string_view text) {
  const std::u16string utf16 = text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

/// The number behind the last one: reservations are numbered in twelve digits.
std::string NextNumber(CReservationDB& table) {
  table.SetKey(0);
  const long long last =
      table.GetLAST() == 0 ? std::atoll(std::string(GetText(table.record.reservationNumber)).c_str()) : 0;
  char text[24];
  std::snprintf(text, sizeof text, "%012lld", last + 1);
  return text;
}

}  // namespace

void Reception::Run() {
  HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_KEYS));
  HWND window = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_RECEPTION), nullptr,
                                   &Procedure, reinterpret_cast<LPARAM>(this));
  MSG message;
  while (window != nullptr && GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TranslateAcceleratorW(window, keys, &message) != 0 || IsDialogMessageW(window, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

INT_PTR CALLBACK Reception::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    reinterpret_cast<Reception*>(lParam)->Start(window);
    return TRUE;
  }
  auto* self = reinterpret_cast<Reception*>(GetWindowLongPtrW(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  if (message == WM_COMMAND && HIWORD(wParam) <= 1) self->CommandOrSay(LOWORD(wParam));
  if (message == WM_CLOSE) DestroyWindow(window);
  if (message == WM_DESTROY) {
    self->FreeLists();
    PostQuitMessage(0);
  }
  return message == WM_COMMAND || message == WM_CLOSE ? TRUE : FALSE;
}

void Reception::Start(HWND window) {
  window_.m_hWnd = window;
  const std::string clinic = CKovaSubTools::GetGlobalSettingString("GLOBAL", "ClinicName", "").GetString();
  if (!clinic.empty()) SetWindowTextW(window, Wide("受付 - " + clinic).c_str());
  FillLists();
}

// The library fills the lists; what it attaches to the entries is freed by it, too.
void Reception::FillLists() {
  CKovaDBSys* db = &practice_.Database();
  CComboBox type = Box(IDC_TYPE), unit = Box(IDC_UNIT), doctor = Box(IDC_DOCTOR), staff = Box(IDC_STAFF);
  CKovaComDlg::EnumReservationType(db, &type, "", 1);
  CKovaComDlg::EnumUnit(db, &unit, "", 1);
  CKovaComDlg::EnumDoctor(db, &doctor, "", 1);
  CKovaComDlg::EnumStaffData(db, &staff, "");
}

void Reception::FreeLists() {
  for (const int control : {IDC_TYPE, IDC_UNIT, IDC_DOCTOR, IDC_STAFF}) {
    CComboBox box = Box(control);
    CKovaComDlg::FreeComboItemData(&box);
  }
}

// The database may have gone since the last command.
void Reception::CommandOrSay(int command) try { Command(command); } catch (const UsageError&) {
  Say("データベースが使えません。");
}

void Reception::Command(int command) {
  if (command == IDCANCEL) {
    DestroyWindow(window_.m_hWnd);
  } else if (command == IDC_BOARD) {
    OpenBoard();
  } else if (command == IDC_QUERY || command == IDM_QUERY_KANA) {
    QueryPatient("BYKANA");
  } else if (command == IDM_QUERY_ID) {
    QueryPatient("BYID");
  } else if (command == IDM_QUERY_NAME) {
    QueryPatient("BYNAME");
  } else if (command == IDC_RESERVE) {
    Reserve();
  } else if (command == IDM_MAP) {
    Say(ShowPatientMap(window_, practice_.Database()));
  } else if (command == IDM_PAYMENT) {
    Say(patient_.empty() ? "患者を選んでください。"
                         : TakePayment(window_, practice_.Database(), patient_, Date()));
  } else if (command == IDM_ADDRESSES) {
    LookUpAddresses(window_.m_hWnd);
  } else if (command >= IDM_TEMPLATE && command < IDM_TEMPLATE + 6) {
    CKovaComDlg::OpenMailTemplateSetting(&window_, command - IDM_TEMPLATE, nullptr, &practice_.Database());
  } else if (command == IDM_TEMPLATE_TREE) {
    int number = 0;
    CKovaComDlg::MailTemplateTree(&window_, &number);
  } else if (command == IDM_DATABASE_FOLDER) {
    ChooseDatabase();
  } else if (command == IDM_RESERVATION_COLUMNS) {
    ChooseReservationColumns();
  } else if (command == IDM_MAIL_SETTINGS) {
    CKovaComDlg::OpenMailSetting(&window_);
  } else if (command == IDM_RECEIPT) {
    Say(PrintLastReceipt(practice_.Database(), patient_));
  } else if (command == IDM_PATIENTS) {
    PatientList(practice_.Database()).Run(window_.m_hWnd);
  } else if (command == IDM_BIRTH_DATE) {
    CWnd field;
    field.m_hWnd = GetDlgItem(window_.m_hWnd, IDC_PATIENT);
    Say(EnterBirthDate(field, practice_.Database(), patient_));
  }
}

// The lists are the practice's: another one has others.
// The suite's reservation list is another application's: what is chosen here is what that one reads of its
// profile. The dialog takes the names of the columns from a list, so it is given one that has them.
void Reception::ChooseReservationColumns() {
  CListCtrl list;
  list.m_hWnd = CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 0, 0, window_.m_hWnd, nullptr,
                              nullptr, nullptr);
  int at = 0;
  for (const char* name : {"日付", "時間", "患者", "予約種類", "ユニット", "担当医", "備考"}) {
    std::wstring title = Wide(name);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = title.data();
    SendMessageW(list.m_hWnd, LVM_INSERTCOLUMNW, static_cast<WPARAM>(at++),
                 reinterpret_cast<LPARAM>(&column));
  }
  if (CKovaComDlg::OpenListItemSetting(&list, "Reserv", &window_) == 1)
    Say("予約一覧の表示項目を保存しました。");
  DestroyWindow(list.m_hWnd);
}

void Reception::ChooseDatabase() {
  CKovaComDlg::OpenSettingDBPath(&practice_.Connection(), &window_);
  patient_.clear();
  SetDlgItemTextW(window_.m_hWnd, IDC_PATIENT, L"");
  FreeLists();
  FillLists();
}

void Reception::OpenBoard() { CKovaComDlg::OpenVisitFlowDialog(Date().c_str()); }

void Reception::QueryPatient(const char* mode) {
  const CString chosen = CKovaComDlg::KCDQueryPatientData(&practice_.Database(), mode, "");
  CPatientDB patients(nullptr, 0);
  if (chosen.IsEmpty() || patients.SetAssociatedDB(&practice_.Database()) != 0) return;
  if (patients.GetPatient1Data(chosen) != 0) return;
  patient_ = chosen.GetString();
  const std::string shown = patient_ + "　" + std::string(GetText(patients.record.name));
  SetDlgItemTextW(window_.m_hWnd, IDC_PATIENT, Wide(shown).c_str());
}

void Reception::Reserve() {
  char time[8]{};
  GetDlgItemTextA(window_.m_hWnd, IDC_TIME, time, sizeof time);
  if (patient_.empty() || std::strlen(time) != 4) {
    Say("患者と、時間（4 桁、例 0930）を入れてください。");
    return;
  }
  CReservationDB table(nullptr, 0);
  if (table.SetAssociatedDB(&practice_.Database()) != 0 || table.BeginTran() != 0) {
    Say("データベースが使えません。");
    return;
  }
  const std::string number = NextNumber(table);
  table.record = {};
  PutText(table.record.reservationNumber, number);
  PutText(table.record.patientCode, patient_);
  PutText(table.record.reservationDate, Date());
  PutText(table.record.startTime, time);
  PutText(table.record.typeCode, Code(IDC_TYPE, 2));
  PutText(table.record.unitCode, Code(IDC_UNIT, 2));
  PutText(table.record.doctorCode, Code(IDC_DOCTOR, 0));
  PutText(table.record.staffId, Code(IDC_STAFF, 0));
  const int inserted = table.Insert();
  const int result = inserted == 0 ? table.EndTran() : inserted;
  if (inserted != 0) table.AbortTran();
  Say(result == 0 ? "予約 " + number + " を入れました。" : "予約を入れられませんでした。");
}

CComboBox Reception::Box(int control) const {
  CComboBox box;
  box.m_hWnd = GetDlgItem(window_.m_hWnd, control);
  return box;
}

/// The code of the chosen entry: `offset` bytes into its item data (a category's begins with its class).
std::string Reception::Code(int control, std::size_t offset) const {
  const CComboBox box = Box(control);
  const int chosen = box.GetCurSel();
  if (chosen < 0) return {};
  const auto* data = reinterpret_cast<const char*>(box.GetItemData(chosen));
  return data == nullptr ? std::string() : std::string(data + offset);
}

std::string Reception::Date() const {
  SYSTEMTIME day{};
  SendDlgItemMessageW(window_.m_hWnd, IDC_DATE, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&day));
  char text[40];
  std::snprintf(text, sizeof text, "%04d%02d%02d", day.wYear, day.wMonth, day.wDay);
  return text;
}

void Reception::Say(const std::string& text) const {
  SetDlgItemTextW(window_.m_hWnd, IDC_STATUS, Wide(text).c_str());
}

}  // namespace kova::hosts
