#include "platform/recordstore/migration.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <vector>

#include "platform/os/drives.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/recordstore/engine.h"

namespace kova::store {
namespace {

constexpr std::size_t kRecordsAtOnce = 1000;     // a read
constexpr std::size_t kRecordsPerCommit = 10000;
constexpr std::size_t kLongestPath = 2000;
constexpr std::string_view kNumbers[] = {"saleNumber"};

std::string Folder(std::string_view folder) { return std::string(os::DropTrailingDelimiter(folder)); }

class Migration {
 public:
  Migration(const MigrationProgress& progress, std::string& problem) : progress_(progress), problem_(problem) {}

  Result Run(std::string_view from, std::string_view to) {
    Result result = Open(from, to);
    if (result == Result::kDone) result = MustBeUnchanged();
    for (const TableDef& table : AllTables()) {
      if (result == Result::kDone) result = Copy(table);
    }
    if (result == Result::kDone) result = CopyNumbers();
    for (const TableDef& table : AllTables()) {
      if (result == Result::kDone) result = Compare(table);
    }
    if (result == Result::kDone) result = CompareNumbers();
    // What somebody wrote meanwhile is no damage.
    if (result == Result::kDone || result == Result::kDamaged) {
      const Result unchanged = MustBeUnchanged();
      if (unchanged != Result::kDone) result = unchanged;
    }
    return result == Result::kDone ? Finish(to) : result;
  }

 private:
  Result Fail(Result result, const std::string& why) {
    if (problem_.empty() || result == Result::kChanged) problem_ = why;
    return result;
  }

  Result Open(std::string_view from, std::string_view to) {
    if (Folder(from) == Folder(to)) return Fail(Result::kBadArgument, "source and target are the same folder");
    Result result = Result::kFailed;
    from_ = OpenEngine(from, os::IsRemoteFolder(from), result, problem_);
    if (from_ == nullptr) return Fail(result, "the source cannot be opened");
    // While the file is there, OpenEngine refuses the folder. It has the source's folder, and its stamp at the beginning.
    const std::string unfinished = os::JoinPath(to, kUnfinishedFile);
    std::string begun;
    const bool goesOn = files_.Read(unfinished, kLongestPath, begun) == os::FileOutcome::kOk;
    const std::size_t line = begun.find('\n');
    if (goesOn && begun.substr(0, line) != Folder(from))
      return Fail(Result::kDuplicate, "the target is an unfinished migration from another folder");
    to_ = OpenUnfinished(to, os::IsRemoteFolder(to), result, problem_);
    if (to_ == nullptr) return Fail(result, "the target cannot be opened");
    if (goesOn) {
      if (line != std::string::npos) (void)std::from_chars(begun.data() + line + 1, begun.data() + begun.size(), stamp_);
      return Mark(true);
    }
    result = MustBeEmpty();
    if (result == Result::kDone) result = Stamp(stamp_);
    if (result == Result::kDone &&
        files_.Create(unfinished, Folder(from) + "\n" + std::to_string(stamp_)) != os::FileOutcome::kOk)
      return Fail(Result::kReadOnly, "the target's folder cannot be written");
    return result == Result::kDone ? Mark(true) : result;
  }

  Result Mark(bool isUnfinished) {
    const Result result = to_->MarkUnfinished(isUnfinished);
    return result == Result::kDone ? result : Fail(result, "the target cannot be written");
  }

  Result MustBeUnchanged() {
    std::int64_t now = 0;
    const Result result = Stamp(now);
    if (result != Result::kDone || now == stamp_) return result;
    return Fail(Result::kChanged, "the source was written to since the beginning: start again with an empty target");
  }

  Result MustBeEmpty() {
    RecordBlock block;
    for (const TableDef& table : AllTables()) {
      const Result result = to_->ReadInOrder(table, 0, 1, block);
      if (result != Result::kDone) return result;
      if (block.Size() > 0) return Fail(Result::kDuplicate, "the target has records in " + std::string(table.name));
    }
    return Result::kDone;
  }

  Result Stamp(std::int64_t& sum) {
    std::vector<TableId> tables;
    for (const TableDef& table : AllTables()) tables.push_back(table.id);
    return from_->ChangeStamps(tables, sum);
  }

  bool Tell(std::string_view what, const TableDef& table, std::int64_t records) {
    return progress_ == nullptr || progress_({what, table.name, records});
  }

  /// How many records the target has already.
  Result Count(const TableDef& table, std::int64_t& count) {
    RecordBlock block;
    RecordId last = 0;
    count = 0;
    do {
      const Result result = to_->ReadInOrder(table, last, kRecordsAtOnce, block);
      if (result != Result::kDone) return result;
      count += static_cast<std::int64_t>(block.Size());
      if (block.Size() > 0) last = block.Id(block.Size() - 1);
    } while (block.Size() == kRecordsAtOnce);
    return Result::kDone;
  }

