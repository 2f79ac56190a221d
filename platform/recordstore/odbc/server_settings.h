#pragma once

// The file in a database folder that says that the records live on a server.

#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/result.h"

namespace kova::store {

inline constexpr std::string_view kServerFile = "kova.server";

struct ServerAddress {
  std::string host;
  int port = 0;  ///< 0: the kind's own
  /// As it stands in the file: "host:port", or "[host]:port".
  std::string Text() const;
};

struct ServerSettings {
  std::string kind;                  ///< "PostgreSQL" or "MariaDB"
  std::vector<ServerAddress> hosts;  ///< in the order in which they are tried
  std::string database;
  std::string account;
  std::string password;
  std::string driver;           ///< empty: the kind's usual one
  bool alwaysEncrypts = false;  ///< also to a server on this machine
  std::string certificate;      ///< path of the authority's file; empty: the server's name is not verified
};

/// True when the folder (code page 932) has such a file.
bool HasServerFile(std::string_view folder);

/// Reads it, and the password that is kept on this workstation. kBadArgument and a line in `problem` when it
/// cannot be used. The environment's KOVA_DB_ACCOUNT and KOVA_DB_PASSWORD win over what is stored.
Result ReadServerSettings(std::string_view folder, ServerSettings& settings, std::string& problem);

/// Keeps the password of the folder's account for this user of this workstation.
Result StoreServerPassword(std::string_view folder, std::string_view password, std::string& problem);

/// True for a server that runs on this machine: encryption would protect nothing.
bool IsThisMachine(std::string_view host);

}  // namespace kova::store
