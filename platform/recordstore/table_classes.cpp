#include "platform/recordstore/table_classes.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/retry.h"
#include "platform/recordstore/cursor.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/result.h"
#include "platform/recordstore/schema.h"

using kova::store::Cursor;
using kova::store::Engine;
using kova::store::GetText;
using kova::store::PutText;
using kova::store::Result;

namespace {

constexpr std::string_view kSaleNumbers = "saleNumber";  // the counter
constexpr std::int64_t kLargestSaleNumber = 999999999999;

int Code(Result result) { return static_cast<int>(result); }

// Several writes as one: `writes` gives 0 when all of them worked, and they are kept then only. Retried when
// another workstation's were faster; `written` are the tables whose current records it writes.
template <typename Writes>
int AsUnit(Engine* engine, std::initializer_list<Cursor*> written, Writes writes) {
  if (engine == nullptr) return Code(Result::kNotOpen);
  try {
    std::vector<Cursor::Mark> marks;
    for (const Cursor* each : written) marks.push_back(each->GetMark());
    const auto attempt = [&] {
      const Result begun = engine->BeginUnit();
      if (begun != Result::kDone) return Code(begun);
      int result = writes();
      const Result ended = engine->EndUnit(result == 0);
      if (result == 0) result = Code(ended);
      if (result == 0) return result;
      std::size_t at = 0;
      for (Cursor* each : written) each->ReturnTo(marks[at++]);
      return result;
    };
    // A conflict in the host's transaction loses all of it: there is none to go on in, and only the host can
    // begin it again.
    if (engine->HoldsTransaction()) return attempt();
    return kova::os::RetryWhile(attempt, [](int result) { return result == Code(Result::kConflict); });
  } catch (const std::exception&) {
    (void)engine->EndUnit(false);
    return Code(Result::kFailed);
  }
}

// What a deletion goes by: the current record as the store holds it, not the buffer, which is the host's.
template <typename Record>
int ReadCurrent(Cursor& cursor, Record& record) {
  std::string bytes;
  const Result result = cursor.ReadCurrent(bytes);
  if (result == Result::kDone) std::memcpy(&record, bytes.data(), sizeof record);
  return Code(result);
}

// Takes the counter of sale numbers behind the largest one in use: a host may have stored a sale under a number that the
// counter had yet to reach.
Result PassUsedSaleNumbers(Engine& engine, CKovaDBSys* db) {
  constexpr std::string_view kBehindDigits = ":";
  CSaleDB sales(nullptr, 0);
  int found = sales.SetAssociatedDB(db);
  if (found == 0) {
    sales.SetKeyBuffer(kBehindDigits.data(), kBehindDigits.size());
    found = sales.GetLESS();
  }
  if (found != 0) return static_cast<Result>(found);
  const std::string_view largest = GetText(sales.record.saleNumber);
  std::int64_t number = 0, last = 0;
  const auto parsed = std::from_chars(largest.data(), largest.data() + largest.size(), number);
  // One that is no number of ours is passed by counting.
  if (parsed.ptr != largest.data() + largest.size() || number >= kLargestSaleNumber) return Result::kDone;
  const Result counted = engine.LastNumber(kSaleNumbers, last);
  return counted != Result::kDone || number <= last ? counted : engine.SetLastNumber(kSaleNumbers, number);
}

std::int32_t WrappingAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t WrappingMultiply(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// Walks the records of a bound table whose key 'keyNumber' begins with `number`, a record number.
template <typename Table, typename Use>
int WalkOfNumber(Table& table, int keyNumber, const char (&number)[13], Use use) {
  int result = table.SetKey(keyNumber);
  if (result != 0) return result;
  table.SetKeyBuffer(number, sizeof number);
  for (result = table.GetEQ(); result == 0; result = table.GetNEXT()) {
    const int used = use(table.record);
    if (used < 0) break;
    if (used > 0) return used;
  }
  const bool off = result == Code(Result::kNotFound) || result == Code(Result::kEndOfTable);
  return off ? 0 : result;
}

}  // namespace

int CPatientDB::GetPatientData(CPatientDB2* second, const char* patientCode) {
  const int first = GetPatient1Data(patientCode);
  if (first != 0 || second == nullptr) return first != 0 ? first : Code(Result::kBadArgument);
  int result = second->GetPatient2Data(patientCode);
  if (result != Code(Result::kNotOpen)) return result;
  result = second->SetAssociatedDB(GetDB());
  return result != 0 ? result : second->GetPatient2Data(patientCode);
}

int CPatientDB::UpdatePatientData(CPatientDB2* second, int updateType) {
  if (second == nullptr) return Code(Result::kBadArgument);
  const bool unchanged = updateType == UPDATE_IF_UNCHANGED;
  return AsUnit(GetEngine(), {&GetCursor(), &second->GetCursor()}, [&] {
    const int first = unchanged ? UpdateIfUnchanged() : CBaseDBCall::Update();
    if (first != 0) return first;
    return unchanged ? second->UpdateIfUnchanged() : second->Update();
  });
}

int CReservationDB::Update(int updateType) {
  return updateType == UPDATE_IF_UNCHANGED ? UpdateIfUnchanged() : CBaseDBCall::Update();
}

int CReservationDB::Delete() {
  return AsUnit(GetEngine(), {&GetCursor()}, [&] {
    tagRESERVATION stored;
    CReservationStandbyDB standby(nullptr, 0);
    int result = ReadCurrent(GetCursor(), stored);
    if (result == 0) result = standby.SetAssociatedDB(GetDB());
    while (result == 0) {
      result = standby.GetReservationStandbyDataFromReservationKey(stored.reservationNumber);
      if (result == 0) result = standby.Delete();
    }
    return result == Code(Result::kNotFound) ? CBaseDBCall::Delete() : result;
  });
}

int CReservationStandbyDB::GetReservationStandbyDataFromReservationKey(const char* reservationNumber) {
  tagRESERVATIONSTANDBY wanted{};
  PutText(wanted.reservationNumber, reservationNumber == nullptr ? "" : reservationNumber);
  (void)SetKey(1);
  SetKeyBuffer(wanted.reservationNumber, sizeof wanted.reservationNumber);
  return GetEQ();
}

int CSaleDB::Update(UPDATE_TYPE updateType) {
  return updateType == UPDATE_IF_UNCHANGED ? UpdateIfUnchanged() : CBaseDBCall::Update();
}

int CSaleDB::Delete(int withItems) {
  if (withItems == 0) return CBaseDBCall::Delete();
  return AsUnit(GetEngine(), {&GetCursor()}, [&] {
    tagSALE stored;
    const int read = ReadCurrent(GetCursor(), stored);
    if (read != 0) return read;
    CSaleItemDB items(nullptr, 0);
    const int bound = items.SetAssociatedDB(GetDB());
    if (bound != 0) return bound;
    const int deleted = WalkOfNumber(items, 0, stored.saleNumber, [&](const tagSALEITEM& item) {
      if (std::memcmp(item.saleNumber, stored.saleNumber, sizeof item.saleNumber) != 0) return -1;
      return items.Delete();
    });
    return deleted != 0 ? deleted : CBaseDBCall::Delete();
  });
}

int CSaleDB::InsertAdjustFee(CString& saleNumber, tagSALEITEM* item, void* saleItemTable) {
  saleNumber.Empty();
  auto* items = static_cast<CSaleItemDB*>(saleItemTable);
  if (item == nullptr || items == nullptr) return Code(Result::kBadArgument);
  Engine* engine = GetEngine();
  if (engine != items->GetEngine()) return Code(Result::kBadArgument);
  const int result = AsUnit(engine, {}, [&] {
    int inserted = Code(Result::kDuplicate);
    while (inserted == Code(Result::kDuplicate)) {
      std::int64_t number = 0;
      const Result counted = engine->NextNumber(kSaleNumbers, number);
      if (counted != Result::kDone) return Code(counted);
      if (number > kLargestSaleNumber) return Code(Result::kFull);
      char text[24];
      std::snprintf(text, sizeof text, "%012lld", static_cast<long long>(number));
      PutText(record.saleNumber, text);
      PutText(item->saleNumber, text);
      inserted = Insert();
      if (inserted != Code(Result::kDuplicate)) break;
      const Result passed = PassUsedSaleNumbers(*engine, GetDB());
      if (passed != Result::kDone) return Code(passed);
    }
    PutText(item->lineNumber, "0001");
    items->record = *item;
    return inserted != 0 ? inserted : items->Insert();
  });
  if (result == 0) saleNumber = record.saleNumber;
  return result;
}

int CSaleDB::CalcSum(tagSALE* sale, void* saleItemTable, long* points, long* selfPaid, long* reducedAmount,
                     long* tax, long* total) {
  std::int32_t sums[3] = {};
  auto* items = static_cast<CSaleItemDB*>(saleItemTable);
  int result = sale == nullptr || items == nullptr ? Code(Result::kBadArgument) : 0;
  if (result == 0) {
    result = WalkOfNumber(*items, 0, sale->saleNumber, [&](const tagSALEITEM& item) {
      if (std::memcmp(item.saleNumber, sale->saleNumber, sizeof item.saleNumber) != 0) return -1;
      if (item.insuranceItem != 0) {
        sums[0] = WrappingAdd(sums[0], WrappingMultiply(item.unitPrice, item.quantity));
        return 0;
      }
      sums[1] = WrappingAdd(sums[1], item.amount);
      if (item.reducedRate != 0) sums[2] = WrappingAdd(sums[2], item.amount);
      return 0;
    });
  }
  const bool read = result == 0;
  const std::int32_t saleTax = read ? sale->tax : 0;
  std::int32_t sum = 0;
  if (read) {
    sum = WrappingAdd(WrappingAdd(sums[1], sale->insuredAmount), saleTax);
    sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(sum) -
                                    static_cast<std::uint32_t>(sale->discount));
  }
  const struct {
    long* to;
    std::int32_t value;
  } results[] = {{points, read ? sums[0] : 0},
                 {selfPaid, read ? sums[1] : 0},
                 {reducedAmount, read ? sums[2] : 0},
                 {tax, saleTax},
                 {total, sum}};
  for (const auto& each : results) {
    if (each.to != nullptr) *each.to = each.value;
  }
  return result;
}

int CChargeDB::Delete(int receiptedToo) {
  if (receiptedToo != 0) return CBaseDBCall::Delete();
  return AsUnit(GetEngine(), {&GetCursor()}, [&] {
    tagCHARGE stored;
    const int read = ReadCurrent(GetCursor(), stored);
    if (read != 0) return read;
    return stored.receipted != 0 ? Code(Result::kReceipted) : CBaseDBCall::Delete();
  });
}
