#pragma once

// A store on the other side of a network, as far as the questions that reach it go: an engine before another one that
// says that it is distant, and counts.

#include <memory>
#include <utility>

#include "platform/recordstore/testing/wrap_engine.h"

namespace kova::store::testing {

/// Counts one round trip for each question, write, beginning and end of a transaction, and for the end of a read view
/// in which something was asked; its beginning goes with the first question.
class DistantEngine : public Engine {
 public:
  explicit DistantEngine(std::unique_ptr<Engine> store) : store_(std::move(store)) {}

  Result Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
              RecordBlock& block) override {
    return AskInView([&] { return store_->Read(table, keyIndex, from, limit, block); });
  }
  bool IsDistant() const override { return true; }
  Result ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, RecordBlock& block) override {
    return AskInView([&] { return store_->ReadMany(table, primaryKeys, block); });
  }
  Result ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) override {
    return store_->ReadInOrder(table, behind, limit, block);
  }
  Result LastNumber(std::string_view counter, std::int64_t& number) override {
    return store_->LastNumber(counter, number);
  }
  Result SetLastNumber(std::string_view counter, std::int64_t number) override {
    return store_->SetLastNumber(counter, number);
  }
  Result Insert(const TableDef& table, const char* record, RecordId& id) override {
    return Ask([&] { return store_->Insert(table, record, id); });
  }
  Result Update(const TableDef& table, RecordId id, const char* record, const char* expected) override {
    return Ask([&] { return store_->Update(table, id, record, expected); });
  }
  Result Delete(const TableDef& table, RecordId id) override {
    return Ask([&] { return store_->Delete(table, id); });
  }
  Result Begin() override {
    return Ask([&] { return store_->Begin(); });
  }
  Result End() override {
    return Ask([&] { return store_->End(); });
  }
  Result Abort() override {
    return Ask([&] { return store_->Abort(); });
  }
  bool HoldsTransaction() const override { return store_->HoldsTransaction(); }
  Result BeginUnit() override {
    return Ask([&] { return store_->BeginUnit(); });
  }
  Result EndUnit(bool worked) override {
    return Ask([&] { return store_->EndUnit(worked); });
  }
  void BeginReads() override { store_->BeginReads(); }
  void EndReads() override {
    store_->EndReads();
    endsWithNext_ = false;
    const bool ended = asked_ && store_->ReadView() != view_;
    if (!ended) return;
    asked_ = false;
    ++roundTrips_;
  }
  void EndReadsWithNext() override { endsWithNext_ = true; }
  std::uint64_t ReadView() const override { return store_->ReadView(); }
  Result ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) override {
    return Ask([&] { return store_->ChangeStamps(tables, sum); });
  }
  Result NextNumber(std::string_view counter, std::int64_t& number) override {
    return Ask([&] { return store_->NextNumber(counter, number); });
  }
  const ChangeBook& Changes() const override { return store_->Changes(); }
  std::uint64_t RoundTrips() const override { return roundTrips_; }
  Result CheckIntegrity(std::string& finding) override { return store_->CheckIntegrity(finding); }

 private:
  template <typename Question>
  Result Ask(Question question) {
    ++roundTrips_;
    return question();
  }
  template <typename Question>
  Result AskInView(Question question) {
    view_ = store_->ReadView();
    asked_ = view_ != 0 && !std::exchange(endsWithNext_, false);
    return Ask(question);
  }

  std::unique_ptr<Engine> store_;
  std::uint64_t roundTrips_ = 0, view_ = 0;
  bool asked_ = false;  // in the view, which is open for it
  bool endsWithNext_ = false;
};

/// Makes the open store of `db` a distant one.
inline void PutFarAway(CKovaDBSys& db) {
  EngineOf::Wrap(db, [](std::unique_ptr<Engine> store) { return std::make_unique<DistantEngine>(std::move(store)); });
}

}  // namespace kova::store::testing
