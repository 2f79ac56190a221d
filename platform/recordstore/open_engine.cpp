// Which engine a database folder is opened with.

#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/odbc/server_engine.h"
#include "platform/recordstore/odbc/server_layout.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"

namespace kova::store {
namespace {

bool HasMarker(std::string_view folder) {
  return os::RealFiles().Kind(os::JoinPath(folder, kMarkerFile)) == os::PathKind::kFile;
}

std::unique_ptr<Engine> OpenIn(std::string_view folder, bool overNetwork, bool wantsUnfinished, Result& result,
                               std::string& problem) {
  if (!HasServerFile(folder)) return OpenSqliteEngine(folder, overNetwork, result);
  ServerSettings settings;
  result = HasMarker(folder) ? ReadServerSettings(folder, settings, problem) : Result::kNoDatabase;
  return result == Result::kDone ? ServerEngine::Open(settings, wantsUnfinished, result, problem) : nullptr;
}

}  // namespace

std::unique_ptr<Engine> OpenEngine(std::string_view folder, bool overNetwork, Result& result, std::string& problem) {
  if (os::RealFiles().Kind(os::JoinPath(folder, kUnfinishedFile)) != os::PathKind::kFile)
    return OpenIn(folder, overNetwork, false, result, problem);
  result = Result::kNoDatabase;
  problem = "a migration into this folder is not finished";
  return nullptr;
}

std::unique_ptr<Engine> OpenUnfinished(std::string_view folder, bool overNetwork, Result& result, std::string& problem) {
  return OpenIn(folder, overNetwork, true, result, problem);
}

Result CreateDatabase(std::string_view folder, bool overNetwork, std::string& problem) {
  if (!HasServerFile(folder)) return CreateSqliteDatabase(folder, overNetwork);
  ServerSettings settings;
  Result result = ReadServerSettings(folder, settings, problem);
  if (result == Result::kDone) result = CreateServerDatabase(settings, problem);
  if (result != Result::kDone || HasMarker(folder)) return result;
  const os::FileOutcome marked =
      os::RealFiles().Create(os::JoinPath(folder, kMarkerFile),
                             "This file marks a database folder. The records are on the server that kova.server names.\r\n");
  return marked == os::FileOutcome::kOk ? Result::kDone : Result::kFull;
}

}  // namespace kova::store
