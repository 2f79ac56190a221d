#pragma once

// The practice's mail templates: numbered files in one folder. docs/mail-files.md has the formats.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/files.h"

namespace kova::mail {

struct MailTemplate {
  std::string name;
  std::string subject;
  std::string body;
  bool operator==(const MailTemplate&) const = default;
};

/// A template as a list shows it.
struct NamedTemplate {
  int number = 0;
  std::string name;
  bool operator==(const NamedTemplate&) const = default;
};

/// The largest template file that is read or written, in bytes.
inline constexpr std::size_t kTemplateLimit = std::size_t{256} << 20;

/// The number as files, settings and the tree write it: "%04d".
std::string NumberText(int number);

class TemplateStore {
 public:
  /// `files` must outlive this object. `folder` with or without "\" at its end; an empty one holds nothing
  /// and takes nothing.
  TemplateStore(os::Files& files, std::string_view folder);

  /// The template of that number in `read`. kNotThere without a file; kFailed for one that ends early or
  /// whose length prefix says more than is there; kTooLarge above kTemplateLimit; `read` is untouched unless
  /// kOk. Bytes behind the third text are passed over.
  [[nodiscard]] os::FileOutcome Read(int number, MailTemplate& read) const;

  /// Stores the template whole or not at all, also beside another that stores the same one, on a full disk
  /// and when the process dies. kTooLarge for one that could not be read again.
  [[nodiscard]] os::FileOutcome Write(int number, const MailTemplate& written);

  [[nodiscard]] os::FileOutcome Delete(int number);

  /// The numbers that have a file "*.$mt" (in any ASCII case), each once, in the order of the folder. The
  /// name before the extension is read by atoi's rule.
  std::vector<int> Numbers() const;

  /// The templates that can be read, in the same order.
  std::vector<NamedTemplate> List() const;

  /// Hands out the next number and notes it in "$mt.index", under a lock, so that two workstations never get
  /// the same one. 0 when that file does not exist, cannot be read or written, or stands at the last number;
  /// it is never made (deliberately: it comes with the installation).
  int NextNumber();

  /// The lines of "$mt.Tree"; empty when there is none.
  std::string ReadTreeFile() const;
  [[nodiscard]] os::FileOutcome WriteTreeFile(std::string_view content);

 private:
  std::string FileOf(int number) const;
  os::FileOutcome ReadBytes(int number, std::string& bytes) const;
  /// Carries out `change` under the folder's lock file.
  os::FileOutcome Locked(const std::function<os::FileOutcome()>& change);

  os::Files& files_;
  std::string folder_;  // with "\" at its end, or empty
};

}  // namespace kova::mail
