#pragma once

// A table that somebody published: lines of fields, in Shift-JIS or in UTF-8.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "postal/address_list.h"

namespace kova::postal {

using Fields = std::vector<std::string>;

class PublishedFile {
 public:
  /// `bytes` must outlive this object.
  explicit PublishedFile(std::string_view bytes);

  /// The fields of the next line that is not empty, in code page 932; false behind the last one.
  bool Next(Fields& fields);

  /// Of the line that Next gave last, from 1.
  std::size_t LineNumber() const { return number_; }
  /// Lines so far with a character that code page 932 lacks; it became "?".
  std::size_t UnstorableLines() const { return unstorable_; }

 private:
  bool isUtf8_;
  ListLines lines_;
  std::size_t number_ = 0;
  std::size_t unstorable_ = 0;
  std::string converted_;
};

}  // namespace kova::postal
