// day: turns the fees of today's first visited reservations into sales, as the reception does it, prints what
// the database then holds, and sends those patients the mail that they have come. Or ends the day: hands the
// receipts of its sales over to the form printer.

#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "hosts/companions/message_reader.h"
#include "hosts/console/console.h"
#include "hosts/console/practice.h"
#include "hosts/day/columns.h"
#include "hosts/day/receipts.h"
#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/program.h"
#include "platform/recordstore/walk.h"
#include "platform/text932/cp932.h"
#include "platform/toollib/tools.h"
#include "records/reservations.h"
#include "reservations/fee_request.h"

namespace kova::hosts {
namespace {

using store::GetText;
using store::PutText;

constexpr const char* kUsage =
    "usage: day --app FILE.ini [--date YYYYMMDD] [--count N | --receipts FOLDER], or day --show-mail "
    "FILE.eml";
constexpr std::size_t kLargestMail = 64U << 20;

struct Request {
  std::string date;
  int count = 10;
  std::string receipts;  // the form printer's folder; empty: sell
};

std::string Today() {
  const std::time_t now = std::time(nullptr);
  char text[16];
  std::strftime(text, sizeof text, "%Y%m%d", std::localtime(&now));
  return text;
}

Request Parse(const std::vector<std::string>& arguments, Practice& practice) {
  Request request{Today(), 10, {}};
  for (std::size_t i = 0; i < arguments.size(); i += 2) {
    if (i + 1 == arguments.size()) throw UsageError(kUsage);
    const std::string& value = arguments[i + 1];
    if (arguments[i] == "--app") {
      practice.UseProfile(AbsoluteName(value));
    } else if (arguments[i] == "--date") {
      NumberArgument(value, "--date", 10000101, 99991231);
      request.date = value;
    } else if (arguments[i] == "--count") {
      request.count = static_cast<int>(NumberArgument(value, "--count", 1, 10000));
    } else if (arguments[i] == "--receipts") {
      request.receipts = TextArgument(AbsoluteName(value), "--receipts");
    } else {
      throw UsageError(kUsage);
    }
  }
  return request;
}

/// Throws when the record store did not do what it was asked to.
void Check(int result, const char* what) {
  if (result != 0) throw UsageError(std::string(what) + ": result " + DescribeResult(result));
}

bool IsDue(const tagRESERVATION& reservation) {
  return records::TakesPlace(reservation) && reservation.visited != 0 && reservation.hasFee != 0 &&
         GetText(reservation.saleNumber).empty();
}

/// The numbers of the day's visited reservations with a fee and without a sale, in order of time.
std::vector<std::string> FindDue(CKovaDBSys& db, const Request& request) {
  const CKovaReads reads(&db);
  std::vector<tagRESERVATION> reservations;
  Check(records::ReadReservationsOfDay(&db, request.date, reservations), "the reservations");
  std::vector<std::string> due;
  for (const tagRESERVATION& each : reservations) {
    if (due.size() == static_cast<std::size_t>(request.count)) break;
    if (IsDue(each)) due.emplace_back(GetText(each.reservationNumber));
  }
  return due;
}

/// Inside a transaction: the sale, and its number in the reservation.
int SellInTransaction(CKovaDBSys& db, CReservationDB& table, const std::string& number) {
  const int found = table.GetReservationData(number.c_str());
  if (found != 0) return found;
  if (!IsDue(table.record)) return 0;  // another workstation was faster
  tagFEEREQUEST fee = FeeRequestOf(table.record);
  const int sold = CKovaSubTools::ReservationToSale(&db, &fee);
  if (sold != 0) return sold;
  PutText(table.record.saleNumber, GetText(fee.saleNumber));
  return table.Update(UPDATE_IF_UNCHANGED);
}

/// The sale and the reservation that knows of it, both or neither.
void Sell(CKovaDBSys& db, CReservationDB& table, const std::string& number) {
  Check(table.BeginTran(), "a transaction");
  const int result = SellInTransaction(db, table, number);
  if (result != 0) (void)table.AbortTran();
  Check(result, "a sale");
  Check(table.EndTran(), "a sale");
}

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

std::string RateOf(const tagSALE& sale) {
  if (sale.tax == 0) return "-";
  const int reduced = sale.reducedRateTax != 0 ? 1 : 0;
  const double rate = CKovaSubTools::GetTaxRate(std::string(GetText(sale.saleDate)).c_str(), "", reduced);
  return std::to_string(CKovaSubTools::RoundOff(1, rate * 100)) + " %" + (reduced != 0 ? " *" : "");
}

/// The first record of a sale's items.
int GetFirstItem(CSaleItemDB& items, const tagSALE& sale) {
  int found = static_cast<int>(store::Result::kNotFound);
  const int result = store::Walk(items, CSaleItemDB::Key::Primary, {GetText(sale.saleNumber)}, [&](const tagSALEITEM&) {
    found = 0;
    return false;
  });
  return result != 0 ? result : found;
}

std::vector<std::string> ReadRow(CKovaDBSys& db, const std::string& reservationNumber) {
  const CKovaReads reads(&db);
  CReservationDB reservations(nullptr, 0);
  CPatientDB patients(nullptr, 0);
  CSaleDB sales(nullptr, 0);
  CSaleItemDB items(nullptr, 0);
  for (CBaseDBCall* each : std::initializer_list<CBaseDBCall*>{&reservations, &patients, &sales, &items})
    Check(each->SetAssociatedDB(&db), "a table");
  Check(reservations.GetReservationData(reservationNumber.c_str()), "the reservation");
  const tagRESERVATION& reservation = reservations.record;
  Check(patients.GetPatient1Data(std::string(GetText(reservation.patientCode)).c_str()), "the patient");
  Check(sales.GetSaleData(std::string(GetText(reservation.saleNumber)).c_str()), "the sale");
  Check(GetFirstItem(items, sales.record), "the sale's item");
  const bool named = items.record.itemName[0] != 0;
  return {Utf8(GetText(patients.record.name)),
          Utf8(named ? GetText(items.record.itemName) : GetText(items.record.itemText)),
          CTools::NumericFormat(items.record.amount),
          RateOf(sales.record),
          CTools::NumericFormat(sales.record.tax),
          CTools::NumericFormat(sales.record.total),
          Utf8(GetText(sales.record.saleNumber))};
}

/// Sends the reservation's patient the mail that they have come; 1 sent, 0 not.
int SendVisitMail(CKovaDBSys& db, CReservationDB& table, const std::string& number) {
  Check(table.GetReservationData(number.c_str()), "the reservation");
  return CKovaSubTools::SendVisitMail(&db, table.record);
}

int ShowMail(const std::string& file) {
  std::string content;
  if (os::RealFiles().Read(TextArgument(file, "--show-mail"), kLargestMail, content) != os::FileOutcome::kOk)
    throw UsageError("cannot read the mail " + file);
  const companions::ReadableMail mail = companions::ReadMessage(content);
  for (const char* name : {"From", "To", "Subject"})
    Print(std::string(name) + ": " + ShowControls(mail.Field(name)) + "\n");
  Print("\n" + mail.body);
  return 0;
}

int Main(const std::vector<std::string>& arguments) {
  if (arguments.size() == 2 && arguments[0] == "--show-mail") return ShowMail(arguments[1]);
  Practice practice;
  const Request request = Parse(arguments, practice);
  if (!request.receipts.empty()) return HandOverReceipts(practice, request.date, request.receipts), 0;
  CKovaDBSys& db = practice.Database();
  const std::vector<std::string> due = FindDue(db, request);
  CReservationDB table(nullptr, 0);
  Check(table.SetAssociatedDB(&db), "the reservations");
  for (const std::string& number : due) Sell(db, table, number);
  std::vector<std::vector<std::string>> rows;
  for (const std::string& number : due) rows.push_back(ReadRow(db, number));
  Print(FormatTable({{"patient"},
                     {"item"},
                     {"amount", true},
                     {"rate", true},
                     {"tax", true},
                     {"total", true},
                     {"sale number"}},
                    rows));
  // The mail programs are found from the current directory; the profile was named from the caller's.
  std::filesystem::current_path(os::ToFilesystemPath(os::ProgramFolder()));
  int sent = 0;
  for (const std::string& number : due) sent += SendVisitMail(db, table, number);
  Print("\nmails that they have come: " + std::to_string(sent) + " of " + std::to_string(due.size()) + "\n");
  return 0;
}

}  // namespace
}  // namespace kova::hosts

int main(int argc, char** argv) { return kova::hosts::RunConsole("day", argc, argv, kova::hosts::Main); }
