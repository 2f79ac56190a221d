#include "platform/os/profile_encoding.h"

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

// Every 16-bit unit by itself becomes one to three bytes, halves of surrogate pairs too: that is not good
// UTF-8, but it keeps the text's lines apart and leads back to the same units.
void PutUnit(unsigned unit, std::string& out) {
  if (unit < 0x80) {
    out += static_cast<char>(unit);
  } else if (unit < 0x800) {
    out += static_cast<char>(0xC0 | (unit >> 6));
    out += static_cast<char>(0x80 | (unit & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (unit >> 12));
    out += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (unit & 0x3F));
  }
}

// The character at `at` of UTF-8 text and its length; a sequence that is none, as far as it goes, is 0xFFFD.
// So is one longer than its character needs: it could hide a line break from whoever looks at bytes.
char32_t ReadUtf8(std::string_view text, std::size_t at, std::size_t& length) {
  const auto byte = [&](std::size_t i) {
    return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0u;
  };
  const unsigned lead = byte(0);
  length = lead < 0x80             ? 1
           : (lead & 0xE0) == 0xC0 ? 2
           : (lead & 0xF0) == 0xE0 ? 3
           : (lead & 0xF8) == 0xF0 ? 4
                                   : 1;
  char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
  if (length == 1) return lead < 0x80 ? c : 0xFFFD;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) {
      length = i;
      return 0xFFFD;
    }
    c = c << 6 | (byte(i) & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  return c < kLeast[length] ? 0xFFFD : c;
}

unsigned UnitAt(std::string_view bytes, std::size_t at, bool bigEndian) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  return bigEndian ? first << 8 | second : second << 8 | first;
}

// An odd byte at the end belongs to no unit; EncodedProfile puts it back.
std::string UnitsToUtf8(std::string_view bytes, bool bigEndian) {
  std::string out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) PutUnit(UnitAt(bytes, i, bigEndian), out);
  return out;
}

std::string Utf8ToUnits(std::string_view text, bool bigEndian) {
  std::string out;
  out.reserve(text.size() * 2);
  for (std::size_t i = 0, length = 0; i < text.size(); i += length) {
    const char32_t unit = ReadUtf8(text, i, length);
    const char high = static_cast<char>(unit >> 8 & 0xFF);
    const char low = static_cast<char>(unit & 0xFF);
    out += bigEndian ? high : low;
    out += bigEndian ? low : high;
  }
  return out;
}

// The code of the character at `at`, one byte or two.
int CodeAt(std::string_view utf8, std::size_t at, std::size_t& length) {
  const int code = text932::Encode(ReadUtf8(utf8, at, length));
  return code < 0 ? '?' : code;
}

std::string Utf8To932(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0, length = 0; i < text.size(); i += length) {
    const int code = CodeAt(text, i, length);
    if (code > 0xFF) out += static_cast<char>(code >> 8);
    out += static_cast<char>(code & 0xFF);
  }
  return out;
}

}  // namespace

EncodedProfile::EncodedProfile(std::string_view file) : file_(file), mark_(Mark::kNone) {
  if (file.starts_with(kUtf8Mark)) mark_ = Mark::kUtf8;
  if (file.starts_with(kLittleMark)) mark_ = Mark::kUtf16Little;
  if (file.starts_with(kBigMark)) mark_ = Mark::kUtf16Big;
  if (mark_ == Mark::kUtf16Little || mark_ == Mark::kUtf16Big) {
    converted_ = UnitsToUtf8(file.substr(kLittleMark.size()), mark_ == Mark::kUtf16Big);
  }
}

ProfileBytes EncodedProfile::Bytes() const {
  return mark_ == Mark::kNone ? ProfileBytes::kCodePage932 : ProfileBytes::kUtf8;
}

std::string_view EncodedProfile::Body() const {
  if (mark_ == Mark::kNone) return file_;
  return mark_ == Mark::kUtf8 ? file_.substr(kUtf8Mark.size()) : std::string_view(converted_);
}

std::string EncodedProfile::WithBody(std::string body) const {
  if (mark_ == Mark::kNone) return body;
  if (mark_ == Mark::kUtf8) return std::string(kUtf8Mark) + body;
  const bool bigEndian = mark_ == Mark::kUtf16Big;
  std::string out(bigEndian ? kBigMark : kLittleMark);
  out += Utf8ToUnits(body, bigEndian);
  if (file_.size() % 2 != 0) out += file_.back();
  return out;
}

std::string ProfileBytesTo932(std::string bytes) {
  const EncodedProfile encoded(bytes);
  if (encoded.Bytes() == ProfileBytes::kCodePage932) return bytes;
  return Utf8To932(encoded.Body());
}

std::string ProfileTextFrom932(std::string_view text, ProfileBytes bytes) {
  return bytes == ProfileBytes::kCodePage932 ? std::string(text) : text932::ToUtf8(text);
}

std::string ProfileLineTo932(std::string_view utf8Line) { return Utf8To932(utf8Line); }

std::size_t ProfileLengthInUtf8(std::string_view utf8Line, std::size_t length) {
  std::size_t at = 0;
  for (std::size_t done = 0, step = 0; done < length && at < utf8Line.size(); at += step)
    done += CodeAt(utf8Line, at, step) > 0xFF ? 2 : 1;
  return at;
}

}  // namespace kova::os
