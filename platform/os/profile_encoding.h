#pragma once

// Profile texts that are not plain code page 932: a byte-order mark says UTF-8 or UTF-16, as the platform's
// profile functions recognise it.

#include <cstddef>
#include <string>
#include <string_view>

namespace kova::os {

/// The bytes that a profile's body is edited in.
enum class ProfileBytes { kCodePage932, kUtf8 };

/// `bytes` as code page 932 text. Without a byte-order mark they are returned as they are; else converted,
/// with "?" for every character that the code page lacks and every malformed sequence.
std::string ProfileBytesTo932(std::string bytes);

/// Code page 932 `text` in the bytes that a profile's body is edited in.
std::string ProfileTextFrom932(std::string_view text, ProfileBytes bytes);

/// A line of a body in UTF-8 as ProfileBytesTo932 converts it.
std::string ProfileLineTo932(std::string_view utf8Line);

/// How many bytes of `utf8Line` become the first `length` bytes of ProfileLineTo932's text. `length` must not
/// cut what one UTF-8 character becomes.
std::size_t ProfileLengthInUtf8(std::string_view utf8Line, std::size_t length);

/// A file's bytes opened for editing: a body in bytes whose line structure can be edited, and the way back.
class EncodedProfile {
 public:
  /// `file` must outlive this object.
  explicit EncodedProfile(std::string_view file);

  ProfileBytes Bytes() const;
  std::string_view Body() const;

  /// The file with `body` instead of its own; what was not edited comes back byte for byte.
  std::string WithBody(std::string body) const;

 private:
  enum class Mark { kNone, kUtf8, kUtf16Little, kUtf16Big };
  std::string_view file_;
  Mark mark_;
  std::string converted_;  // the body of a UTF-16 file
};

}  // namespace kova::os
