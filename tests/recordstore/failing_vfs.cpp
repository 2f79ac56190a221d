#include "tests/recordstore/failing_vfs.h"

#include <cstring>

namespace kova::testing {
namespace {

int failFrom = 0;
int failCode = SQLITE_OK;
int steps = 0;

int Step() {
  ++steps;
  return failFrom != 0 && steps >= failFrom ? failCode : SQLITE_OK;
}

struct WrappedFile {
  sqlite3_file base;
  // The real file object follows in memory.
  sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_vfs* realVfs = nullptr;
sqlite3_io_methods methods;

WrappedFile* Self(sqlite3_file* file) { return reinterpret_cast<WrappedFile*>(file); }
sqlite3_file* Real(sqlite3_file* file) { return Self(file)->Real(); }

int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
  const int code = Step();
  return code != SQLITE_OK ? code : Real(file)->pMethods->xWrite(Real(file), bytes, count, at);
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  const int code = Step();
  return code != SQLITE_OK ? code : Real(file)->pMethods->xTruncate(Real(file), size);
}
int Sync(sqlite3_file* file, int flags) {
  const int code = Step();
  return code != SQLITE_OK ? SQLITE_IOERR_FSYNC : Real(file)->pMethods->xSync(Real(file), flags);
}
int Close(sqlite3_file* file) { return Real(file)->pMethods->xClose(Real(file)); }
int Read(sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
  return Real(file)->pMethods->xRead(Real(file), to, count, at);
}
int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Real(file)->pMethods->xFileSize(Real(file), size);
}
int Lock(sqlite3_file* file, int kind) { return Real(file)->pMethods->xLock(Real(file), kind); }
int Unlock(sqlite3_file* file, int kind) { return Real(file)->pMethods->xUnlock(Real(file), kind); }
int CheckLock(sqlite3_file* file, int* out) {
  return Real(file)->pMethods->xCheckReservedLock(Real(file), out);
}
int Control(sqlite3_file* file, int op, void* arg) {
  return Real(file)->pMethods->xFileControl(Real(file), op, arg);
}
int SectorSize(sqlite3_file* file) { return Real(file)->pMethods->xSectorSize(Real(file)); }
int Traits(sqlite3_file* file) { return Real(file)->pMethods->xDeviceCharacteristics(Real(file)); }
int ShmMap(sqlite3_file* file, int page, int size, int extend, void volatile** out) {
  return Real(file)->pMethods->xShmMap(Real(file), page, size, extend, out);
}
int ShmLock(sqlite3_file* file, int at, int count, int flags) {
  return Real(file)->pMethods->xShmLock(Real(file), at, count, flags);
}
void ShmBarrier(sqlite3_file* file) { Real(file)->pMethods->xShmBarrier(Real(file)); }
int ShmUnmap(sqlite3_file* file, int remove) { return Real(file)->pMethods->xShmUnmap(Real(file), remove); }

int Open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags) {
  std::memset(Real(file), 0, static_cast<std::size_t>(realVfs->szOsFile));
  const int code = realVfs->xOpen(realVfs, name, Real(file), flags, outFlags);
  file->pMethods = code == SQLITE_OK || Real(file)->pMethods != nullptr ? &methods : nullptr;
  return code;
}

}  // namespace

void InstallFailingVfs() {
  sqlite3_initialize();
  realVfs = sqlite3_vfs_find(nullptr);
  methods = {2,       Close,      Read,   Write,  Truncate, Sync,       FileSize, Lock,    Unlock, CheckLock,
             Control, SectorSize, Traits, ShmMap, ShmLock,  ShmBarrier, ShmUnmap, nullptr, nullptr};
  static sqlite3_vfs vfs;
  vfs = *realVfs;  // all but opening is the real one's
  vfs.zName = "failing";
  vfs.szOsFile = static_cast<int>(sizeof(WrappedFile)) + realVfs->szOsFile;
  vfs.pNext = nullptr;
  vfs.xOpen = Open;
  sqlite3_vfs_register(&vfs, 1);
}

void FailFromStep(int step, int code) {
  failFrom = step;
  failCode = code;
  steps = 0;
}

int StepsTaken() { return steps; }

}  // namespace kova::testing
