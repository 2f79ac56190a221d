#include "platform/recordstore/odbc/dialect.h"

#include "platform/os/filesystem_path.h"

namespace kova::store {

std::unique_ptr<Dialect> MakeDialect(std::string_view kind) {
  return kind == "MariaDB" ? MakeMariaDb() : MakePostgreSql();
}

std::string Keyword(std::string_view keyword, std::string_view value) {
  const std::string name = std::string(keyword) + "=";
  // Not every driver takes the braces off where there is no need for them.
  if (value.find_first_of(" ;={}[]()") == std::string_view::npos) return name + std::string(value) + ";";
  std::string text = name + "{";
  for (const char c : value) text.append(c == '}' ? 2 : 1, c);
  return text + "};";
}

std::string Hex(std::string_view bytes) {
  std::string text;
  AppendHex(bytes, text);
  return text;
}

void AppendHex(std::string_view bytes, std::string& text) {
  constexpr char kDigits[] = "0123456789abcdef";
  for (const char c : bytes) {
    text += kDigits[static_cast<unsigned char>(c) >> 4];
    text += kDigits[static_cast<unsigned char>(c) & 15];
  }
}

bool Encrypts(const ServerSettings& settings, const ServerAddress& address) {
  return settings.alwaysEncrypts || !settings.certificate.empty() || !IsThisMachine(address.host);
}

std::string CertificatePath(const ServerSettings& settings) {
  const std::u8string path = os::ToFilesystemPath(settings.certificate).generic_u8string();
  return {path.begin(), path.end()};
}

Result TranslateState(const odbc::Diagnostic& diagnostic) {
  const std::string_view state = diagnostic.state, group = std::string_view(diagnostic.state).substr(0, 2);
  if (state == "IM002" || state == "IM003" || state == "01000") return Result::kNoDriver;
  if (state == "40001") return Result::kConflict;
  if (group == "08" || state == "HYT00" || state == "HYT01") return Result::kUnreachable;
  if (state == "23000" || state == "23505") return Result::kDuplicate;
  if (state == "28000") return Result::kNoAccess;
  if (state == "42501") return Result::kReadOnly;
  if (state == "42S02" || state == "42S22") return Result::kDamaged;
  if (state == "HY001") return Result::kFailed;
  return Result::kFailed;
}

}  // namespace kova::store
