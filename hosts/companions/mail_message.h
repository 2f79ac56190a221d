#pragma once

// A mail as mail programs keep it: one message in the internet's form (RFC 5322), texts in UTF-8.

#include <ctime>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova::companions {

/// Texts are code page 932.
struct MailMessage {
  std::string senderName;  // may be empty
  std::string senderAddress;
  std::vector<std::string> to;
  std::string subject;
  std::string body;
  std::vector<std::pair<std::string, std::string>>
      fields;  // further ones: name and text; an empty text is left out
  std::tm date{};
  int minutesFromUtc = 0;
  std::string id;  // this message's alone, without the part behind "@"
};

/// The message's bytes. What the code page does not define, or half a character, becomes U+FFFD. Control
/// characters in what stands in the head, line breaks among them, become blanks, so that no text can add a
/// field.
std::string WriteMessage(const MailMessage& message);

/// The addresses of a list with "," between, blanks around them dropped. What is no plain address (one "@",
/// ASCII letters, digits and the usual signs) is in `refused`; what is empty is passed over.
struct Addresses {
  std::vector<std::string> usable;
  std::vector<std::string> refused;
};
Addresses ReadAddresses(std::string_view list);

}  // namespace kova::companions
