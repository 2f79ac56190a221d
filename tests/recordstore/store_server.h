#pragma once

// The store that a test program works on: the embedded one or, where the environment names a server, that one.
//   KOVA_SERVER_KIND, KOVA_SERVER_HOSTS   as in kova.server
//   KOVA_DB_ACCOUNT, KOVA_DB_PASSWORD     an account that may make databases

#include <cstdlib>
#include <random>
#include <string>

#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"

namespace kova::testing {

inline std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

inline bool OnServer() { return !Environment("KOVA_SERVER_KIND").empty(); }

/// Says in an existing folder that its records live on the test's server, in a database of that name; nothing
/// where there is no server. `more` lines win over the usual ones.
inline void PutOnServer(const std::string& folder, const std::string& database,
                        const std::string& hosts = Environment("KOVA_SERVER_HOSTS"), const std::string& more = {}) {
  if (!OnServer()) return;
  // Under Wine the Unix drivers serve Windows programs, too.
  const std::string kind = Environment("KOVA_SERVER_KIND");
  const std::string text = "[Server]\r\n" + more + "Kind=" + kind + "\r\nDriver=" + kind + " Unicode" +
                           "\r\nHosts=" + hosts + "\r\nDatabase=" + database +
                           "\r\nAccount=" + Environment("KOVA_DB_ACCOUNT") + "\r\n";
  (void)os::RealFiles().Replace(os::JoinPath(folder, "kova.server"), text);
}

/// A name that no other test's database has.
inline std::string NewDatabaseName() {
  static const std::string run = std::to_string(os::UtcMilliseconds()) + "_" + std::to_string(std::random_device{}());
  static int count = 0;
  return "kova_test_" + run + "_" + std::to_string(++count);
}

}  // namespace kova::testing
