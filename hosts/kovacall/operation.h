#pragma once

// An operation as kovacall sees it: its arguments by name and type, and a way to call it. All of it is
// derived from the C++ function; see operations.cpp for the list.

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/console/practice.h"

namespace kova::hosts {

/// What is printed, in UTF-8: the result on one line (none for an operation without a result), then each
/// out-parameter as name=value.
struct Reply {
  std::optional<std::string> result;
  std::vector<std::pair<std::string, std::string>> outs;
};

struct Parameter {
  std::string name;
  std::string type;
  bool many;           ///< takes all arguments that the others leave
  std::string fields;  ///< of a record: "name=type" with blanks between
};

/// Hands the arguments of a call out, one after the other.
class ArgumentReader {
 public:
  /// Throws UsageError when the number of arguments is not the operation's. All three must outlive this
  /// object.
  ArgumentReader(const std::vector<Parameter>& parameters, const std::vector<std::string>& arguments,
                 Practice& practice, Reply& reply);

  /// The next argument and the name of the parameter that it is for.
  struct Next {
    std::string_view name;
    std::string_view value;
  };
  Next Take();
  /// All arguments of a parameter that takes many.
  std::vector<std::string_view> TakeMany();

  Practice& GetPractice() { return practice_; }
  Reply& GetReply() { return reply_; }

 private:
  const std::vector<Parameter>& parameters_;
  const std::vector<std::string>& arguments_;
  Practice& practice_;
  Reply& reply_;
  std::size_t parameter_ = 0;
  std::size_t argument_ = 0;
};

struct Operation {
  std::string_view name;
  std::vector<Parameter> parameters;
  std::string_view resultType;
  /// Reads its arguments, calls, and gives what to print. Throws UsageError.
  std::function<Reply(const std::vector<std::string>& arguments, Practice& practice)> call;
};

/// Every callable operation, in the order of the library's header.
const std::vector<Operation>& Operations();

}  // namespace kova::hosts
