#include "platform/recordstore/cursor.h"

#include <algorithm>
#include <cstring>

namespace kova::store {
namespace {

// A block costs a search; what is read ahead and not used costs the reading. With these a walk of a thousand
// records pays a few per cent for each.
constexpr std::size_t kFirstReadAhead = 8;
constexpr std::size_t kLargestReadAhead = 64;

}  // namespace

void Cursor::Bind(Engine* engine) {
  engine_ = engine;
  hasPosition_ = hasRecord_ = atEnd_ = false;
  block_.Reset(table_.recordSize);
}

Result Cursor::SetKey(int keyNumber) {
  const int index = table_.FindKey(keyNumber);
  if (index < 0) return Result::kNoSuchKey;
  if (static_cast<std::size_t>(index) != keyIndex_ && block_.Size() > 0) {
    KeepPosition(block_.Id(at_));
    block_.Reset(table_.recordSize);
  }
  keyIndex_ = static_cast<std::size_t>(index);
  return Result::kDone;
}

Result Cursor::SetFields(std::string_view names) {
  std::optional<TableDef> part;
  if (!names.empty()) {
    part = PartOfTable(table_, names);
    if (!part) return Result::kBadArgument;
  }
  part_ = std::move(part);
  Bind(engine_);
  return Result::kDone;
}

std::string Cursor::TrimmedKeyBuffer() const {
  std::string key = keyBuffer_.substr(0, Key().width);
  key.resize(key.find_last_not_of('\0') + 1);
  return key;
}

bool Cursor::KeyBeginsWithBuffer(const char* record) const {
  std::string key = MakeKey(Key(), record);
  const std::string wanted = keyBuffer_.substr(0, Key().width);
  key.resize(std::max(key.size(), wanted.size()));
  return std::string_view(key).substr(0, wanted.size()) == wanted;
}

std::string Cursor::PrimeKeyOfBuffer() const {
  std::string key = MakeKey(table_.keys.front(), buffer_);
  key.resize(table_.keys.front().width);
  return key;
}

Result Cursor::GetEqual() {
  const std::string key = TrimmedKeyBuffer();
  return Position({ReadFrom::Place::kAtLeast, key}, true);
}

Result Cursor::GetGreaterOrEqual() {
  const std::string key = TrimmedKeyBuffer();
  return Position({ReadFrom::Place::kAtLeast, key}, false);
}

Result Cursor::GetLessOrEqual() {
  // A prefix stands for every key that begins with it, so the largest of them is the bound.
  std::string key = keyBuffer_.substr(0, Key().width);
  key.resize(Key().width, '\xFF');
  return Position({ReadFrom::Place::kAtMost, key}, false);
}

Result Cursor::GetLess() {
  const std::string key = TrimmedKeyBuffer();
  return Position({ReadFrom::Place::kBelow, key}, false);
}

Result Cursor::GetFirst() { return Position({ReadFrom::Place::kFirst}, false); }

Result Cursor::GetLast() { return Position({ReadFrom::Place::kLast}, false); }

Result Cursor::GetNext() { return Step(true); }

Result Cursor::GetPrevious() { return Step(false); }

Result Cursor::Position(const ReadFrom& from, bool mustEqual) {
  if (engine_ == nullptr) return Result::kNotOpen;
  forward_ = from.place == ReadFrom::Place::kFirst || from.place == ReadFrom::Place::kAtLeast ||
             from.place == ReadFrom::Place::kAfter;
  hasPosition_ = hasRecord_ = atEnd_ = false;
  nextLimit_ = kFirstReadAhead;
  writeCount_ = engine_->WriteCount(table_);
  const Result result = engine_->Read(Shape(), keyIndex_, from, 1, block_);
  if (result == Result::kDone && mustEqual &&
      (block_.Size() == 0 || !KeyBeginsWithBuffer(block_.Record(0)))) {
    block_.Reset(table_.recordSize);
    return Result::kNotFound;
  }
  return Load(result);
}

// Takes the first record of a block that was just read.
Result Cursor::Load(Result readResult) {
  at_ = 0;
  if (readResult != Result::kDone) {
    block_.Reset(table_.recordSize);
    return readResult;
  }
  if (block_.Size() == 0) {
    atEnd_ = true;
    hasPosition_ = hasRecord_ = false;
    return Result::kEndOfTable;
  }
  std::memcpy(buffer_, block_.Record(0), table_.recordSize);
  hasPosition_ = hasRecord_ = true;
  return Result::kDone;
}

bool Cursor::StepInBlock(bool forward) {
  if (forward != forward_ || at_ + 1 >= block_.Size() || engine_->WriteCount(table_) != writeCount_)
    return false;
  ++at_;
  std::memcpy(buffer_, block_.Record(at_), table_.recordSize);
  hasRecord_ = true;
  return true;
}

Result Cursor::Step(bool forward) {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (!hasPosition_) return atEnd_ ? Result::kEndOfTable : Result::kNoRecord;
  if (block_.Size() > 0 && StepInBlock(forward)) return Result::kDone;
  if (block_.Size() > 0) KeepPosition(block_.Id(at_));
  if (forward != forward_) nextLimit_ = kFirstReadAhead;
  forward_ = forward;
  const std::string key = MakeKey(Key(), original_.data());
  const auto place = forward ? ReadFrom::Place::kAfter : ReadFrom::Place::kBefore;
  writeCount_ = engine_->WriteCount(table_);
  const Result result = engine_->Read(Shape(), keyIndex_, {place, key, id_}, nextLimit_, block_);
  nextLimit_ = std::min(nextLimit_ * 4, kLargestReadAhead);
  return Load(result);
}

// Remembers the current record apart from the block, which is about to be read anew or has been written past.
void Cursor::KeepPosition(RecordId id) {
  id_ = id;
  original_.assign(block_.Record(at_), table_.recordSize);
}

Result Cursor::Insert() {
  if (engine_ == nullptr) return Result::kNotOpen;
  RecordId id = 0;
  const Result result = engine_->Insert(table_, buffer_, id);
  if (result != Result::kDone) return result;
  id_ = id;
  original_.assign(buffer_, table_.recordSize);
  block_.Reset(table_.recordSize);
  hasPosition_ = hasRecord_ = true;
  atEnd_ = false;
  return Result::kDone;
}

Result Cursor::Update(bool onlyUnchanged) {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (part_) return Result::kBadArgument;  // it would empty the fields that were not read
  if (!hasRecord_) return Result::kNoRecord;
  if (block_.Size() > 0) KeepPosition(block_.Id(at_));
  block_.Reset(table_.recordSize);
  const Result result = engine_->Update(table_, id_, buffer_, onlyUnchanged ? original_.data() : nullptr);
  if (result == Result::kDone) original_.assign(buffer_, table_.recordSize);
  return result;
}

Result Cursor::Delete() {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (!hasRecord_) return Result::kNoRecord;
  if (block_.Size() > 0) KeepPosition(block_.Id(at_));
  block_.Reset(table_.recordSize);
  const Result result = engine_->Delete(table_, id_);
  if (result == Result::kDone) hasRecord_ = false;
  return result;
}

Cursor::Mark Cursor::GetMark() const {
  if (!hasRecord_) return {false, {}};
  return {true, block_.Size() > 0 ? std::string(block_.Record(at_), table_.recordSize) : original_};
}

void Cursor::ReturnTo(const Mark& mark) {
  hasRecord_ = mark.hasRecord && hasPosition_;
  if (hasRecord_ && block_.Size() == 0) original_ = mark.original;
}

}  // namespace kova::store
