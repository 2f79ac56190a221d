#include "postal/address_import.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "foundation/kana.h"
#include "foundation/text_tools.h"
#include "platform/text932/cp932.h"
#include "postal/address_list.h"
#include "postal/published_file.h"

namespace kova::postal {
namespace {

constexpr std::string_view kOpen = "（", kClose = "）";
constexpr std::size_t kTownColumns = 15, kOfficeColumns = 13, kCodeDigits = 7;

using text932::CharLength;

// Columns of the list of towns, which are those of the address list but for column 6.
enum Town {
  kArea = 0,
  kOldCode = 1,
  kCode = 2,
  kTownKana = 5,
  kPrefecture = 6,
  kCity = 7,
  kTown = 8,
  kFlags = 9
};
// Columns of the list of offices.
enum Office {
  kOfficeKana = 1,
  kOfficeName = 2,
  kOfficePrefecture = 3,
  kOfficeCity = 4,
  kOfficeTown = 5,
  kOfficeBlock = 6,
  kOfficeCode = 7,
  kOfficeOldCode = 8,
};

bool IsCode(std::string_view text) { return text.size() == kCodeDigits && foundation::IsNumeric(text); }

std::size_t FindText(std::string_view text, std::string_view what, std::size_t from = 0) {
  for (std::size_t at = from; at < text.size(); at += CharLength(text, at)) {
    if (text.substr(at).starts_with(what)) return at;
  }
  return text.npos;
}

bool EndsWithText(std::string_view text, std::string_view end) {
  if (!text.ends_with(end)) return false;
  const std::size_t begin = text.size() - end.size();
  return text932::CutAtCharacter(text, begin).size() == begin;
}

// Brackets that are opened and not closed behind `text`, with `depth` open ones before it.
int OpenBrackets(std::string_view text, int depth) {
  for (std::size_t at = 0; at < text.size(); at += CharLength(text, at)) {
    const std::string_view character = text.substr(at, CharLength(text, at));
    if (character == kOpen) ++depth;
    if (character == kClose && depth > 0) --depth;
  }
  return depth;
}

std::string WithoutNotes(std::string_view text) {
  std::string rest;
  int depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view character = text.substr(at, CharLength(text, at));
    const int before = depth;
    depth = OpenBrackets(character, depth);
    if (before == 0 && depth == 0) rest += character;
    at += character.size();
  }
  return rest;
}

// "種市第１地割～第３地割" is a part of 種市: what comes before the first number.
std::string_view WithoutLotRange(std::string_view town) {
  const std::size_t lot = FindText(town, "地割");
  const bool several = FindText(town, "、") != town.npos || FindText(town, "～") != town.npos;
  if (lot == town.npos || !several) return town;
  std::size_t end = lot;
  const auto endsIn = [&](std::string_view first, std::string_view last) {
    if (end < 2) return false;
    const std::string_view character = town.substr(end - 2, 2);
    return character >= first && character <= last;
  };
  while (endsIn("０", "９")) end -= 2;
  if (endsIn("第", "第")) end -= 2;
  return town.substr(0, end);
}

// What of the column of the town's name belongs into an address of `city`.
std::string TownName(std::string_view column, std::string_view city) {
  static constexpr std::string_view kWhole = "一円";
  const std::string town = WithoutNotes(column);
  if (town == "以下に掲載がない場合") return {};
  if (EndsWithText(town, "がくる場合") && FindText(town, "の次に") != town.npos) return {};
  // "利島村一円" is all of 利島村; there is also a town that is called 一円.
  if (EndsWithText(town, kWhole) && town != kWhole &&
      EndsWithText(city, std::string_view(town).substr(0, town.size() - kWhole.size())))
    return {};
  return std::string(WithoutLotRange(town));
}

void AppendQuoted(std::string_view text, std::string& line) {
  line += '"';
  for (const char c : text) {
    if (c == '"') line += '"';
    line += c;
  }
  line += '"';
}

void AppendLine(const Fields& fields, std::string& list) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) list += ',';
    if ((i == kArea || i >= kFlags) && foundation::IsNumeric(fields[i])) {
      list += fields[i];
    } else {
      AppendQuoted(fields[i], list);
    }
  }
  list += "\r\n";
}

// Turns lines of either published list into lines of ours.
class Importer {
 public:
  explicit Importer(std::string& list) : list_(list) {}

  /// False when it is a line of neither list.
  bool Take(Fields fields) {
    if (fields.size() == kTownColumns && IsCode(fields[kCode])) {
      TakeTown(std::move(fields));
    } else if (fields.size() == kOfficeColumns && IsCode(fields[kOfficeCode])) {
      TakeOffice(fields);
    } else {
      return false;
    }
    return true;
  }

