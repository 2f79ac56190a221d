#include "platform/text932/cp932.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kova::text932 {
namespace {

constexpr int kTrails = 0xFC - 0x40 + 1;
constexpr char32_t kStrayByte = 0xF700;  // stored in database columns; do not change

struct LeadRow {
  unsigned char lead;
  std::array<std::uint16_t, kTrails> values;
};

constexpr LeadRow kRows[] = {
#include "platform/text932/cp932_table.inc"
};

struct Tables {
  std::array<std::array<std::uint16_t, kTrails>, 256> decode{};
  std::array<std::uint16_t, 65536> encode{};

  Tables() {
    for (const LeadRow& row : kRows) decode[row.lead] = row.values;
    for (int lead = 0xF0; lead <= 0xF9; ++lead) {
      for (int i = 0; i < kTrails; ++i) {
        if (i == 0x7F - 0x40) continue;
        const int index = (lead - 0xF0) * 188 + i - (i > 0x7F - 0x40 ? 1 : 0);
        decode[static_cast<std::size_t>(lead)][static_cast<std::size_t>(i)] =
            static_cast<std::uint16_t>(0xE000 + index);
      }
    }
    // Characters with several codes: a later row overwrites, so the least preferred come first.
    for (int lead : {0xED, 0xEE, 0xFA, 0xFB, 0xFC, 0x87}) EncodeRow(lead);
    for (int lead = 0x81; lead <= 0xF9; ++lead) {
      if (lead != 0x87 && lead != 0xED && lead != 0xEE) EncodeRow(lead);
    }
    for (int c = 1; c < 0x81; ++c) encode[static_cast<std::size_t>(c)] = static_cast<std::uint16_t>(c);
    for (int c = 0xA1; c <= 0xDF; ++c) {
      encode[static_cast<std::size_t>(0xFF61 + c - 0xA1)] = static_cast<std::uint16_t>(c);
    }
    encode[0xF8F0] = 0xA0;
    for (int c = 0xFD; c <= 0xFF; ++c) {
      encode[static_cast<std::size_t>(0xF8F1 + c - 0xFD)] = static_cast<std::uint16_t>(c);
    }
    for (unsigned c = 0x81; c <= 0xFC; ++c) {
      if (IsLeadByte(static_cast<unsigned char>(c))) encode[kStrayByte + c] = static_cast<std::uint16_t>(c);
    }
    // Bytes that are only ever the second half of an undefined pair.
    for (unsigned c : {0x80u, 0xA0u}) encode[kStrayByte + c] = static_cast<std::uint16_t>(c);
    const struct {
      char16_t unicode;
      std::uint16_t code;
    } otherForms[] = {{0x00A5, 0x5C},   {0x301C, 0x8160}, {0x2212, 0x817C}, {0x2016, 0x8161},
                      {0x00A2, 0x8191}, {0x00A3, 0x8192}, {0x00AC, 0x81CA}};
    for (const auto& form : otherForms) encode[form.unicode] = form.code;
  }

  void EncodeRow(int lead) {
    for (int i = 0; i < kTrails; ++i) {
      const std::uint16_t value = decode[static_cast<std::size_t>(lead)][static_cast<std::size_t>(i)];
      if (value != 0) encode[value] = static_cast<std::uint16_t>(lead << 8 | (i + 0x40));
    }
  }
};

const Tables& GetTables() {
  static const Tables tables;
  return tables;
}

char32_t DecodeSingle(unsigned char c) {
  if (c <= 0x80) return c;
  if (c >= 0xA1 && c <= 0xDF) return static_cast<char32_t>(0xFF61 + c - 0xA1);
  if (c == 0xA0) return 0xF8F0;
  if (c >= 0xFD) return static_cast<char32_t>(0xF8F1 + c - 0xFD);
  return kStrayByte + c;
}

struct Decoded {
  char32_t value;
  std::size_t length;  // bytes of the text that `value` stands for
};

// An undefined pair is handed out byte by byte; its trail byte has no partner, so both come back as they
// were.
Decoded Decode(const Tables& tables, std::string_view text, std::size_t at) {
  const auto c = static_cast<unsigned char>(text[at]);
  if (CharLength(text, at) == 1) return {DecodeSingle(c), 1};
  const auto trail = static_cast<unsigned char>(text[at + 1]);
  const char32_t value = tables.decode[c][static_cast<std::size_t>(trail - 0x40)];
  if (value != 0) return {value, 2};
  return {kStrayByte + c, 1};
}

void PutUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    const char bytes[] = {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
    out.append(bytes, 2);
  } else {
    const char bytes[] = {static_cast<char>(0xE0 | (c >> 12)), static_cast<char>(0x80 | ((c >> 6) & 0x3F)),
                          static_cast<char>(0x80 | (c & 0x3F))};
    out.append(bytes, 3);
  }
}

// Walks the characters as ToUtf8 gives them, so that a broken pair's trail byte is a stray byte, not a lead
// byte.
template <typename Put>
void DecodeAll(std::string_view text, Put put) {
  const Tables& tables = GetTables();
  for (std::size_t i = 0; i < text.size();) {
    const Decoded decoded = Decode(tables, text, i);
    put(decoded.value);
    i += decoded.length;
    if (decoded.length == 1 && CharLength(text, i - 1) == 2) {
      const auto trail = static_cast<unsigned char>(text[i]);
      put(IsLeadByte(trail) ? kStrayByte + trail : DecodeSingle(trail));
      ++i;
    }
  }
}

void PutCode(int code, std::string& out) {
  if (code > 0xFF) out += static_cast<char>(code >> 8);
  out += static_cast<char>(code & 0xFF);
}

