#pragma once

// The print data file: what the suite hands to its form-printing program. docs/receipts.md is the page that a
// form printer is written against. WritePrintData is the only writer of the format, print_data_reader.h its
// only reader.

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kova::printing {

/// Whether a form's file has the key "DataN" in its simple part.
enum class KeyUse { kAlways, kOptional, kNever };

/// A kind of form: which keys its file has, and whether the parts of a receipt follow them.
struct PrintForm {
  int count;               // the highest key number; stands in the file as "Count="
  KeyUse (*use)(int key);  // of the keys 1 to count
  bool hasReceiptParts;    // [InsData] and [ListData]
};

const PrintForm& FormOfPatients();
const PrintForm& FormOfReceipts();

/// The form whose simple part has `count` as its count; null when there is none.
const PrintForm* FormOfCount(int count);

/// One column of the list: name twice, amount, remark.
struct PrintColumn {
  std::array<std::string, 4> rows;
};

/// A column's number has three digits in the file.
inline constexpr int kMostColumns = 999;
/// Categories of [InsData].
inline constexpr int kInsuranceKeys = 50;

/// What one file says, without its layout. Texts are code page 932.
struct PrintData {
  const PrintForm* form = &FormOfPatients();
  std::map<int, std::string> simple;                  // by key number; one that is missing is empty
  std::array<std::string, kInsuranceKeys> insurance;  // of the categories 1 to 50
  std::vector<PrintColumn> columns;                   // at most kMostColumns
};

/// `value` as it can stand in the file: every control character (so every line end and tab), and every lead
/// byte that no trail byte follows, is a blank.
std::string PlainValue(std::string_view value);

/// The bytes of the file: lines end in CR LF. Every key of the form is there in ascending order, but for the
/// optional ones that `data` does not have; the parts of a receipt only when the form has them.
std::string WritePrintData(const PrintData& data);

}  // namespace kova::printing
