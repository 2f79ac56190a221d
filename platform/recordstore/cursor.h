#pragma once

// A table object's place in a table: the key in use, the key buffer, the current record and what was read
// ahead. The same for every engine.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/recordstore/engine.h"

namespace kova::store {

class Cursor {
 public:
  /// `buffer` is the table object's record buffer; it outlives the cursor.
  Cursor(const TableDef& table, char* buffer) : table_(table), buffer_(buffer) {}

  const TableDef& Table() const { return table_; }

  /// Null unbinds. The current record is forgotten.
  void Bind(Engine* engine);
  bool IsBound() const { return engine_ != nullptr; }
  Engine* BoundEngine() const { return engine_; }

  Result SetKey(int keyNumber);
  /// Loads these fields and those of the keys from now on, all of them for no names; the current record is
  /// forgotten.
  Result SetFields(std::string_view names);
  /// Bytes past the key's width are dropped when a position is looked for; fewer bytes are a prefix.
  void SetKeyBuffer(std::string_view bytes) { keyBuffer_ = bytes; }

  /// Nothing: no end.
  void SetWalkEnd(std::optional<std::string_view> key);
  /// As ReadFrom::beginnings.
  void SetWalk(std::span<const std::string> beginnings);
  /// Before many look-ups by the first field of the primary key. What was read is forgotten with the next call.
  Result ReadAhead(std::span<const std::string> firstFields);

  /// The primary key of the record in the buffer, at its full width.
  std::string PrimeKeyOfBuffer() const;

  /// Each loads the record that it finds into the buffer; the buffer is left as it is when there is none.
  Result GetEqual();
  Result GetGreaterOrEqual();
  Result GetLessOrEqual();
  Result GetLess();
  Result GetFirst();
  Result GetLast();
  /// From behind the last record or before the first one there is no way back but a new positioning.
  Result GetNext();
  Result GetPrevious();

  /// True when the last positioning ran off either end.
  bool AtEnd() const { return atEnd_; }

  Result Insert();
  /// Not where only some fields are read. With `onlyUnchanged` the store must still hold the record as this
  /// cursor read it.
  Result Update(bool onlyUnchanged);
  Result Delete();
  /// The current record as the store holds it now, whatever the buffer holds; kChanged when it was deleted.
  Result ReadCurrent(std::string& record);

  /// The current record, for coming back to it after an Update or a Delete that the store took back.
  struct Mark {
    bool hasRecord;
    std::string original;
  };
  Mark GetMark() const;
  void ReturnTo(const Mark& mark);

 private:
  Result Position(const ReadFrom& from, bool mustEqual);
  Result Step(bool forward);
  bool BlockGoesOn(bool forward) const;
  Result ReadBlock(ReadFrom from, std::size_t limit);
  Result Load(Result readResult);
  void Take();
  bool HasRecord() const;
  Result RunOff();
  bool IsWholeKey() const { return keyIndex_ == 0 && keyBuffer_.size() >= Key().width; }
  std::size_t FirstLimit(bool mustEqual) const;
  std::size_t WholeWalkLimit() const;
  bool FindAhead(Result& result);
  const KeyDef& Key() const { return table_.keys[keyIndex_]; }
  std::string TrimmedKeyBuffer() const;
  bool KeyBeginsWithBuffer(const char* record) const;
  void DropBlock();

  const TableDef& Shape() const { return part_ ? *part_ : table_; }

  const TableDef& table_;
  std::optional<TableDef> part_;  // what is read, where that is not all of it
  char* buffer_;
  Engine* engine_ = nullptr;
  std::size_t keyIndex_ = 0;
  std::string keyBuffer_;
  bool readsWhole_ = false;             // a walk is meant to be read to its end
  std::optional<std::string> walkEnd_;  // the largest key of a walk forward, at the key's full width
  std::optional<std::vector<std::string>> walk_;  // or the beginnings of its keys

  RecordBlock block_;
  std::size_t at_ = 0;            // current record within the block
  bool forward_ = true;           // the block's reading order
  std::size_t nextLimit_ = 1;     // records to read ahead next time
  bool isLast_ = false;           // no record lies behind the block's last one
  std::uint64_t writeCount_ = 0;  // of the table when the block was read

  RecordBlock ahead_;                                      // for look-ups to come
  std::unordered_map<std::string, std::size_t> aheadAt_;  // by key; kMissing for one without a record
  std::uint64_t aheadView_ = 0, aheadWrites_ = 0;          // they hold in this view, until the table is written

  bool hasPosition_ = false;
  bool hasRecord_ = false;  // false after a Delete: only a place to step from
  bool atEnd_ = false;
  std::uint64_t birth_ = 0;  // of the current record, as ChangeBook gives it
  RecordId id_ = 0;
  std::string original_;  // the current record as the store holds it
};

}  // namespace kova::store
