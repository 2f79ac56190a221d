#pragma once

// The library's numbered texts.

#include <string_view>

namespace kova::foundation {

// The numbers are those of the suite's string resources; do not change.
constexpr int kTextAdministrator = 8032;
constexpr int kTextUser = 8033;
constexpr int kTextUnknownPrivilege = 8034;
constexpr int kTextCannotConnect = 8107;
constexpr int kTextChooseDatabaseFolder = 8111;
constexpr int kTextConnected = 8113;
constexpr int kTextAddress = 8121;
constexpr int kTextPostalCode = 8122;

/// The text of number `id`; empty when there is none. Lives as long as the program.
[[nodiscard]] std::string_view StringTableText(int id);

}  // namespace kova::foundation
