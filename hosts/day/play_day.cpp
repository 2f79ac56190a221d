// play_day: a day at the reception on a display that nobody has to sit at. Opens the board as a host does,
// moves patients through it by the board's own buttons, has one of them pay at the terminal (for which a
// bridge must be running), leaves pictures, and prints what was written, read back from the database.

#include <windows.h>
#include <commctrl.h>

#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "entry/kova_com_dlg.h"
#include "hosts/console/console.h"
#include "hosts/console/practice.h"
#include "hosts/day/columns.h"
#include "hosts/person/window_driver.h"
#include "hosts/reception/payment.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/program.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "platform/text932/cp932.h"
#include "records/sales.h"

namespace kova::hosts {
namespace {

using store::GetText;

// The board's controls.
constexpr int kBefore = 8123, kStaged = 8128, kFinished = 8125;
constexpr int kBeforeToNext = 8131, kForward = 8133, kBack = 8134, kToFinished = 8127, kClose = IDCANCEL;
// The payment's.
constexpr int kCashless = 102, kFirstKind = 200;

int Rows(HWND board, int list) { return ListView_GetItemCount(person::Item(board, list)); }

/// The rows of a list that have a text in `column`.
std::vector<int> RowsIn(HWND board, int list, int column) {
  HWND window = person::Item(board, list);
  std::vector<int> rows;
  for (int row = 0; row < Rows(board, list); ++row) {
    if (!person::ListCell(window, row, column).empty()) rows.push_back(row);
  }
  return rows;
}

/// Where patients stand: a list and, in the stage list, a stage.
struct Place {
  int list;
  int column = 0;
};

/// Selects the last `count` patients of a place, presses a button, and waits until they are at the other
/// place.
void Move(HWND board, Place from, std::size_t count, int button, Place to) {
  HWND list = person::Item(board, from.list);
  const std::vector<int> there = RowsIn(board, from.list, from.column);
  if (there.size() < count) throw std::runtime_error("too few patients to move");
  const std::size_t before = RowsIn(board, to.list, to.column).size();
  SendMessageW(board, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list), TRUE);
  ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
  for (std::size_t i = there.size() - count; i < there.size(); ++i)
    ListView_SetItemState(list, there[i], LVIS_SELECTED, LVIS_SELECTED);
  person::WaitFor("the button", [&] { return IsWindowEnabled(person::Item(board, button)) != 0; });
  person::Press(board, button);
  person::WaitFor("the move", [&] { return RowsIn(board, to.list, to.column).size() == before + count; });
}

/// Five patients come, and are brought from stage to stage.
void PlayMorning() {
  HWND board = person::Dialog("来院の流れ");
  person::Photograph(board, "board-1-morning");
  Move(board, {kBefore}, 5, kBeforeToNext, {kStaged, 0});
  person::Photograph(board, "board-2-five-have-come");
  Move(board, {kStaged, 0}, 2, kForward, {kStaged, 1});
  Move(board, {kStaged, 1}, 2, kForward, {kStaged, 2});
  Move(board, {kStaged, 2}, 1, kBack, {kStaged, 1});
  person::Photograph(board, "board-3-in-treatment");
  person::Press(board, kClose);
  person::WaitUntilClosed(board);
}

/// One of them pays at the terminal.
void PlayPayment() {
  HWND choice = person::Dialog("お支払い方法");
  person::Photograph(choice, "board-4-cash-or-cashless");
  person::Press(choice, kCashless);
  HWND payment = person::Dialog("キャッシュレス決済");
  person::Press(payment, kFirstKind);
  person::WaitFor("the terminal", [&] { return IsWindowEnabled(person::Item(payment, kFirstKind)) == 0; });
  person::Photograph(payment, "board-5-at-the-terminal");
  person::WaitUntilClosed(payment);
}

/// Three are finished.
void PlayEvening() {
  HWND board = person::Dialog("来院の流れ");
  Move(board, {kStaged, 2}, 3, kToFinished, {kFinished});
  person::Photograph(board, "board-6-finished");
  person::Press(board, kClose);
  person::WaitUntilClosed(board);
}

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

void Check(int result, const char* what) {
  if (result != 0) throw UsageError(std::string(what) + ": result " + DescribeResult(result));
}

/// What the reservations of the day hold, of those that were moved since `from` (HHMM).
std::vector<std::vector<std::string>> MovedRows(CKovaDBSys& db, const std::string& date,
                                                const std::string& from) {
  const CKovaReads reads(&db);
  store::On<CReservationDB> table(db);
  store::On<CPatientDB> patients(db);
  std::vector<std::vector<std::string>> rows;
  int failed = 0;
  const int walked = store::Walk(table, CReservationDB::Key::ByDateAndTime, {date}, [&](const tagRESERVATION& record) {
    if (GetText(record.stageTime) < from) return;
    const int found = patients.GetPatient1Data(std::string(GetText(record.patientCode)).c_str());
    if (found != 0) failed = found;
    rows.push_back({Utf8(GetText(record.startTime)), Utf8(GetText(patients.record.name)),
                    Utf8(GetText(record.stageCode)), Utf8(GetText(record.stageTime)),
                    Utf8(GetText(record.finishTime)), record.visited != 0 ? "yes" : "no",
                    Utf8(GetText(record.saleNumber))});
  });
  Check(walked, "the reservations");
  Check(failed, "a patient");
  return rows;
}

/// A sale of the day that is not paid yet.
tagSALE UnpaidSale(CKovaDBSys& db, const std::string& date) {
  std::vector<tagSALE> sales;
  Check(records::ReadSalesOfDay(&db, date, sales), "the sales");
  for (const tagSALE& sale : sales) {
    if (sale.total > 0 && sale.receivedAmount == 0) return sale;
  }
  return {};
}

/// The patient of that sale pays; what the sale holds then.
void TakePaymentOf(const tagSALE& unpaid, CKovaDBSys& db, const std::string& date) {
  CWnd none;
  std::string told;
  const std::string patient(GetText(unpaid.patientCode));
  const std::string failure =
      person::Drive([&] { told = TakePayment(none, db, patient, date); }, PlayPayment);
  if (!failure.empty()) throw UsageError("the payment could not be played: " + failure);
  store::On<CSaleDB> sales(db);
  store::On<CCategoryDB> methods(db);
  Check(sales.GetSaleData(unpaid.saleNumber), "the sale");
  Check(methods.GetCategoryData("2", sales.record.categoryCode), "the payment method");
  Print("\nPaid at the counter, as the database now holds it: " + Utf8(told) + "\n\n");
  Print(FormatTable({{"sale number"}, {"total", true}, {"received", true}, {"payment method"}},
                    {{Utf8(GetText(sales.record.saleNumber)), std::to_string(sales.record.total),
                      std::to_string(sales.record.receivedAmount), Utf8(GetText(methods.record.name))}}));
}

std::string Now(const char* format) {
  const std::time_t now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, format, std::localtime(&now));
  return text;
}

