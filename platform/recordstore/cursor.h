#pragma once

// A table object's place in a table: the key in use, the key buffer, the current record and what was read
// ahead. The same for every engine.

#include <optional>
#include <string>
#include <string_view>

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
  bool StepInBlock(bool forward);
  Result Load(Result readResult);
  const KeyDef& Key() const { return table_.keys[keyIndex_]; }
  std::string TrimmedKeyBuffer() const;
  bool KeyBeginsWithBuffer(const char* record) const;
  void KeepPosition(RecordId id);

  const TableDef& Shape() const { return part_ ? *part_ : table_; }

  const TableDef& table_;
  std::optional<TableDef> part_;  // what is read, where that is not all of it
  char* buffer_;
  Engine* engine_ = nullptr;
  std::size_t keyIndex_ = 0;
  std::string keyBuffer_;

  RecordBlock block_;
  std::size_t at_ = 0;            // current record within the block
  bool forward_ = true;           // the block's reading order
  std::size_t nextLimit_ = 1;     // records to read ahead next time
  std::uint64_t writeCount_ = 0;  // of the table when the block was read

  bool hasPosition_ = false;
  bool hasRecord_ = false;  // false after a Delete: only a place to step from
  bool atEnd_ = false;
  RecordId id_ = 0;
  std::string original_;  // the current record as the store holds it
};

}  // namespace kova::store
