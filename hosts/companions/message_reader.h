#pragma once

// Reads the mails that mail_message.h writes, for showing them. UTF-8.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova::companions {

struct ReadableMail {
  std::vector<std::pair<std::string, std::string>> fields;  // in their order, unfolded, encoded words decoded
  std::string body;                                         // decoded, "\n" for a line end

  /// The first field of that name; empty without one.
  std::string_view Field(std::string_view name) const;
};

/// Of a mail in another encoding than base64 the body is given as it stands.
ReadableMail ReadMessage(std::string_view message);

}  // namespace kova::companions