void OpenBoard(const std::string& date, void (*play)()) {
  const std::string failure = person::Drive([&] { CKovaComDlg::OpenVisitFlowDialog(date.c_str()); }, play);
  if (!failure.empty()) throw UsageError("the day could not be played: " + failure);
}

int Main(const std::vector<std::string>& arguments) {
  if (arguments.size() != 2 || arguments[0] != "--app") throw UsageError("usage: play_day --app FILE.ini");
  Practice practice;
  practice.UseProfile(AbsoluteName(arguments[1]));
  std::filesystem::current_path(os::ToFilesystemPath(os::ProgramFolder()));
  const std::string date = Now("%Y%m%d");
  const std::string from = Now("%H%M");
  OpenBoard(date, PlayMorning);
  const tagSALE unpaid = UnpaidSale(practice.Database(), date);
  if (GetText(unpaid.saleNumber).empty()) throw UsageError("the day made no sale");
  TakePaymentOf(unpaid, practice.Database(), date);
  OpenBoard(date, PlayEvening);
  Print("\nMoved on the board of " + date + ", as the database now holds it:\n\n");
  Print(FormatTable({{"time"}, {"patient"}, {"stage"}, {"moved"}, {"finished"}, {"visited"}, {"sale number"}},
                    MovedRows(practice.Database(), date, from)));
  return 0;
}

}  // namespace
}  // namespace kova::hosts

int main(int argc, char** argv) { return kova::hosts::RunConsole("play_day", argc, argv, kova::hosts::Main); }
