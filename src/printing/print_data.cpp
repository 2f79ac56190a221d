#include "printing/print_data.h"

#include <cstdio>

#include "platform/text932/cp932.h"

namespace kova::printing {
namespace {

// The key numbers are those of the forms' layouts; do not change.
KeyUse PatientKey(int key) {
  return key == 30 || (key >= 46 && key <= 50) ? KeyUse::kNever : KeyUse::kAlways;
}

KeyUse ReceiptKey(int key) {
  if (key >= 62 && key <= 97) return KeyUse::kNever;
  return key == 32 ? KeyUse::kOptional : KeyUse::kAlways;  // the heading of a tax that need not be there
}

class Lines {
 public:
  void Add(std::string_view line) { bytes_.append(line).append("\r\n"); }
  void AddCount(std::string_view name, std::size_t count) {
    Add(std::string(name) + "=" + std::to_string(count));
  }
  void AddKey(std::string_view key, std::string_view value) {
    Add(std::string("Data").append(key).append("=").append(PlainValue(value)));
  }
  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

void AddSimple(const PrintData& data, Lines& lines) {
  lines.Add("[SimpleData]");
  lines.AddCount("Count", static_cast<std::size_t>(data.form->count));
  for (int key = 1; key <= data.form->count; ++key) {
    const auto value = data.simple.find(key);
    const bool there = value != data.simple.end();
    const KeyUse use = data.form->use(key);
    if (use == KeyUse::kNever || (use == KeyUse::kOptional && !there)) continue;
    lines.AddKey(std::to_string(key), there ? std::string_view(value->second) : std::string_view());
  }
}

void AddInsurance(const PrintData& data, Lines& lines) {
  lines.Add("[InsData]");
  lines.AddCount("Count", data.insurance.size());
  for (std::size_t i = 0; i < data.insurance.size(); ++i)
    lines.AddKey(std::to_string(i + 1), data.insurance[i]);
}

void AddList(const PrintData& data, Lines& lines) {
  lines.Add("[ListData]");
  lines.Add("ListCount=1");
  lines.Add("");
  lines.Add("[ListData1]");
  lines.Add("RowCount=1");
  lines.AddCount("ColumnCount", data.columns.size());
  lines.Add("");
  for (std::size_t column = 0; column < data.columns.size(); ++column) {
    for (std::size_t row = 0; row < data.columns[column].rows.size(); ++row) {
      char key[32];
      std::snprintf(key, sizeof key, "%03zu%02zu", column + 1, row + 1);
      lines.AddKey(key, data.columns[column].rows[row]);
    }
  }
}

}  // namespace

const PrintForm& FormOfPatients() {
  static const PrintForm form{79, &PatientKey, false};
  return form;
}

const PrintForm& FormOfReceipts() {
  static const PrintForm form{99, &ReceiptKey, true};
  return form;
}

const PrintForm* FormOfCount(int count) {
  for (const PrintForm* form : {&FormOfPatients(), &FormOfReceipts()}) {
    if (form->count == count) return form;
  }
  return nullptr;
}

std::string PlainValue(std::string_view value) {
  std::string plain(value);
  for (std::size_t i = 0; i < plain.size(); i += text932::CharLength(value, i)) {
    if (text932::CharLength(value, i) == 2) continue;
    const auto c = static_cast<unsigned char>(plain[i]);
    if (c < 0x20 || c == 0x7F || text932::IsLeadByte(c)) plain[i] = ' ';
  }
  return plain;
}

std::string WritePrintData(const PrintData& data) {
  Lines lines;
  lines.Add("[page]");
  lines.Add("pagecount=1");
  lines.Add("");
  lines.Add("[startpage1]");
  AddSimple(data, lines);
  if (data.form->hasReceiptParts) {
    AddInsurance(data, lines);
    AddList(data, lines);
  }
  lines.Add("");
  lines.Add("[endpage1]");
  lines.Add("");
  return lines.Take();
}

}  // namespace kova::printing
