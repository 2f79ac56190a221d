#include "mail/archive_text.h"

#include <cstddef>
#include <cstdint>

namespace kova::mail {
namespace {

constexpr std::uint32_t kLongerThanByte = 0xFF;
constexpr std::uint32_t kUnicodeFollows = 0xFFFE;
constexpr std::uint32_t kLongerThanWord = 0xFFFF;

void AppendNumber(std::size_t number, int bytes, std::string& archive) {
  for (; bytes > 0; --bytes, number >>= 8) archive += static_cast<char>(number & 0xFF);
}

std::optional<std::uint32_t> TakeNumber(std::string_view& archive, std::size_t bytes) {
  if (archive.size() < bytes) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = bytes; i-- > 0;) number = number << 8 | static_cast<unsigned char>(archive[i]);
  archive.remove_prefix(bytes);
  return number;
}

std::optional<std::uint32_t> TakeLength(std::string_view& archive) {
  const auto byte = TakeNumber(archive, 1);
  if (byte != kLongerThanByte) return byte;
  const auto word = TakeNumber(archive, 2);
  if (word == kUnicodeFollows) return std::nullopt;
  return word == kLongerThanWord ? TakeNumber(archive, 4) : word;
}

}  // namespace

void AppendArchiveText(std::string_view text, std::string& archive) {
  if (text.size() < kLongerThanByte) {
    AppendNumber(text.size(), 1, archive);
  } else {
    AppendNumber(kLongerThanByte, 1, archive);
    if (text.size() < kUnicodeFollows) {
      AppendNumber(text.size(), 2, archive);
    } else {
      AppendNumber(kLongerThanWord, 2, archive);
      AppendNumber(text.size(), 4, archive);
    }
  }
  archive.append(text);
}

std::optional<std::string_view> TakeArchiveText(std::string_view& archive) {
  std::string_view rest = archive;
  const auto length = TakeLength(rest);
  if (!length || *length > rest.size()) return std::nullopt;
  archive = rest.substr(*length);
  return rest.substr(0, *length);
}

}  // namespace kova::mail
