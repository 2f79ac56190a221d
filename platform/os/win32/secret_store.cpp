#include "platform/os/secret_store.h"

#include <windows.h>
#include <shlobj.h>
#include <wincrypt.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace kova::os {
namespace {

namespace fs = std::filesystem;

fs::path Folder() {
  wchar_t* folder = nullptr;
  fs::path path;
  if (SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_CREATE, nullptr, &folder) == S_OK)
    path = fs::path(folder) / L"Kova";
  CoTaskMemFree(folder);
  return path;
}

fs::path FileOf(std::string_view name) { return Folder() / SecretFileName(name); }

DATA_BLOB BlobOf(const std::string& bytes) {
  return {static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()))};
}

std::string Taken(DATA_BLOB& blob) {
  std::string bytes(reinterpret_cast<const char*>(blob.pbData), blob.cbData);
  SecureZeroMemory(blob.pbData, blob.cbData);
  LocalFree(blob.pbData);
  return bytes;
}

}  // namespace

bool StoreSecret(std::string_view name, std::string_view secret) {
  if (Folder().empty()) return false;
  // The name goes in as the entropy: a file put under another name is not taken.
  const std::string text(secret), entropy(name);
  DATA_BLOB in = BlobOf(text), salt = BlobOf(entropy), out{};
  if (CryptProtectData(&in, L"Kova", &salt, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out) == FALSE)
    return false;
  const std::string bytes = Taken(out);
  std::error_code error;
  fs::create_directories(Folder(), error);
  const fs::path file = FileOf(name), fresh = fs::path(file).concat(L".new");
  std::ofstream to(fresh, std::ios::binary);
  to << bytes;
  to.close();
  if (!to.good()) return false;
  fs::rename(fresh, file, error);
  return !error;
}

std::optional<std::string> LoadSecret(std::string_view name) {
  std::ifstream from(FileOf(name), std::ios::binary);
  if (!from) return std::nullopt;
  std::ostringstream bytes;
  bytes << from.rdbuf();
  const std::string text = bytes.str(), entropy(name);
  DATA_BLOB in = BlobOf(text), salt = BlobOf(entropy), out{};
  if (CryptUnprotectData(&in, nullptr, &salt, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out) == FALSE)
    return std::nullopt;
  return Taken(out);
}

}  // namespace kova::os
