#pragma once

// What the record store needs of a storage engine. An engine keeps the records of every table in the order of
// every key and knows nothing of record buffers, current positions or the exported classes: cursor.h does
// that, the same for every engine.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/change_book.h"
#include "platform/recordstore/kovadbcall_export.h"
#include "platform/recordstore/result.h"
#include "platform/recordstore/schema.h"

namespace kova::store {

/// Identifies a record while it exists; records with equal keys are in the order of these numbers.
using RecordId = std::int64_t;

/// Where a read begins and which way it goes. Key bytes are as MakeKey gives them.
struct ReadFrom {
  enum class Place {
    kFirst,    ///< forward from the first record of the key
    kLast,     ///< backward from the last
    kAtLeast,  ///< forward from the first record whose key is not less than `key`
    kAfter,    ///< forward from behind (`key`, `id`)
    kAtMost,   ///< backward from the last record whose key is not greater than `key`
    kBelow,    ///< backward from the last record whose key is less than `key`
    kBefore,   ///< backward from before (`key`, `id`)
  };
  Place place;
  std::string_view key = {};
  RecordId id = 0;
  /// Forward reads end behind the last record whose key is not greater than this, where it is given.
  std::optional<std::string_view> upTo = {};
  /// Forward reads give only records whose key begins with one of these, where they are given (`upTo` is not, then). They are
  /// in the order of the key, and none begins with another one.
  std::optional<std::span<const std::string>> beginnings = {};
};

/// Records read in one go, in reading order.
class RecordBlock {
 public:
  void Reset(std::size_t recordSize) {
    recordSize_ = recordSize;
    ids_.clear();
    bytes_.clear();
  }
  /// A zero-filled place for one more record.
  char* Add(RecordId id) {
    ids_.push_back(id);
    bytes_.resize(ids_.size() * recordSize_);
    return bytes_.data() + (ids_.size() - 1) * recordSize_;
  }
  void Append(const RecordBlock& other) {
    ids_.insert(ids_.end(), other.ids_.begin(), other.ids_.end());
    bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
  }
  void DropLast() {
    ids_.pop_back();
    bytes_.resize(ids_.size() * recordSize_);
  }
  std::size_t Size() const { return ids_.size(); }
  RecordId Id(std::size_t at) const { return ids_[at]; }
  const char* Record(std::size_t at) const { return bytes_.data() + at * recordSize_; }

 private:
  std::size_t recordSize_ = 0;
  std::vector<RecordId> ids_;
  std::vector<char> bytes_;
};

/// An open database. Used by one thread. Nothing throws but std::bad_alloc.
class KOVADBCALL_API Engine {
 public:
  virtual ~Engine() = default;

  /// Reads at most `limit` records; fewer when the key ends before.
  virtual Result Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
                      RecordBlock& block) = 0;