  Result Copy(const TableDef& table) {
    std::int64_t there = 0, read = 0;
    Result result = Count(table, there);
    RecordBlock block;
    RecordId last = 0;
    bool isOpen = false;
    std::size_t written = 0;
    while (result == Result::kDone) {
      result = from_->ReadInOrder(table, last, kRecordsAtOnce, block);
      if (result != Result::kDone || block.Size() == 0) break;
      last = block.Id(block.Size() - 1);
      const auto skipped = static_cast<std::size_t>(
          std::clamp<std::int64_t>(there - read, 0, static_cast<std::int64_t>(block.Size())));
      read += static_cast<std::int64_t>(block.Size());
      if (!isOpen) result = to_->BeginUnit();
      isOpen = isOpen || result == Result::kDone;
      if (result == Result::kDone) result = to_->InsertMany(table, block, skipped);
      written += block.Size() - skipped;
      if (result == Result::kDone && written >= kRecordsPerCommit) {
        isOpen = false;
        written = 0;
        result = to_->EndUnit(true);
      }
      if (result == Result::kDone && !Tell("copying", table, read)) {
        if (isOpen) (void)to_->EndUnit(true);
        return Fail(Result::kBusy, "stopped; the same command goes on");
      }
    }
    if (isOpen) {
      const Result ended = to_->EndUnit(result == Result::kDone);
      if (result == Result::kDone) result = ended;
    }
    return result == Result::kDone ? result : Fail(result, std::string(table.name) + " could not be copied");
  }

  Result CopyNumbers() {
    for (const std::string_view name : kNumbers) {
      std::int64_t number = 0;
      Result result = from_->LastNumber(name, number);
      if (result == Result::kDone) result = to_->BeginUnit();
      if (result != Result::kDone) return result;
      result = to_->SetLastNumber(name, number);
      const Result ended = to_->EndUnit(result == Result::kDone);
      if (result == Result::kDone) result = ended;
      if (result != Result::kDone) return Fail(result, "the numbers could not be copied");
    }
    return Result::kDone;
  }

  // In the order of writing: so records with equal keys are in the same order, too.
  Result Compare(const TableDef& table) {
    RecordBlock one, other;
    RecordId lastOne = 0, lastOther = 0;
    std::int64_t compared = 0;
    do {
      Result result = from_->ReadInOrder(table, lastOne, kRecordsAtOnce, one);
      if (result == Result::kDone) result = to_->ReadInOrder(table, lastOther, kRecordsAtOnce, other);
      if (result != Result::kDone) return Fail(result, std::string(table.name) + " could not be compared");
      bool isSame = one.Size() == other.Size();
      for (std::size_t i = 0; isSame && i < one.Size(); ++i)
        isSame = std::memcmp(one.Record(i), other.Record(i), table.recordSize) == 0;
      if (!isSame) return Fail(Result::kDamaged, std::string(table.name) + " is not the same in the target");
      if (one.Size() == 0) break;
      lastOne = one.Id(one.Size() - 1);
      lastOther = other.Id(other.Size() - 1);
      compared += static_cast<std::int64_t>(one.Size());
      if (!Tell("comparing", table, compared)) return Fail(Result::kBusy, "stopped; the same command goes on");
    } while (one.Size() == kRecordsAtOnce);
    return Result::kDone;
  }

  Result CompareNumbers() {
    for (const std::string_view name : kNumbers) {
      std::int64_t one = 0, other = 0;
      Result result = from_->LastNumber(name, one);
      if (result == Result::kDone) result = to_->LastNumber(name, other);
      if (result != Result::kDone || one != other)
        return Fail(result == Result::kDone ? Result::kDamaged : result, "the numbers are not the same in the target");
    }
    return Result::kDone;
  }

  Result Finish(std::string_view to) {
    const Result marked = Mark(false);
    if (marked != Result::kDone) return marked;
    const bool worked = files_.Delete(os::JoinPath(to, kUnfinishedFile)) == os::FileOutcome::kOk;
    return worked ? Result::kDone : Fail(Result::kReadOnly, "the target's folder cannot be written");
  }

  const MigrationProgress& progress_;
  std::string& problem_;
  os::Files& files_ = os::RealFiles();
  std::unique_ptr<Engine> from_, to_;
  std::int64_t stamp_ = 0;  // of the source's tables together, at the beginning
};

}  // namespace

Result Migrate(std::string_view from, std::string_view to, const MigrationProgress& progress, std::string& problem) {
  problem.clear();
  return Migration(progress, problem).Run(from, to);
}

}  // namespace kova::store
