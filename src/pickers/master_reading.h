#pragma once

// For this room's own use: the one walk through a master table, and what is kept of it with the connection.

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/walk.h"

namespace kova::pickers {

/// How a record appears in a list.
template <typename Record>
struct Appearance {
  std::string (*text)(const Record&);
  std::string (*data)(const Record&);
};

template <typename Record>
struct MasterRecord {
  Record record;
  std::string text, data;  // as it appears
};

template <typename Record>
struct MasterRecords {
  std::vector<MasterRecord<Record>> records;  // in the order of lists
  int result = 0;                             // the record store's; 0 also for a table without records
  std::string blankData;                      // of an entry for none: zeros, as a record of zeros has them
};

/// Shared by the cache and the lists made of it.
template <typename Record>
using Master = std::shared_ptr<const MasterRecords<Record>>;

template <typename Table>
using RecordOf = decltype(Table::record);
template <typename Table>
using AppearanceOf = Appearance<RecordOf<Table>>;

/// A whole master table, in the order of lists.
struct WholeTable {
  std::string First() const { return {}; }
};

/// The records of a master table whose field `kField`, the first one of the list order, has one value.
template <auto kField>
struct Group;
template <typename Record, std::size_t Width, char (Record::*kField)[Width]>
struct Group<kField> {
  std::string_view value;
  /// The field, as keys begin. A value that fills it is no record's.
  std::string First() const {
    std::string field(value);
    field.resize(Width);
    return field;
  }
};

/// Reads through `table`, which is bound to the connection and closed again.
template <typename Table, typename Part>
Master<RecordOf<Table>> ReadMaster(CKovaDBSys* db, Table& table, const Part& part,
                                   const AppearanceOf<Table>& appearance) {
  const std::string first = part.First();
  const CKovaReads reads(db);
  MasterRecords<RecordOf<Table>> read;
  read.blankData = appearance.data({});
  read.result = table.SetAssociatedDB(db);
  if (read.result == 0) {
    read.result = store::WalkBeginning(table, Table::Key::InListOrder, first, [&](const RecordOf<Table>& record) {
      read.records.push_back({record, appearance.text(record), appearance.data(record)});
    });
  }
  table.Close();
  return std::make_shared<const MasterRecords<RecordOf<Table>>>(std::move(read));
}

template <typename Table, typename Part>
Master<RecordOf<Table>> ReadMaster(CKovaDBSys* db, const Part& part, const AppearanceOf<Table>& appearance) {
  Table table(nullptr, 0);
  return ReadMaster(db, table, part, appearance);
}

template <typename Record>
struct KeptMaster final : CKovaKept {
  KeptMaster(long long stampOfTable, Master<Record> kept) : stamp(stampOfTable), master(std::move(kept)) {}
  const long long stamp;
  const Master<Record> master;
};

/// The same through what is kept with the connection under `name`, while the table `id` is as it was then. A
/// connection whose cache is switched off reads, and keeps nothing.
template <typename Table, typename Part>
Master<RecordOf<Table>> ReadMasterCached(CKovaDBSys* db, store::TableId id, const std::string& name,
                                         const Part& part, const AppearanceOf<Table>& appearance) {
  using Kept = KeptMaster<RecordOf<Table>>;
  long long stamp = 0;
  // The stamp is read before the records: were they changed in between, the next call sees a newer one.
  if (db == nullptr || db->useCache == 0 || db->GetChangeStamp({id}, stamp) != 0)
    return ReadMaster<Table>(db, part, appearance);
  const auto* kept = static_cast<const Kept*>(db->GetKept(name.c_str()));
  if (kept != nullptr && kept->stamp == stamp) return kept->master;
  Master<RecordOf<Table>> read = ReadMaster<Table>(db, part, appearance);
  db->SetKept(name.c_str(), read->result == 0 ? new Kept(stamp, read) : nullptr);
  return read;
}

}  // namespace kova::pickers
