#include "printing/print_data_reader.h"

#include <charconv>
#include <cstdio>

#include "platform/text932/cp932.h"

namespace kova::printing {
namespace {

/// Thrown within this file only, to leave the reading at the first fault.
struct Fault {
  PrintDataFault fault;
};

/// A line as a message can quote it: its beginning, what is not plain ASCII left out.
std::string Quoted(std::string_view line) {
  std::string text;
  for (const char c : line.substr(0, 40)) text += c >= 0x20 && c < 0x7F ? c : '?';
  return "\"" + text + (line.size() > 40 ? "...\"" : "\"");
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  void Expect(std::string_view text) {
    const std::string_view line = Next();
    if (line == text) return;
    Fail((text.empty() ? "an empty line" : Quoted(text)) + " is expected, not " + Quoted(line));
  }

  /// The number of a line "name=number", written as it is written by us; at most `most`.
  int Count(std::string_view name, int most) {
    const std::string_view line = Next();
    const std::string beginning = std::string(name) + "=";
    const std::string_view digits = line.substr(std::min(beginning.size(), line.size()));
    int count = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    if (line.starts_with(beginning) && whole && count >= 0 && std::to_string(count) == digits) {
      if (count <= most) return count;
      Fail(std::string(name) + " is greater than " + std::to_string(most));
    }
    Fail(Quoted(beginning) + " with a number is expected, not " + Quoted(line));
  }

  /// The value of a line "DataK=value" in `value`. False, and the line is still to be read, when it is
  /// another key's and the key may be missing.
  bool Value(std::string_view key, bool mayBeMissing, std::string& value) {
    const std::string beginning = std::string("Data").append(key) + "=";
    if (mayBeMissing && !rest_.starts_with(beginning)) return false;
    const std::string_view line = Next();
    if (!line.starts_with(beginning)) Fail(Quoted(beginning) + " is expected, not " + Quoted(line));
    value = line.substr(beginning.size());
    return true;
  }

  void ExpectEnd() {
    ++line_;
    if (!rest_.empty()) Fail("the file goes on behind its end");
  }

  [[noreturn]] void Fail(std::string reason) const { throw Fault{{line_, std::move(reason)}}; }

 private:
  /// The next line without its end.
  std::string_view Next() {
    ++line_;
    if (rest_.empty()) Fail("the file ends here");
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) Fail("the line has no end");
    if (end == 0 || rest_[end - 1] != '\r') Fail("the line does not end in CR LF");
    const std::string_view line = rest_.substr(0, end - 1);
    if (PlainValue(line) != line) Fail("the line holds a control character or half a character");
    rest_.remove_prefix(end + 1);
    return line;
  }

  std::string_view rest_;
  int line_ = 0;
};

void ReadSimple(Reader& reader, PrintData& data) {
  reader.Expect("[SimpleData]");
  const int count = reader.Count("Count", FormOfReceipts().count);
  data.form = FormOfCount(count);
  if (data.form == nullptr) reader.Fail("no form has the count " + std::to_string(count));
  for (int key = 1; key <= count; ++key) {
    const KeyUse use = data.form->use(key);
    std::string value;
    if (use != KeyUse::kNever && reader.Value(std::to_string(key), use == KeyUse::kOptional, value))
      data.simple[key] = std::move(value);
  }
}

void ReadInsurance(Reader& reader, PrintData& data) {
  reader.Expect("[InsData]");
  reader.Expect("Count=" + std::to_string(kInsuranceKeys));
  for (std::size_t i = 0; i < data.insurance.size(); ++i)
    (void)reader.Value(std::to_string(i + 1), false, data.insurance[i]);
}

void ReadList(Reader& reader, PrintData& data) {
  for (const char* line : {"[ListData]", "ListCount=1", "", "[ListData1]", "RowCount=1"}) reader.Expect(line);
  const int count = reader.Count("ColumnCount", kMostColumns);
  reader.Expect("");
  for (int column = 1; column <= count; ++column) {
    PrintColumn& read = data.columns.emplace_back();
    for (std::size_t row = 0; row < read.rows.size(); ++row) {
      char key[32];
      std::snprintf(key, sizeof key, "%03d%02zu", column, row + 1);
      (void)reader.Value(key, false, read.rows[row]);
    }
  }
}

}  // namespace

std::optional<PrintDataFault> ReadPrintData(std::string_view bytes, PrintData& data) {
  data = {};
  Reader reader(bytes);
  try {
    for (const char* line : {"[page]", "pagecount=1", "", "[startpage1]"}) reader.Expect(line);
    ReadSimple(reader, data);
    if (data.form->hasReceiptParts) {
      ReadInsurance(reader, data);
      ReadList(reader, data);
    }
    for (const char* line : {"", "[endpage1]", ""}) reader.Expect(line);
    reader.ExpectEnd();
  } catch (Fault& fault) {
    // A null form would be a trap for who looks at what was read.
    if (data.form == nullptr) data.form = &FormOfPatients();
    return std::move(fault.fault);
  }
  return std::nullopt;
}

}  // namespace kova::printing
