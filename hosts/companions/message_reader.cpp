#include "hosts/companions/message_reader.h"

#include <algorithm>

namespace kova::companions {
namespace {

int DigitOf(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}

std::string FromBase64(std::string_view text) {
  std::string bytes;
  unsigned value = 0;
  int bits = 0;
  for (const char c : text) {
    const int digit = DigitOf(c);
    if (digit < 0) continue;  // a line end, or filling at the end
    value = value << 6 | static_cast<unsigned>(digit);
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(value >> bits & 0xFF);
  }
  return bytes;
}

// Encoded words decoded; the blanks between two of them belong to neither.
std::string DecodeWords(std::string_view text) {
  constexpr std::string_view kBegin = "=?UTF-8?B?";
  std::string out;
  for (bool afterWord = false;;) {
    const std::size_t begin = text.find(kBegin);
    const std::size_t end = begin == std::string_view::npos ? begin : text.find("?=", begin + kBegin.size());
    if (end == std::string_view::npos) return out.append(text);
    const std::string_view between = text.substr(0, begin);
    if (!afterWord || between.find_first_not_of(' ') != std::string_view::npos) out.append(between);
    out.append(FromBase64(text.substr(begin + kBegin.size(), end - begin - kBegin.size())));
    text.remove_prefix(end + 2);
    afterWord = true;
  }
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

std::string_view ReadableMail::Field(std::string_view name) const {
  const auto found =
      std::find_if(fields.begin(), fields.end(), [&](const auto& each) { return each.first == name; });
  return found == fields.end() ? std::string_view() : found->second;
}

ReadableMail ReadMessage(std::string_view message) {
  ReadableMail mail;
  while (!message.empty()) {
    const std::string_view line = TakeLine(message);
    if (line.empty()) break;
    if (line.front() == ' ' && !mail.fields.empty()) {
      mail.fields.back().second.append(line);
      continue;
    }
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::size_t text = std::min(line.find_first_not_of(' ', colon + 1), line.size());
    mail.fields.emplace_back(line.substr(0, colon), line.substr(text));
  }
  for (auto& field : mail.fields) field.second = DecodeWords(field.second);
  const bool encoded = mail.Field("Content-Transfer-Encoding") == "base64";
  mail.body = encoded ? FromBase64(message) : std::string(message);
  std::erase(mail.body, '\r');
  return mail;
}

}  // namespace kova::companions
