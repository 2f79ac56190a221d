#include "platform/recordstore/cursor.h"

#include <algorithm>
#include <cstring>

namespace kova::store {
namespace {

// A block costs a search; what is read ahead and not used costs the reading. With these a walk of a thousand
// records pays a few per cent for each.
constexpr std::size_t kFirstReadAhead = 8;
constexpr std::size_t kLargestReadAhead = 64;

// On a distant store the search is a question over the network: many records cost as much.
constexpr std::size_t kFirstDistantReadAhead = 64;
constexpr std::size_t kLargestDistantReadAhead = 4096;
constexpr std::size_t kLargestDistantBlock = 64 << 20;  // bytes; of a walk that is read to its end

constexpr std::size_t kMissing = static_cast<std::size_t>(-1);

}  // namespace

void Cursor::Bind(Engine* engine) {
  engine_ = engine;
  hasPosition_ = hasRecord_ = atEnd_ = readsWhole_ = false;
  walkEnd_.reset();
  walk_.reset();
  block_.Reset(table_.recordSize);
  aheadView_ = 0;
}

Result Cursor::SetKey(int keyNumber) {
  const int index = table_.FindKey(keyNumber);
  if (index < 0) return Result::kNoSuchKey;
  if (static_cast<std::size_t>(index) != keyIndex_) DropBlock();
  SetWalkEnd({});
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

void Cursor::SetWalkEnd(std::optional<std::string_view> key) {
  if (walkEnd_ || walk_ || key) DropBlock();
  readsWhole_ = key.has_value();
  walkEnd_.reset();
  walk_.reset();
  if (key && !key->empty()) walkEnd_ = LastKeyOf(Key(), *key);
}

void Cursor::SetWalk(std::span<const std::string> beginnings) {
  SetWalkEnd("");
  walk_.emplace();
  for (const std::string& each : beginnings) {
    if (each.size() <= Key().width) walk_->push_back(each);  // no key begins with a longer one
  }
}

Result Cursor::ReadAhead(std::span<const std::string> firstFields) {
  if (engine_ == nullptr) return Result::kNotOpen;
  aheadView_ = 0;
  aheadAt_.clear();
  const std::uint64_t view = engine_->ReadView();
  if (!engine_->IsDistant() || view == 0) return Result::kDone;
  const KeyDef& key = table_.keys.front();
  std::vector<std::string> keys;
  for (const std::string& each : firstFields) {
    const std::string_view text = GetText(each.data(), each.size());
    if (text.size() <= key.fields.front()->width && aheadAt_.emplace(text, kMissing).second) keys.emplace_back(text);
  }
  aheadWrites_ = engine_->Changes().WriteCount(table_);
  const Result result = keys.empty() ? Result::kDone : engine_->ReadMany(Shape(), keys, ahead_);
  if (result != Result::kDone || keys.empty()) return result;
  for (std::size_t i = 0; i < ahead_.Size(); ++i) aheadAt_[MakeKey(key, ahead_.Record(i))] = i;
  aheadView_ = view;
  return Result::kDone;
}

// False when the record that the key buffer names has to be asked for.
bool Cursor::FindAhead(Result& result) {
  if (aheadView_ == 0 || engine_ == nullptr || !IsWholeKey() || walkEnd_ || walk_) return false;
  if (engine_->ReadView() != aheadView_ || engine_->Changes().WriteCount(table_) != aheadWrites_) return false;
  const auto found = aheadAt_.find(TrimmedKeyBuffer());
  if (found == aheadAt_.end()) return false;
  hasPosition_ = hasRecord_ = atEnd_ = isLast_ = false;
  forward_ = true;
  nextLimit_ = kFirstDistantReadAhead;
  writeCount_ = aheadWrites_;
  block_.Reset(table_.recordSize);
  result = Result::kNotFound;
  if (found->second == kMissing) return true;
  std::memcpy(block_.Add(ahead_.Id(found->second)), ahead_.Record(found->second), table_.recordSize);
  result = Load(Result::kDone);
  return true;
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
  Result result = Result::kNotFound;
  if (FindAhead(result)) return result;
  const std::string key = TrimmedKeyBuffer();
  return Position({ReadFrom::Place::kAtLeast, key}, true);
}

Result Cursor::GetGreaterOrEqual() {
  const std::string key = TrimmedKeyBuffer();
  return Position({ReadFrom::Place::kAtLeast, key}, false);
}

Result Cursor::GetLessOrEqual() {
  // A prefix stands for every key that begins with it, so the largest of them is the bound.
  const std::string key = LastKeyOf(Key(), keyBuffer_);
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
  nextLimit_ = engine_->IsDistant() ? kFirstDistantReadAhead : kFirstReadAhead;
  const Result result = ReadBlock(from, FirstLimit(mustEqual));
  if (result == Result::kDone && mustEqual &&
      (block_.Size() == 0 || !KeyBeginsWithBuffer(block_.Record(0)))) {
    block_.Reset(table_.recordSize);
    return Result::kNotFound;
  }
  return Load(result);
}

std::size_t Cursor::WholeWalkLimit() const { return std::max<std::size_t>(kLargestDistantBlock / table_.recordSize, 1); }

// A positioning may be all that is wanted; where a view is open on a distant store it most likely begins a walk.
std::size_t Cursor::FirstLimit(bool mustEqual) const {
  if (!engine_->IsDistant() || !forward_ || (mustEqual && IsWholeKey())) return 1;
  if (readsWhole_) return WholeWalkLimit();
  return engine_->ReadView() == 0 ? 1 : kFirstDistantReadAhead;
}

Result Cursor::ReadBlock(ReadFrom from, std::size_t limit) {
  if (forward_ && walkEnd_) from.upTo = *walkEnd_;
  if (forward_ && walk_) from.beginnings = *walk_;
  writeCount_ = engine_->Changes().WriteCount(table_);
  const Result result = engine_->Read(Shape(), keyIndex_, from, limit, block_);
  isLast_ = block_.Size() < limit;
  if (result != Result::kDone || !from.upTo) return result;
  while (block_.Size() > 0 && MakeKey(Key(), block_.Record(block_.Size() - 1)) > *walkEnd_) {
    block_.DropLast();
    isLast_ = true;
  }
  return result;
}

Result Cursor::RunOff() {
  atEnd_ = true;
  hasPosition_ = hasRecord_ = false;
  return Result::kEndOfTable;
}

// Takes the first record of a block that was just read.
Result Cursor::Load(Result readResult) {
  at_ = 0;
  if (readResult != Result::kDone) {
    block_.Reset(table_.recordSize);
    return readResult;
  }
  if (block_.Size() == 0) return RunOff();
  Take();
  return Result::kDone;
}

// The block's record at `at_` becomes the current one.
void Cursor::Take() {
  std::memcpy(buffer_, block_.Record(at_), table_.recordSize);
  hasPosition_ = hasRecord_ = true;
  birth_ = engine_->Changes().BirthOf(table_, block_.Id(at_));
}

// False also when the current record was inserted in a transaction that was taken back since: its number may be another
// workstation's record by now.
bool Cursor::HasRecord() const { return hasRecord_ && !engine_->Changes().WasTakenBack(birth_); }

// True when the block says what comes next.
bool Cursor::BlockGoesOn(bool forward) const {
  return forward == forward_ && block_.Size() > 0 && (isLast_ || at_ + 1 < block_.Size()) &&
         engine_->Changes().WriteCount(table_) == writeCount_;
}

Result Cursor::Step(bool forward) {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (!hasPosition_) return atEnd_ ? Result::kEndOfTable : Result::kNoRecord;
  if (BlockGoesOn(forward)) {
    if (at_ + 1 == block_.Size()) return RunOff();
    ++at_;
    Take();
    return Result::kDone;
  }
  DropBlock();
  const bool isDistant = engine_->IsDistant();
  if (forward != forward_) nextLimit_ = isDistant ? kFirstDistantReadAhead : kFirstReadAhead;
  forward_ = forward;
  const std::string key = MakeKey(Key(), original_.data());
  const auto place = forward ? ReadFrom::Place::kAfter : ReadFrom::Place::kBefore;
  const bool isWhole = isDistant && forward && readsWhole_;
  const Result result = ReadBlock({place, key, id_}, isWhole ? WholeWalkLimit() : nextLimit_);
  nextLimit_ = std::min(nextLimit_ * 4, isDistant ? kLargestDistantReadAhead : kLargestReadAhead);
  return Load(result);
}

// Remembers the current record apart from the block, which is about to be read anew or has been written past.
void Cursor::DropBlock() {
  if (block_.Size() == 0) return;
  id_ = block_.Id(at_);
  original_.assign(block_.Record(at_), table_.recordSize);
  block_.Reset(table_.recordSize);
}

Result Cursor::Insert() {
  if (engine_ == nullptr) return Result::kNotOpen;
  RecordId id = 0;
  const Result result = engine_->Insert(table_, buffer_, id);
  if (result != Result::kDone) return result;
  id_ = id;
  original_.assign(buffer_, table_.recordSize);
  block_.Reset(table_.recordSize);
  birth_ = engine_->Changes().LastBirth();
  hasPosition_ = hasRecord_ = true;
  atEnd_ = false;
  return Result::kDone;
}

Result Cursor::Update(bool onlyUnchanged) {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (part_) return Result::kBadArgument;  // it would empty the fields that were not read
  if (!HasRecord()) return Result::kNoRecord;
  DropBlock();
  const Result result = engine_->Update(table_, id_, buffer_, onlyUnchanged ? original_.data() : nullptr);
  if (result == Result::kDone) original_.assign(buffer_, table_.recordSize);
  return result;
}

Result Cursor::Delete() {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (!HasRecord()) return Result::kNoRecord;
  DropBlock();
  const Result result = engine_->Delete(table_, id_);
  if (result == Result::kDone) hasRecord_ = false;
  return result;
}

Result Cursor::ReadCurrent(std::string& record) {
  if (engine_ == nullptr) return Result::kNotOpen;
  if (!HasRecord()) return Result::kNoRecord;
  DropBlock();
  RecordBlock stored;
  const Result result = engine_->ReadInOrder(table_, id_ - 1, 1, stored);
  if (result != Result::kDone) return result;
  if (stored.Size() == 0 || stored.Id(0) != id_) return Result::kChanged;
  record.assign(stored.Record(0), table_.recordSize);
  return Result::kDone;
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