  /// True for a store on the other side of a network: a question costs far more than the records that it
  /// brings, so that whoever knows what it will need asks for it at once.
  virtual bool IsDistant() const { return false; }
  /// Reads the records that exist of these primary keys, in any order, with few questions.
  virtual Result ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, RecordBlock& block);

  /// Reads at most `limit` records in the order in which they were written, those behind this one; 0 begins.
  virtual Result ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) = 0;

  /// Each of these is written whole or not at all; outside a transaction it is durable when it returns kDone.
  virtual Result Insert(const TableDef& table, const char* record, RecordId& id) = 0;
  /// With `expected` only when the stored record still is that, byte for byte; kChanged when it is not.
  virtual Result Update(const TableDef& table, RecordId id, const char* record, const char* expected) = 0;
  virtual Result Delete(const TableDef& table, RecordId id) = 0;
  /// Inserts a block's records from number `first` on, in their order; within a transaction.
  virtual Result InsertMany(const TableDef& table, const RecordBlock& block, std::size_t first);

  /// The host's transaction. It holds the store's write lock from its beginning, so that what is read in it
  /// cannot be changed by others before its end. End gives the failure, and nothing is written, when it was
  /// lost.
  virtual Result Begin() = 0;
  virtual Result End() = 0;
  virtual Result Abort() = 0;
  /// True from Begin or BeginUnit to the matching end, also when the transaction was lost meanwhile.
  virtual bool HoldsTransaction() const = 0;

  /// Several writes that belong together, within the host's transaction or as one of their own. Not nested.
  virtual Result BeginUnit() = 0;
  /// Keeps them (`worked`) or takes all of them back. Gives the failure when keeping fails.
  virtual Result EndUnit(bool worked) = 0;

  /// Between these, reads see the database as it was at the first of them, at the cost of one lock for all.
  /// Nests. A write in between is done and ends that view.
  virtual void BeginReads() = 0;
  virtual void EndReads() = 0;
  /// Says that nothing is read between these but with the next read: where a question costs much, it can be the last one.
  virtual void EndReadsWithNext() {}
  /// The view that is open, 0 for none: what was read in one holds while this number does.
  virtual std::uint64_t ReadView() const = 0;

  /// The sum of the tables' change stamps, at the price of one look-up's lock. A table's stamp is a number
  /// that grows with every change of it, by whichever workstation: seconds since 1970 when changes are slower
  /// than one a second. Changes of the open transaction that were looked at count too, and once more when
  /// they are taken back: what was read at one of these stamps is never taken for what stands later.
  virtual Result ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) = 0;
  Result ChangeStamp(const TableDef& table, std::int64_t& stamp) {
    return ChangeStamps({&table.id, 1}, stamp);
  }

  /// Counts `counter` up and gives the new value; taken back with the unit or transaction that it is called
  /// in.
  virtual Result NextNumber(std::string_view counter, std::int64_t& number) = 0;
  /// The number given last, and setting it: for moving a practice.
  virtual Result LastNumber(std::string_view counter, std::int64_t& number) = 0;
  virtual Result SetLastNumber(std::string_view counter, std::int64_t number) = 0;

  /// For a store that several folders may name: says to all of them that a migration into it is not finished, or is.
  virtual Result MarkUnfinished(bool) { return Result::kDone; }

  /// What this connection wrote: which records read ahead are still good, and which were taken back.
  virtual const ChangeBook& Changes() const = 0;

  /// Questions to a distant store so far; 0 where there are none.
  virtual std::uint64_t RoundTrips() const { return 0; }

  /// Checks the whole database; kDamaged and the first finding in `finding` when something is wrong.
  virtual Result CheckIntegrity(std::string& finding) = 0;

 protected:
  /// A read with `beginnings` as reads without, for engines to which a question costs little.
  Result ReadBeginnings(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
                        RecordBlock& block);
};

/// Opens the database of `folder` (code page 932, as hosts give it): on the server that a file in it names, or in
/// the folder itself. Null, the reason in `result` and, where there is more to say, a line in `problem` (UTF-8, for the
/// support engineer) when it cannot. `overNetwork`: the folder lies on another machine, which decides how a
/// file may be shared.
std::unique_ptr<Engine> OpenEngine(std::string_view folder, bool overNetwork, Result& result, std::string& problem);

/// Lays out an empty database for `folder`, which is made when missing. Leaves one that is there already as it
/// is and gives kDuplicate.
Result CreateDatabase(std::string_view folder, bool overNetwork, std::string& problem);

/// The same for a folder that a migration is not finished in, which OpenEngine refuses.
std::unique_ptr<Engine> OpenUnfinished(std::string_view folder, bool overNetwork, Result& result, std::string& problem);

/// In a folder while the migration into it is not finished. Engine::MarkUnfinished says the same to other folders.
inline constexpr std::string_view kUnfinishedFile = "kova.migration";

/// The file that marks a folder as a database folder. Copied last, so that a half-copied folder has none.
inline constexpr std::string_view kMarkerFile = "INDEXCONTROL.BTR";

}  // namespace kova::store
