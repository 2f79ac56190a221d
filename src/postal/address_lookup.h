#pragma once

// From a postal code to the address, and from an address to the postal code.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/files.h"

namespace kova::postal {

enum class Wanted { kAddress, kPostalCode };

struct Candidate {
  std::string postalCode;  // with its hyphen; empty where the address is what is wanted
  std::string address;
  bool operator==(const Candidate&) const = default;
};

/// What a lookup found, in the list's order and without repetition; empty when nothing, also when the list is
/// missing or cannot be read.
struct Candidates {
  Wanted wanted = Wanted::kAddress;
  std::vector<Candidate> list;

  const std::string& Answer(std::size_t at) const {
    return wanted == Wanted::kAddress ? list[at].address : list[at].postalCode;
  }
  /// The answer where nobody needs to be asked: that of the only candidate, empty without one.
  std::optional<std::string> SureAnswer() const;
};

/// The addresses of the codes that begin with `code`, which may have hyphens, dashes, spaces, a "〒" and
/// full-width digits.
Candidates AddressesOfCode(os::Files& files, std::string_view fileName, std::string_view code);

/// The codes of the addresses that begin with as many characters of `address` as any address of the list
/// does, so that a house number does not matter. Spaces of `address` count for nothing. An address of spaces
/// alone is looked for as it is.
Candidates CodesOfAddress(os::Files& files, std::string_view fileName, std::string_view address);

}  // namespace kova::postal
