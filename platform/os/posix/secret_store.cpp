#include "platform/os/secret_store.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace kova::os {
namespace {

namespace fs = std::filesystem;

fs::path Folder() {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && *config != 0) return fs::path(config) / "kova";
  const char* home = std::getenv("HOME");
  return home == nullptr ? fs::path() : fs::path(home) / ".config" / "kova";
}

fs::path FileOf(std::string_view name) { return Folder() / SecretFileName(name); }

}  // namespace

bool StoreSecret(std::string_view name, std::string_view secret) {
  std::error_code error;
  if (Folder().empty()) return false;
  fs::create_directories(Folder(), error);
  const fs::path file = FileOf(name), fresh = fs::path(file).concat(".new");
  fs::remove(fresh, error);
  const mode_t before = umask(077);
  std::ofstream out(fresh, std::ios::binary);
  umask(before);
  out << secret;
  out.close();
  if (!out.good()) return false;
  fs::rename(fresh, file, error);
  return !error;
}

std::optional<std::string> LoadSecret(std::string_view name) {
  std::ifstream in(FileOf(name), std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

}  // namespace kova::os
