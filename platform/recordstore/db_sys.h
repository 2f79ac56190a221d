#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>

#include "platform/recordstore/kovadbcall_export.h"

namespace kova::store {
class Engine;
enum class TableId : int;
namespace testing {
struct EngineOf;
}
}  // namespace kova::store

/// Something that an application of the connection keeps with it, from call to call: a cache, a table.
class CKovaKept {
 public:
  virtual ~CKovaKept() = default;
};

/// The open connection to a practice's database. The host opens and closes it and lends it to every
/// operation. All its use is on one thread. Table objects bound to it give result NotOpen once it is closed
/// or destroyed.
class KOVADBCALL_API CKovaDBSys {
 public:
  CKovaDBSys();
  /// Closes; a transaction that is open is rolled back.
  ~CKovaDBSys();
  CKovaDBSys(const CKovaDBSys&) = delete;
  CKovaDBSys& operator=(const CKovaDBSys&) = delete;

  /// Opens the database in the folder (code page 932, with or without trailing backslash), closing the one
  /// open before. 0 for success, else a number of result.h. The folder is not changed when it cannot be
  /// opened.
  int OpenDB(const char* folder);
  void CloseDB();
  int IsOpen() const;
  /// More about why the last OpenDB failed, for the support engineer: the server or driver and its words, UTF-8.
  /// Empty where the result says it all.
  const std::string& GetProblem() const { return problem_; }

  /// Non-zero: lists that are filled from master tables may be kept with the connection and used while the
  /// table is unchanged. On unless the host turns it off.
  int useCache = 1;

  /// What was kept under `name`, or null. Everything kept is destroyed when the connection is closed.
  CKovaKept* GetKept(const char* name) const;
  /// Takes ownership; what was kept under the name before is destroyed.
  void SetKept(const char* name, CKovaKept* kept);

  /// A number that grows with every change of any of the tables, by whichever workstation: whoever shows them
  /// looks here, at the price of one look-up, before reading them anew.
  int GetChangeStamp(std::initializer_list<kova::store::TableId> tables, long long& stamp);

  /// Checks every page and index. 0 when sound; else a number of result.h and the first finding in `finding`.
  int CheckIntegrity(std::string& finding);

  /// For this library's own use. Null while closed.
  kova::store::Engine* GetEngine() const { return engine_.get(); }
  /// Changes with every OpenDB and CloseDB: a table object bound before knows that its engine is gone.
  unsigned GetGeneration() const { return generation_; }
  /// Where this object is; null once it is destroyed. For those that may outlive it.
  std::shared_ptr<CKovaDBSys* const> GetPlace() const { return place_; }

 private:
  friend struct kova::store::testing::EngineOf;
  std::shared_ptr<CKovaDBSys*> place_;
  std::unique_ptr<kova::store::Engine> engine_;
  std::string problem_;
  std::map<std::string, std::unique_ptr<CKovaKept>, std::less<>> kept_;
  unsigned generation_ = 0;
};

/// While it lives, the reads of one operation see the database at one point in time and cost one lock
/// together. A write in between is done and ends that view. Does nothing on a null or closed connection.
class KOVADBCALL_API CKovaReads {
 public:
  explicit CKovaReads(CKovaDBSys* db);
  ~CKovaReads();
  CKovaReads(const CKovaReads&) = delete;
  CKovaReads& operator=(const CKovaReads&) = delete;

  /// The next read from the database is the operation's last one. What is read after it all the same is right too, of
  /// another point in time.
  void EndWithNext();

 private:
  kova::store::Engine* GetEngine() const;

  CKovaDBSys* db_;
  unsigned generation_;
};
