#pragma once

// The kinds of field that a record is made of. A record is a plain structure of fixed-width character fields
// and integers; each table lists its fields once (tables/*.h) and everything else is derived from that list.

#include <cstddef>
#include <cstdint>

namespace kova::store {

enum class FieldKind { kText, kInt32, kUInt8 };

/// A text of at most N bytes of code page 932 and its terminator. A text that fills all N + 1 bytes has none.
template <std::size_t N>
struct Text {
  using Storage = char[N + 1];
  static constexpr FieldKind kKind = FieldKind::kText;
  static constexpr std::size_t kWidth = N + 1;
  static constexpr std::size_t kCount = 1;
};

/// `Count` texts one behind the other; a column each in the database, numbered from 1.
template <std::size_t Count, std::size_t N>
struct TextList {
  using Storage = char[Count][N + 1];
  static constexpr FieldKind kKind = FieldKind::kText;
  static constexpr std::size_t kWidth = N + 1;
  static constexpr std::size_t kCount = Count;
};

/// A 32-bit signed number: yen, points, a count, whole percents.
struct Int32 {
  using Storage = std::int32_t;
  static constexpr FieldKind kKind = FieldKind::kInt32;
  static constexpr std::size_t kWidth = 4;
  static constexpr std::size_t kCount = 1;
};

/// An 8-bit flag or small code.
struct UInt8 {
  using Storage = std::uint8_t;
  static constexpr FieldKind kKind = FieldKind::kUInt8;
  static constexpr std::size_t kWidth = 1;
  static constexpr std::size_t kCount = 1;
};

using Date = Text<8>;           // YYYYMMDD
using Time = Text<4>;           // HHMM
using PatientCode = Text<20>;   // the key of a patient
using RecordNumber = Text<12>;  // a number that the practice counts up: sale, reservation, charge
using Code2 = Text<2>;          // code of a master record
using Code3 = Text<3>;
using Code4 = Text<4>;
using Name = Text<40>;
using Marker = Text<8>;  // begins with "__": the record is retired
using FiveDates = TextList<5, 8>;
using FiveTimes = TextList<5, 4>;
using TenCodes = TextList<10, 2>;

}  // namespace kova::store

// A table's field list is a macro F(kind, name, meaning) once a field; this makes the structure of it.
#define KOVA_MEMBER(kind, name, meaning) kova::store::kind::Storage name;
#define KOVA_RECORD(Tag, FIELDS) \
  struct Tag {                   \
    FIELDS(KOVA_MEMBER)          \
  };