  /// Behind the last line; how many lines there are.
  std::size_t Finish() {
    if (open_) Put(*open_);
    open_.reset();
    return entries_;
  }

 private:
  void TakeTown(Fields fields) {
    for (const int kana : {3, 4, 5}) {
      std::string& text = fields[static_cast<std::size_t>(kana)];
      text = foundation::MapKana(text, foundation::KanaForm::kHalfKatakana);
    }
    if (open_ && depth_ > 0 && (*open_)[kCode] == fields[kCode] && (*open_)[kArea] == fields[kArea]) {
      (*open_)[kTown] += fields[kTown];
      // The reading may be short enough to stand whole in every line.
      if (kanaIsOpen_) (*open_)[kTownKana] += fields[kTownKana];
    } else {
      Finish();
      open_ = fields;
      depth_ = 0;
      kanaIsOpen_ = false;
    }
    depth_ = OpenBrackets(fields[kTown], depth_);
    for (const char c : fields[kTownKana]) {
      if (c == '(' || c == ')') kanaIsOpen_ = c == '(';
    }
  }

  void TakeOffice(const Fields& office) {
    Finish();
    const std::string address = office[kOfficePrefecture] + "　" + office[kOfficeCity] + office[kOfficeTown] +
                                office[kOfficeBlock] + "　" + office[kOfficeName];
    Fields line(kTownColumns, "0");
    line[kArea] = office[kArea];
    line[kOldCode] = office[kOfficeOldCode];
    line[kCode] = office[kOfficeCode];
    line[3] = line[4] = "";
    line[kTownKana] = foundation::MapKana(office[kOfficeKana], foundation::KanaForm::kHalfKatakana);
    line[kAddressColumn] = address;
    line[kCity] = office[kOfficeCity];
    line[kTown] = office[kOfficeTown];
    AppendLine(line, list_);
    ++entries_;
  }

  void Put(Fields& fields) {
    fields[kAddressColumn] = fields[kPrefecture] + fields[kCity] + TownName(fields[kTown], fields[kCity]);
    AppendLine(fields, list_);
    ++entries_;
  }

  std::string& list_;
  std::optional<Fields> open_;  // a town that the next lines may continue
  int depth_ = 0;               // its brackets that are not closed yet
  bool kanaIsOpen_ = false;
  std::size_t entries_ = 0;
};

using AddressesByCode = std::map<std::string, std::set<std::string>>;

AddressesByCode ReadCodes(std::string_view list) {
  AddressesByCode codes;
  for (const std::string_view digit : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
    const AddressQuery query{kCodeColumn, digit, ColumnBit(kCodeColumn) | ColumnBit(kAddressColumn)};
    for (const std::string& entry : FindEntries(list, query)) {
      const std::size_t comma = entry.find(',');
      codes[entry.substr(0, comma)].insert(entry.substr(comma + 1));
    }
  }
  return codes;
}

std::string Joined(const std::set<std::string>& addresses) {
  std::string joined;
  for (const std::string& each : addresses) joined += (joined.empty() ? "" : "、") + each;
  return joined;
}

AddressesByCode ReadLabels(std::string_view coordinates) {
  AddressesByCode codes;
  ListLines lines(coordinates);
  for (std::string_view line; lines.Next(line);) {
    const std::size_t first = std::min(line.find(','), line.size());
    const std::string_view rest = line.substr(std::min(first + 1, line.size()));
    if (first > 0) codes[std::string(line.substr(0, first))].emplace(rest.substr(0, rest.find(',')));
  }
  return codes;
}

ListChanges Compare(const AddressesByCode& old, const AddressesByCode& now) {
  ListChanges changes;
  for (const auto& [code, addresses] : now) {
    const auto was = old.find(code);
    if (was == old.end()) {
      changes.added.push_back({code, "", Joined(addresses)});
    } else if (was->second != addresses) {
      changes.renamed.push_back({code, Joined(was->second), Joined(addresses)});
    }
  }
  for (const auto& [code, addresses] : old) {
    if (!now.contains(code)) changes.removed.push_back({code, Joined(addresses), ""});
  }
  return changes;
}

}  // namespace

ImportOutcome AppendAddresses(std::string_view source, std::string& list) {
  const std::size_t before = list.size();
  Importer importer(list);
  PublishedFile file(source);
  Fields fields;
  while (file.Next(fields)) {
    if (importer.Take(fields)) continue;
    list.resize(before);
    return {0, file.LineNumber(), 0};
  }
  return {importer.Finish(), 0, file.UnstorableLines()};
}

ListChanges CompareLists(std::string_view before, std::string_view after) {
  return Compare(ReadCodes(before), ReadCodes(after));
}

ListChanges CompareCoordinates(std::string_view before, std::string_view after) {
  return Compare(ReadLabels(before), ReadLabels(after));
}

}  // namespace kova::postal
