#pragma once

#include <afx.h>
#include <atltime.h>

#include <memory>
#include <span>
#include <string>

#include "platform/recordstore/db_sys.h"
#include "platform/recordstore/kovadbcall_export.h"
#include "platform/recordstore/result.h"

namespace kova::store {
class Cursor;
class Engine;
enum class TableId : int;
}  // namespace kova::store

/// Base of every table object: one current record in the object's record buffer, a key in use, a key buffer.
///
/// Every operation gives 0 for success and else a number of result.h; callers stop or skip without telling
/// them apart. No exception leaves an operation. The record buffer is written only by an operation that finds
/// a record.
///
/// The way it is used: construct, SetAssociatedDB, SetKey, SetKeyBuffer, GetGREQ, then while the result is 0
/// and IsEOF() is 0: use the record, GetNEXT. Records are read ahead in blocks, so a walk sees the table as
/// it was up to a block ago; what this connection writes is seen at once.
class KOVADBCALL_API CBaseDBCall {
 public:
  virtual ~CBaseDBCall();
  CBaseDBCall(const CBaseDBCall&) = delete;
  CBaseDBCall& operator=(const CBaseDBCall&) = delete;

  /// Binds the object to the open connection and opens the table. Fails when the connection is null or
  /// closed.
  int SetAssociatedDB(CKovaDBSys* db);
  /// Opens the table again after Close.
  int Open();
  /// Forgets the current record. The binding stays.
  void Close();

  /// Chooses the key of the following positioning calls; key 0 from the beginning.
  int SetKey(int keyNumber);
  /// For lists that show few fields of many records: positioning calls load these fields, by name with blanks
  /// between, and those of the table's keys; the others of the record buffer become zero, and Update is
  /// refused. Null or empty: all fields, as from the beginning. Forgets the current record; result 18 for a
  /// name that is no field.
  int SetFields(const char* names);
  /// The key value for the next positioning call: the key's fields one behind the other, each at its full
  /// width, zero-filled. Shorter is a prefix; longer is cut to the key's width.
  void SetKeyBuffer(const char* key, unsigned long length);
  /// Ends walks of the key in use: GetFIRST, GetGREQ and GetNEXT find no record behind the last one whose key begins
  /// with these bytes or is less, as if the table ended there; GetEQ gives not found. The calls backward are not
  /// limited. Such a walk is meant to be read to its end: a distant store is asked few times, for many records. No
  /// bytes: every record. Null takes the end off, and so do SetKey, SetFields and Close.
  void SetWalkEnd(const char* key, unsigned long length);
  /// The same for the records only whose key begins with one of these: the calls forward find no others. They are in the
  /// order of the key, and none begins with another one.
  void SetWalk(std::span<const std::string> beginnings);
  /// Says which records will be looked up, by the first field of their primary key (Get...Data, GetEQ): a distant
  /// store is asked once for all of them. They are used while the CKovaReads is open that must be open here, and until
  /// the table is written; the next call forgets them. Does nothing where a look-up costs little.
  int ReadAhead(std::span<const std::string> firstFields);

  /// Load the record whose key is equal to, not less than, not greater than, less than the key buffer.
  int GetEQ();
  int GetGREQ();
  int GetLEEQ();
  int GetLESS();
  /// Load the first, the last, the next, the previous record of the key in use. Records with equal keys are
  /// in the order in which they were written.
  int GetFIRST();
  int GetLAST();
  int GetNEXT();
  int GetPREV();
  /// Non-zero when the last positioning ran off the end, either end.
  int IsEOF() const;

  /// Writes the record buffer as a new record, which becomes the current one.
  int Insert();
  /// Writes the record buffer over the current record.
  int Update();
  /// The same, only when the store still holds the record as this object read it; else result Changed.
  int UpdateIfUnchanged();
  /// Deletes the current record. GetNEXT and GetPREV go on from where it was.
  int Delete();

  /// A transaction on the connection, for all its table objects. It waits for the write lock (5 s at most)
  /// when it begins. EndTran gives a failure, and nothing of it is kept, when a write in it failed for the
  /// store's sake.
  int BeginTran();
  int EndTran();
  int AbortTran();

  /// Last change time of the table. Changes with every change, also twice within a second (it then runs ahead
  /// of the clock). The zero time when the table cannot be read.
  CTime GetFileTime();

  /// Puts the primary key of the record in the buffer into the key buffer and chooses key 0.
  virtual int GetPrimeKeyFromBuffer() = 0;

  /// For this library's own use. Null when not bound or when the connection was closed since.
  kova::store::Engine* GetEngine();
  /// The same.
  kova::store::Cursor& GetCursor() { return *cursor_; }

 protected:
  /// `buffer` is the derived object's record buffer. File name and mode are taken for the sake of the callers
  /// and not used: the table says where its records are.
  CBaseDBCall(kova::store::TableId table, void* buffer, const char* fileName, int mode);

  /// Looks a record up by the first fields of its primary key, each given as text.
  int GetByPrimeKey(const char* first);
  int GetByPrimeKey(const char* first, const char* second);

  int PrimeKeyFromBuffer();
  CKovaDBSys* GetDB() const { return db_ == nullptr ? nullptr : *db_; }

 private:
  void DropClosed();

  std::unique_ptr<kova::store::Cursor> cursor_;
  std::shared_ptr<CKovaDBSys* const> db_;
  unsigned generation_ = 0;
};
