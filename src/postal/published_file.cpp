#include "postal/published_file.h"

#include "platform/text932/cp932.h"

namespace kova::postal {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view WithoutMark(std::string_view bytes) {
  return bytes.starts_with(kByteOrderMark) ? bytes.substr(kByteOrderMark.size()) : bytes;
}

bool IsUtf8(std::string_view bytes) {
  std::size_t follow = 0;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (follow > 0) {
      if ((byte & 0xC0) != 0x80) return false;
      --follow;
    } else if (byte >= 0x80) {
      if (byte < 0xC2 || byte > 0xF4) return false;
      follow = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
    }
  }
  return follow == 0;
}

// False, and "?" in their place, when there were characters that the code page lacks.
bool To932(std::string_view utf8, std::string& text) {
  if (text932::FromUtf8(utf8, text)) return true;
  text.resize(utf8.size());
  text.resize(text932::FromUtf8Into(utf8, text.data(), text.size()));
  return false;
}

}  // namespace

PublishedFile::PublishedFile(std::string_view bytes) : isUtf8_(IsUtf8(bytes)), lines_(WithoutMark(bytes)) {}

bool PublishedFile::Next(Fields& fields) {
  fields.clear();
  std::string_view line;
  do {
    if (!lines_.Next(line)) return false;
    ++number_;
  } while (line.empty());
  if (isUtf8_) {
    if (!To932(line, converted_)) ++unstorable_;
    line = converted_;
  }
  LineFields reader(line);
  std::string_view field;
  while (reader.Next(field)) fields.emplace_back(field);
  return true;
}

}  // namespace kova::postal