// Length of the UTF-8 sequence at `utf8[at]` of up to three bytes and its value; 0 when it is none.
std::size_t ReadUtf8(std::string_view utf8, std::size_t at, char32_t& value) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[at + i]); };
  const auto follows = [&](std::size_t i) { return at + i < utf8.size() && (byte(i) & 0xC0) == 0x80; };
  const unsigned char c = byte(0);
  if (c < 0x80) {
    value = c;
    return 1;
  }
  if (c >= 0xC2 && c <= 0xDF && follows(1)) {
    value = static_cast<char32_t>((c & 0x1F) << 6 | (byte(1) & 0x3F));
    return 2;
  }
  if ((c & 0xF0) == 0xE0 && follows(1) && follows(2)) {
    value = static_cast<char32_t>((c & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F));
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    return value >= 0x800 && !surrogate ? 3 : 0;
  }
  return 0;  // four-byte sequences name characters that the code page does not hold
}

// Length of the ASCII beginning of a text. Most texts of a practice's records are codes, dates and numbers.
std::size_t AsciiLength(std::string_view text) {
  std::size_t length = 0;
  std::uint64_t eight = 0;
  while (length + sizeof eight <= text.size()) {
    std::memcpy(&eight, text.data() + length, sizeof eight);
    if ((eight & 0x8080808080808080u) != 0) break;
    length += sizeof eight;
  }
  while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80) ++length;
  return length;
}

}  // namespace

std::string_view CutAtCharacter(std::string_view text, std::size_t maxBytes) {
  if (text.size() <= maxBytes) return text;
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t next = end + CharLength(text, end);
    if (next > maxBytes) break;
    end = next;
  }
  return text.substr(0, end);
}

std::size_t FindFirst(std::string_view text, char c, std::size_t from) {
  for (std::size_t i = 0; i < text.size(); i += CharLength(text, i)) {
    if (i >= from && text[i] == c && CharLength(text, i) == 1) return i;
  }
  return std::string_view::npos;
}

std::size_t FindLast(std::string_view text, char c) {
  std::size_t found = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); i += CharLength(text, i)) {
    if (text[i] == c && CharLength(text, i) == 1) found = i;
  }
  return found;
}

bool EndsWith(std::string_view text, char c) {
  return !text.empty() && text.back() == c && FindLast(text, c) == text.size() - 1;
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (!what.empty() && text.substr(i, what.size()) == what) {
      out += with;
      i += what.size();
      continue;
    }
    const std::size_t length = CharLength(text, i);
    out += text.substr(i, length);
    i += length;
  }
  return out;
}

char32_t DecodeAt(std::string_view text, std::size_t at) { return Decode(GetTables(), text, at).value; }

int Encode(char32_t c) {
  if (c == 0) return 0;
  if (c > 0xFFFF) return -1;
  const std::uint16_t code = GetTables().encode[c];
  return code == 0 ? -1 : code;
}

void AppendUtf8(std::string_view text, std::string& out) {
  const std::size_t ascii = AsciiLength(text);
  out += text.substr(0, ascii);
  if (ascii == text.size()) return;
  text.remove_prefix(ascii);
  DecodeAll(text, [&](char32_t c) { PutUtf8(c, out); });
}

std::string ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() * 3 / 2);
  AppendUtf8(text, out);
  return out;
}

bool FromUtf8(std::string_view utf8, std::string& out) {
  const Tables& tables = GetTables();
  out.clear();
  for (std::size_t i = 0; i < utf8.size();) {
    char32_t c = 0;
    const std::size_t length = ReadUtf8(utf8, i, c);
    if (length == 0) return false;
    const std::uint16_t code = tables.encode[c];
    if (code == 0 && c != 0) return false;
    PutCode(code, out);
    i += length;
  }
  return true;
}

std::size_t FromUtf8Into(std::string_view utf8, char* out, std::size_t capacity) {
  std::size_t length = AsciiLength(utf8.substr(0, capacity));
  std::copy_n(utf8.data(), length, out);
  if (length == utf8.size() || length == capacity) return length;
  const Tables& tables = GetTables();
  for (std::size_t i = length; i < utf8.size() && length < capacity;) {
    if (static_cast<unsigned char>(utf8[i]) < 0x80) {
      out[length++] = utf8[i++];
      continue;
    }
    char32_t c = 0;
    const std::size_t used = ReadUtf8(utf8, i, c);
    std::uint16_t code = used == 0 ? std::uint16_t{0} : tables.encode[c];
    if (code == 0) code = '?';
    if (code > 0xFF) {
      if (length + 2 > capacity) break;
      out[length++] = static_cast<char>(code >> 8);
    }
    out[length++] = static_cast<char>(code & 0xFF);
    i += used == 0 ? 1 : used;
  }
  return length;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  DecodeAll(text, [&](char32_t c) { out += static_cast<char16_t>(c); });
  return out;
}

std::size_t FromUtf16Into(std::u16string_view utf16, char* out, std::size_t capacity) {
  std::size_t length = 0;
  for (const char16_t c : utf16) {
    if (length == capacity) break;
    if (c < 0x80) {
      out[length++] = static_cast<char>(c);
      continue;
    }
    int code = Encode(c);
    if (code < 0) code = '?';
    if (code > 0xFF) {
      if (length + 2 > capacity) break;
      out[length++] = static_cast<char>(code >> 8);
    }
    out[length++] = static_cast<char>(code & 0xFF);
  }
  return length;
}

bool FromUtf16(std::u16string_view utf16, std::string& out) {
  out.clear();
  for (const char16_t c : utf16) {
    const int code = Encode(c);
    if (code < 0) return false;
    PutCode(code, out);
  }
  return true;
}

}  // namespace kova::text932
