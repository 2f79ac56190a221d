// Reading and editing a profile text of any bytes: nothing crashes, a written key reads back, the others
// stay.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/os/profile_text.h"

namespace {

using kova::os::EditProfileText;
using kova::os::ProfileText;

void Require(bool holds) {
  if (!holds) std::abort();
}

// The input up to each of its first three NULs names section, key and value; the rest is the text.
std::string_view TakeField(std::string_view& input) {
  const std::size_t end = input.find('\0');
  const std::string_view field = input.substr(0, end);
  input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  return field;
}

void CheckNeighbours(const ProfileText& before, const ProfileText& after) {
  for (const char* section : {"", "Other", "GLOBAL"}) {
    for (const char* key : {"", "x", "neighbour"})
      Require(before.Find(section, key) == after.Find(section, key));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view section = TakeField(input);
  const std::string_view key = TakeField(input);
  const std::string_view value = TakeField(input);
  const ProfileText before{std::string(input)};
  const auto old = before.Find(section, key);
  Require(!old || old->size() <= input.size());
  if (old) (void)kova::os::ProfileInt(*old);

  // A section and key of our own, so that no name of the text can be meant.
  const auto added = EditProfileText(input, "fuzz section", "fuzz key", "v");
  Require(added.has_value());
  const ProfileText after(*added);
  Require(after.Find("FUZZ section", "fuzz KEY") == "v");
  CheckNeighbours(before, after);

  if (const auto edited = EditProfileText(input, section, key, value)) {
    // As it reads in a text of its own.
    const bool isMarked =
        input.starts_with("\xEF\xBB\xBF") || input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF");
    const auto alone = EditProfileText(isMarked ? "\xEF\xBB\xBF" : "", "s", "k", value);
    Require(alone.has_value());
    Require(ProfileText(*edited).Find(section, key) == ProfileText(*alone).Find("s", "k"));
    Require(EditProfileText(*edited, section, key, value) == edited);
  }
  (void)EditProfileText(input, section, key, std::nullopt);
  (void)EditProfileText(input, section, std::nullopt, std::nullopt);
  return 0;
}
