#include "hosts/companions/mail_message.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/text932/cp932.h"

namespace kova::companions {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLongestLine = 76;  // of a head line with encoded words, and of base64
constexpr std::size_t kLongestWord = 75;
constexpr std::string_view kWordBegin = "=?UTF-8?B?";
constexpr std::string_view kWordEnd = "?=";
constexpr std::size_t kLongestPlain = 60;

std::string Base64(std::string_view bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    unsigned value = 0;
    for (std::size_t i = 0; i < 3; ++i)
      value = value << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
    for (std::size_t i = 0; i < 4; ++i)
      out += i <= group.size() ? kDigits[value >> (18 - 6 * i) & 0x3F] : '=';
  }
  return out;
}

// The character at `at` in UTF-8. What the code page does not define arrives in a range of its own.
std::string CharacterUtf8(std::string_view text, std::size_t at, std::size_t length) {
  constexpr char32_t kUndefined = 0xF700;
  const char32_t c = text932::DecodeAt(text, at);
  if (c >= kUndefined && c < kUndefined + 0x100) return "\xEF\xBF\xBD";
  return text932::ToUtf8(text.substr(at, length));
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

bool IsPlain(std::string_view text) {
  const auto printable = [](char c) { return c >= 0x20 && c < 0x7F; };
  if (text.front() == ' ' || text.back() == ' ') return false;  // readers would drop it
  return text.size() <= kLongestPlain && text.find("=?") == std::string_view::npos &&
         std::all_of(text.begin(), text.end(), printable);
}

// `text` in encoded words, none of which cuts a character, on lines of their own. The first begins at
// `column`.
std::string EncodedWords(std::string_view text, std::size_t column) {
  const auto room = [&] {
    const std::size_t length = std::min(kLongestWord, kLongestLine - column);
    return (length - kWordBegin.size() - kWordEnd.size()) / 4 * 3;
  };
  std::string out;
  std::string word;
  const auto close = [&] { out.append(kWordBegin).append(Base64(word)).append(kWordEnd); };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = text932::CharLength(text, at);
    const std::string next = CharacterUtf8(text, at, length);
    if (word.size() + next.size() > room()) {
      close();
      out.append(kLineEnd).append(" ");
      word.clear();
      column = 1;
    }
    word += next;
    at += length;
  }
  close();
  return out;
}

std::string WithoutControls(std::string_view text) {
  std::string clean(text);
  std::replace_if(clean.begin(), clean.end(), IsControl, ' ');
  return clean;
}

void AppendField(std::string_view name, std::string_view text, std::string& out) {
  const std::string clean = WithoutControls(text);
  if (clean.empty()) return;
  out.append(name).append(": ");
  out.append(IsPlain(clean) ? clean : EncodedWords(clean, name.size() + 2)).append(kLineEnd);
}

void AppendSender(const MailMessage& message, std::string& out) {
  constexpr std::string_view kName = "From: ";
  const std::string name = WithoutControls(message.senderName);
  out.append(kName);
  if (!name.empty()) out.append(EncodedWords(name, kName.size())).append(kLineEnd).append(" ");
  out.append("<").append(message.senderAddress).append(">").append(kLineEnd);
}

void AppendReceivers(const MailMessage& message, std::string& out) {
  out.append("To: ");
  for (std::size_t i = 0; i < message.to.size(); ++i) {
    if (i > 0) out.append(",").append(kLineEnd).append(" ");
    out.append(message.to[i]);
  }
  out.append(kLineEnd);
}

void AppendDate(const MailMessage& message, std::string& out) {
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::tm& date = message.date;
  const int offset = std::abs(message.minutesFromUtc);
  char text[80];
  std::snprintf(text, sizeof text, "Date: %s, %02d %s %04d %02d:%02d:%02d %c%02d%02d\r\n",
                kDays[date.tm_wday % 7], date.tm_mday, kMonths[date.tm_mon % 12], date.tm_year + 1900,
                date.tm_hour, date.tm_min, date.tm_sec, message.minutesFromUtc < 0 ? '-' : '+', offset / 60,
                offset % 60);
  out.append(text);
}

// The body in UTF-8 with the line ends that mails have, whatever they were.
std::string BodyUtf8(std::string_view body) {
  std::string out;
  for (std::size_t at = 0; at < body.size();) {
    const std::size_t length = text932::CharLength(body, at);
    const bool lineEnd = body[at] == '\r' || body[at] == '\n';
    if (body[at] == '\r' && at + 1 < body.size() && body[at + 1] == '\n') ++at;
    out.append(lineEnd ? std::string(kLineEnd) : CharacterUtf8(body, at, length));
    at += length;
  }
  return out;
}

bool IsAddress(std::string_view text) {
  static constexpr std::string_view kSigns = "!#$%&'*+-/=?^_`{|}~.@";
  constexpr std::size_t kLongest = 254;
  const auto allowed = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           kSigns.find(c) != std::string_view::npos;
  };
  const std::size_t at = text.find('@');
  return at != std::string_view::npos && at > 0 && at + 1 < text.size() && text.rfind('@') == at &&
         text.size() <= kLongest && std::all_of(text.begin(), text.end(), allowed);
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  return text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

}  // namespace

std::string WriteMessage(const MailMessage& message) {
  std::string out;
  AppendSender(message, out);
  AppendReceivers(message, out);
  AppendDate(message, out);
  const std::string_view sender = message.senderAddress;
  out.append("Message-ID: <")
      .append(message.id)
      .append(sender.substr(std::min(sender.find('@'), sender.size())));
  out.append(">").append(kLineEnd);
  AppendField("Subject", message.subject, out);
  for (const auto& [name, text] : message.fields) AppendField(name, text, out);
  out.append("MIME-Version: 1.0\r\nContent-Type: text/plain; charset=UTF-8\r\n");
  out.append("Content-Transfer-Encoding: base64\r\n\r\n");
  const std::string body = Base64(BodyUtf8(message.body));
  for (std::size_t at = 0; at < body.size(); at += kLongestLine)
    out.append(body, at, kLongestLine).append(kLineEnd);
  return out;
}

Addresses ReadAddresses(std::string_view list) {
  Addresses addresses;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string address(Trimmed(list.substr(0, comma)));
    if (!address.empty()) (IsAddress(address) ? addresses.usable : addresses.refused).push_back(address);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return addresses;
}

}  // namespace kova::companions
