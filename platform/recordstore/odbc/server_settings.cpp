#include "platform/recordstore/odbc/server_settings.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/os/profile_text.h"
#include "platform/os/program.h"
#include "platform/os/secret_store.h"

namespace kova::store {
namespace {

constexpr std::string_view kSection = "Server";
constexpr std::size_t kLargestFile = 64 * 1024;

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool ReadAddress(std::string_view text, ServerAddress& address) {
  std::string_view port;
  if (text.starts_with('[')) {  // an address that holds colons
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos) return false;
    address.host = text.substr(1, end - 1);
    port = text.substr(end + 1);
  } else {
    const std::size_t colon = std::min(text.find(':'), text.size());
    address.host = text.substr(0, colon);
    port = text.substr(colon);
  }
  if (address.host.empty()) return false;
  if (port.empty()) return true;
  const char* end = port.data() + port.size();
  const auto [stop, error] = std::from_chars(port.data() + 1, end, address.port);
  return port.front() == ':' && error == std::errc() && stop == end && address.port > 0 && address.port < 65536;
}

bool ReadHosts(std::string_view text, std::vector<ServerAddress>& hosts) {
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    if (!ReadAddress(Trimmed(text.substr(0, comma)), hosts.emplace_back())) return false;
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  return !hosts.empty();
}

/// The name that a password is kept under: whoever points the file at another server does not get it.
std::string SecretName(const ServerSettings& settings) {
  std::string name = settings.kind + "|" + settings.database + "|" + settings.account;
  for (const ServerAddress& host : settings.hosts) name += "|" + host.Text();
  return name;
}

Result ReadFile(std::string_view folder, ServerSettings& settings, std::string& problem) {
  std::string content;
  const std::string path = os::JoinPath(folder, kServerFile);
  if (os::RealFiles().Read(path, kLargestFile, content) != os::FileOutcome::kOk) {
    problem = std::string(kServerFile) + " cannot be read";
    return Result::kNoDatabase;
  }
  const os::ProfileText profile(std::move(content));
  const auto value = [&](std::string_view key) {
    return std::string(profile.Find(kSection, key).value_or(std::string_view()));
  };
  settings.kind = value("Kind");
  settings.database = value("Database");
  settings.account = value("Account");
  settings.driver = value("Driver");
  settings.alwaysEncrypts = value("Encryption") == "always";
  const std::string certificate = value("Certificate");
  if (!certificate.empty()) settings.certificate = os::JoinPath(folder, certificate);
  const auto refused = [&](std::string_view key) {
    problem = std::string(kServerFile) + ": " + std::string(key) + " says nothing that can be used";
    return Result::kBadArgument;
  };
  if (settings.kind != "PostgreSQL" && settings.kind != "MariaDB") return refused("Kind");
  if (!ReadHosts(value("Hosts"), settings.hosts)) return refused("Hosts");
  const bool isName = !settings.database.empty() &&
                      settings.database.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string::npos;
  if (!isName) return refused("Database");
  const std::string encryption = value("Encryption");
  if (!encryption.empty() && encryption != "always") return refused("Encryption");
  return Result::kDone;
}

}  // namespace

std::string ServerAddress::Text() const {
  const bool hasColon = host.find(':') != std::string::npos;
  return (hasColon ? "[" + host + "]" : host) + (port == 0 ? std::string() : ":" + std::to_string(port));
}

bool HasServerFile(std::string_view folder) {
  return !folder.empty() && os::RealFiles().Kind(os::JoinPath(folder, kServerFile)) == os::PathKind::kFile;
}

Result ReadServerSettings(std::string_view folder, ServerSettings& settings, std::string& problem) {
  const Result read = ReadFile(folder, settings, problem);
  if (read != Result::kDone) return read;
  const char* account = std::getenv("KOVA_DB_ACCOUNT");
  if (account != nullptr && *account != 0) settings.account = account;
  const char* password = std::getenv("KOVA_DB_PASSWORD");
  const std::optional<std::string> kept =
      password != nullptr ? std::optional<std::string>(password) : os::LoadSecret(SecretName(settings));
  if (!kept) {
    problem = "no password is stored on this workstation for " + settings.account;
    return Result::kNoAccess;
  }
  settings.password = *kept;
  return Result::kDone;
}

Result StoreServerPassword(std::string_view folder, std::string_view password, std::string& problem) {
  ServerSettings settings;
  const Result read = ReadFile(folder, settings, problem);
  if (read != Result::kDone) return read;
  return os::StoreSecret(SecretName(settings), password) ? Result::kDone : Result::kFailed;
}

bool IsThisMachine(std::string_view host) {
  return host == "localhost" || host == "::1" || host.starts_with("127.") || host == os::WorkstationName();
}

}  // namespace kova::store
