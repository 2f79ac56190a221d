#include "platform/recordstore/journal.h"

#include <cstdlib>
#include <optional>

#include "platform/os/program.h"
#include "platform/os/retry.h"
#include "platform/recordstore/engine.h"
#include "platform/text932/cp932.h"

namespace kova::store {
namespace {

constexpr std::size_t kAtOnce = 200;

std::string_view TextOf(const TableDef& journal, const char* record, std::string_view field) {
  const FieldDef& def = *journal.FindField(field);
  return GetText(record + def.offset, def.width);
}

JournalEntry EntryOf(const TableDef& journal, RecordId number, const char* record) {
  JournalEntry entry;
  entry.number = number;
  entry.time = std::atoll(std::string(TextOf(journal, record, "seconds")).c_str());
  entry.workstation = TextOf(journal, record, "workstation");
  entry.isDeleted = TextOf(journal, record, "deed") == "d";
  entry.record.assign(record, record + journal.exactSize);
  return entry;
}

/// Calls `use` with each entry behind a number, until it returns false.
template <typename Use>
Result WalkJournal(Engine& engine, TableId table, RecordId behind, Use use) {
  const TableDef& journal = JournalOf(table);
  RecordBlock block;
  do {
    const Result result = engine.ReadInOrder(journal, behind, kAtOnce, block);
    if (result != Result::kDone) return result;
    for (std::size_t i = 0; i < block.Size(); ++i) {
      behind = block.Id(i);
      if (!use(behind, block.Record(i))) return Result::kDone;
    }
  } while (block.Size() == kAtOnce);
  return Result::kDone;
}

/// What the journal knows of the record that an entry is of.
struct Found {
  std::optional<JournalEntry> entry;
  bool isGone = false;  // it was deleted then or later: what has its key now is another record
};

Result FindEntry(Engine& engine, TableId table, RecordId number, Found& found) {
  const KeyDef& primary = GetTable(table).keys.front();
  std::string key;
  return WalkJournal(engine, table, number - 1, [&](RecordId at, const char* record) {
    if (at == number) {
      found.entry = EntryOf(JournalOf(table), at, record);
      key = MakeKey(primary, record);
    }
    if (found.entry && TextOf(JournalOf(table), record, "deed") == "d" && MakeKey(primary, record) == key)
      found.isGone = true;
    return found.entry.has_value();
  });
}

Result PutBack(Engine& engine, TableId table, RecordId number) {
  Found found;
  Result result = FindEntry(engine, table, number, found);
  if (result != Result::kDone) return result;
  if (!found.entry) return Result::kNotFound;
  const TableDef& def = GetTable(table);
  const char* record = found.entry->record.data();
  const std::string key = MakeKey(def.keys.front(), record);
  RecordBlock there;
  result = engine.Read(def, 0, {ReadFrom::Place::kAtLeast, key}, 1, there);
  if (result != Result::kDone) return result;
  const bool isThere = there.Size() == 1 && MakeKey(def.keys.front(), there.Record(0)) == key;
  if (isThere && found.isGone) return Result::kDuplicate;
  RecordId id = 0;
  return isThere ? engine.Update(def, there.Id(0), record, there.Record(0)) : engine.Insert(def, record, id);
}

Result BringBackOnce(Engine& engine, TableId table, RecordId number) {
  const Result begun = engine.Begin();
  if (begun != Result::kDone) return begun;
  Result result = Result::kFailed;
  try {
    result = PutBack(engine, table, number);
  } catch (const std::exception&) {
    // As any other failure: the transaction must not stay open.
  }
  if (result == Result::kDone) return engine.End();
  (void)engine.Abort();
  return result;
}

}  // namespace

int ReadHistory(CKovaDBSys& db, TableId table, const char* record, std::vector<JournalEntry>& history) try {
  history.clear();
  Engine* const engine = db.GetEngine();
  if (engine == nullptr) return static_cast<int>(Result::kNotOpen);
  const CKovaReads reads(&db);
  const KeyDef& primary = GetTable(table).keys.front();
  const std::string key = MakeKey(primary, record);
  const Result result = WalkJournal(*engine, table, 0, [&](RecordId number, const char* was) {
    if (MakeKey(primary, was) == key) history.push_back(EntryOf(JournalOf(table), number, was));
    return true;
  });
  if (result != Result::kDone) history.clear();
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int BringBack(CKovaDBSys& db, TableId table, long long entry) try {
  Engine* const engine = db.GetEngine();
  if (engine == nullptr) return static_cast<int>(Result::kNotOpen);
  const auto once = [&] { return BringBackOnce(*engine, table, entry); };
  return static_cast<int>(os::RetryWhile(once, [](Result result) { return result == Result::kConflict; }));
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

std::string JournalledWorkstation() {
  const FieldDef& field = *JournalOf(TableId{0}).FindField("workstation");
  const std::string name = os::WorkstationName();
  return text932::ToUtf8(text932::CutAtCharacter(name, field.width - 1));
}

}  // namespace kova::store
