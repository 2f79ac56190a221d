#pragma once

// The engine on a database server.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/recordstore/change_book.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/odbc/server_link.h"

namespace kova::store {

class ServerEngine final : public Engine {
 public:
  /// Null, the reason in `result` and a line about it in `problem`, when no server can be used.
  static std::unique_ptr<Engine> Open(const ServerSettings& settings, bool wantsUnfinished, Result& result,
                                      std::string& problem);

  Result Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
              RecordBlock& block) override;
  bool IsDistant() const override { return true; }
  Result ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, RecordBlock& block) override;
  Result ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) override;
  Result InsertMany(const TableDef& table, const RecordBlock& block, std::size_t first) override;
  Result Insert(const TableDef& table, const char* record, RecordId& id) override;
  Result Update(const TableDef& table, RecordId id, const char* record, const char* expected) override;
  Result Delete(const TableDef& table, RecordId id) override;
  Result Begin() override;
  Result End() override;
  Result Abort() override;
  bool HoldsTransaction() const override { return mode_ != Mode::kIdle; }
  Result BeginUnit() override;
  Result EndUnit(bool worked) override;
  void BeginReads() override;
  void EndReads() override;
  void EndReadsWithNext() override { isLastRead_ = readDepth_ == 1; }
  std::uint64_t ReadView() const override { return mode_ == Mode::kIdle && view_ != View::kNone ? viewNumber_ : 0; }
  Result ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) override;
  Result NextNumber(std::string_view counter, std::int64_t& number) override;
  Result LastNumber(std::string_view counter, std::int64_t& number) override;
  Result SetLastNumber(std::string_view counter, std::int64_t number) override;
  const ChangeBook& Changes() const override { return changes_; }
  Result MarkUnfinished(bool isUnfinished) override;
  Result CheckIntegrity(std::string& finding) override;
  std::uint64_t RoundTrips() const override { return link_.RoundTrips(); }

 private:
  enum class Mode { kIdle, kHost, kUnit, kUnitInHost };
  enum class View { kNone, kWanted, kOpen, kOver };  // over: its last read ended it, before EndReads
  using Counters = std::map<std::string, std::int64_t, std::less<>>;

  ServerEngine(const ServerSettings& settings, bool wantsUnfinished);
  Result Ask(const ServerLink::Work& work);
  void NoteLost(Result result);
  std::shared_ptr<const TableDef> Keep(const TableDef& table);
  static std::shared_ptr<RecordBlock> Lend(const TableDef& table, RecordBlock& block);
  odbc::Around AroundRead();
  void NoteRead(Result result, const odbc::Around& around = {});

  template <typename Write>
  Result WriteWhole(const TableDef& table, Write write);
  Result BeginTransaction(Mode mode);
  Result Commit();
  void Rollback();
  std::string CommitSql(std::int64_t commit) const;
  Result LookUpCommit(std::int64_t commit);

  ServerLink link_;
  std::map<std::string, std::shared_ptr<const TableDef>, std::less<>> parts_;

  Mode mode_ = Mode::kIdle;
  View view_ = View::kNone;
  int readDepth_ = 0;
  bool isLastRead_ = false;  // the next read is the view's last one
  std::uint64_t viewNumber_ = 0;
  bool isLost_ = false;  // the open transaction: nothing of it is kept
  Result lostTo_ = Result::kNoTransaction;
  ChangeBook changes_;
  Counters counters_, countersBefore_;  // of the open transaction; before its open unit
  const std::string client_;            // names this connection in store_client
  std::int64_t commits_ = 0;            // of this connection so far
};

}  // namespace kova::store
