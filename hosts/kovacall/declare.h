#pragma once

// Makes an Operation of a function: each C++ parameter type says how it is read from the command line.

#include <afx.h>
#include <afxdisp.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <type_traits>

#include "hosts/console/console.h"
#include "hosts/kovacall/any_table.h"
#include "hosts/kovacall/operation.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {

/// How a parameter of type T is taken. `kType` is the argument's type in `kovacall list`, empty for a
/// parameter that is not given on the command line. `Get` is what the function is called with.
template <typename T>
struct Taken;

template <>
struct Taken<const char*> {
  static constexpr std::string_view kType = "text";
  explicit Taken(ArgumentReader& reader) {
    const auto next = reader.Take();
    text = TextArgument(next.value, next.name);
  }
  const char* Get() { return text.c_str(); }
  std::string text;
};

template <typename Number>
struct TakenNumber {
  explicit TakenNumber(ArgumentReader& reader) {
    using Limits = std::numeric_limits<Number>;
    const auto next = reader.Take();
    number = static_cast<Number>(NumberArgument(next.value, next.name, Limits::min(), Limits::max()));
  }
  Number Get() { return number; }
  Number number;
};
template <>
struct Taken<int> : TakenNumber<int> {
  static constexpr std::string_view kType = "int";
  using TakenNumber::TakenNumber;
};
template <>
struct Taken<short> : TakenNumber<short> {
  static constexpr std::string_view kType = "short";
  using TakenNumber::TakenNumber;
};

template <>
struct Taken<double> {
  static constexpr std::string_view kType = "real";
  explicit Taken(ArgumentReader& reader) {
    const auto next = reader.Take();
    const char* end = next.value.data() + next.value.size();
    const auto [stop, error] = std::from_chars(next.value.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number))
      throw UsageError(std::string(next.name) + ": \"" + ShowControls(next.value) + "\" is no number");
  }
  double Get() { return number; }
  double number = 0;
};

template <>
struct Taken<COleDateTime> {
  static constexpr std::string_view kType = "YYYYMMDD";
  explicit Taken(ArgumentReader& reader) {
    const auto next = reader.Take();
    const auto number = static_cast<int>(NumberArgument(next.value, next.name, 0, 99999999));
    if (next.value.size() != 8) throw UsageError(std::string(next.name) + ": a date is eight digits");
    date = COleDateTime(number / 10000, number / 100 % 100, number % 100, 0, 0, 0);
  }
  COleDateTime Get() { return date; }
  COleDateTime date;
};

template <>
struct Taken<CKovaDBSys*> {
  static constexpr std::string_view kType = "";
  explicit Taken(ArgumentReader& reader) : practice(&reader.GetPractice()) {}
  CKovaDBSys* Get() { return &practice->Database(); }
  Practice* practice;
};

/// A list of texts that the function may extend.
template <>
struct Taken<CStringArray*> {
  static constexpr std::string_view kType = "text...";
  explicit Taken(ArgumentReader& reader) {
    for (const std::string_view value : reader.TakeMany()) list.Add(TextArgument(value, "list").c_str());
  }
  CStringArray* Get() { return &list; }
  CStringArray list;
};

/// Where a function puts its out-parameters.
template <>
struct Taken<Reply*> {
  static constexpr std::string_view kType = "";
  explicit Taken(ArgumentReader& reader) : reply(&reader.GetReply()) {}
  Reply* Get() { return reply; }
  Reply* reply;
};

/// A record given as field=value arguments; a kind of record says what its fields are by a specialisation of
/// RecordFields.
template <typename Record>
std::span<const store::FieldDef> RecordFields();
template <typename Record>
struct TakenRecord {
  static constexpr std::string_view kType = "field=value...";
  explicit TakenRecord(ArgumentReader& reader) {
    for (const std::string_view argument : reader.TakeMany())
      AssignArgument(RecordFields<Record>(), "the record", argument, reinterpret_cast<char*>(&record));
  }
  static std::string Fields() {
    std::string text;
    for (const store::FieldDef& field : RecordFields<Record>())
      text +=
          (text.empty() ? "" : " ") + field.name + (field.kind == store::FieldKind::kText ? "=text" : "=int");
    return text;
  }
  Record* Get() { return &record; }
  Record record{};
};

inline std::string ShowResult(const CString& text) { return ShowControls(text932::ToUtf8(text.GetString())); }
template <typename Number>
requires std::is_arithmetic_v<Number> std::string ShowResult(Number number) {
  char digits[64];  // of a double: the shortest text that reads back as the same number
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

template <typename T>
constexpr std::string_view ResultType() {
  if constexpr (std::is_void_v<T>) {
    return "";
  } else if constexpr (std::is_floating_point_v<T>) {
    return "real";
  } else {
    return std::is_arithmetic_v<T> ? "int" : "text";
  }
}

template <typename... Types>
std::vector<Parameter> NameParameters(std::string_view operation, std::initializer_list<const char*> names) {
  std::vector<Parameter> parameters;
  [[maybe_unused]] const auto add = [&]<typename T>(T*) {
    if (T::kType.empty()) return;
    if (parameters.size() == names.size())
      throw std::logic_error(std::string(operation) + " has too few argument names");
    Parameter parameter{
        names.begin()[parameters.size()], std::string(T::kType), T::kType.ends_with("..."), {}};
    if constexpr (requires { T::Fields(); }) parameter.fields = T::Fields();
    parameters.push_back(std::move(parameter));
  };
  (add(static_cast<Taken<Types>*>(nullptr)), ...);
  if (parameters.size() != names.size())
    throw std::logic_error(std::string(operation) + " has too many argument names");
  return parameters;
}

/// `names` are those of the parameters that are given on the command line, in their order.
template <typename Result, typename... Types>
Operation Declare(std::string_view name, std::initializer_list<const char*> names,
                  Result (*function)(Types...)) {
  Operation operation{name, NameParameters<Types...>(name, names), ResultType<Result>(), {}};
  operation.call = [parameters = operation.parameters, function](const std::vector<std::string>& arguments,
                                                                 Practice& practice) {
    Reply reply;
    [[maybe_unused]] ArgumentReader reader(parameters, arguments, practice, reply);
    std::tuple<Taken<Types>...> taken{Taken<Types>(reader)...};  // braces: read from left to right
    std::apply(
        [&](auto&... each) {
          if constexpr (std::is_void_v<Result>) {
            function(each.Get()...);
          } else {
            reply.result = ShowResult(function(each.Get()...));
          }
        },
        taken);
    return reply;
  };
  return operation;
}

}  // namespace kova::hosts
