#pragma once

// The files of one payment in the exchange folder. docs/cashless.md is the page that a bridge is written
// against.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/files.h"

namespace kova::cashless {

/// The exchange folder in the practice's database folder, "\" at its end; empty without a database folder.
std::string ExchangeFolder(std::string_view databaseFolder);

/// What a request says, in the order of its lines.
struct PaymentRequest {
  std::int32_t amount = 0;      // yen, tax included
  std::int32_t taxOrOther = 0;  // yen of the amount
  std::int32_t kind = 0;        // PaymentKind::number
  std::int32_t payType = 0;
  std::int32_t training = 0;  // 1: nothing is charged
  std::int32_t sequence = 0;
  std::string name;  // the transaction's
  std::string text;  // whom or what it is for
};

/// The bytes of a request file. What is no line of text in a text becomes blanks; a text over 200 bytes is
/// cut.
std::string RequestText(const PaymentRequest& request);

/// `text` as RequestText writes it.
std::string OneLine(std::string_view text);

/// The code in an error file's text: the number (atoi's rule) behind the first line that begins with
/// "$RESULT="; 99 without such a line.
int ResultCodeIn(std::string_view text);

/// How far an exchange is.
enum class ExchangeStatus { kNone = -1, kRequested = 0, kFinished = 1, kError = 2, kInProcess = 3 };

class ExchangeFiles {
 public:
  /// Of the transaction `name`; its files never lie elsewhere than right in `folder` (SafeBaseName). `files`
  /// must outlive this object.
  ExchangeFiles(os::Files& files, std::string_view folder, std::string_view name);

  /// The full name of a file.
  std::string Path(std::string_view extension) const { return base_ + std::string(extension); }

  /// By the first file that is there, in the order ".dat", ".fin", ".err", ".pro". kNone also when the folder
  /// cannot be reached.
  ExchangeStatus Status() const;
  bool IsFolderThere() const;

  /// Leaves the request for the bridge, whole or not at all.
  [[nodiscard]] os::FileOutcome Put(const PaymentRequest& request);

  /// Takes a request back that the bridge has not taken up: kOk is certain. kNotThere when it was taken up
  /// meanwhile; kChanged when it was removed, but another file says that the bridge knows it.
  [[nodiscard]] os::FileOutcome Withdraw();

  /// Status(), but a request that is still there is taken back: kRequested then says that it was. Not kOk
  /// when it is there and cannot be taken back.
  [[nodiscard]] os::FileOutcome TakeBack(ExchangeStatus& status);

  /// The code of the error file. Reads the first 64 KB: what comes later, and a line that goes on there, does
  /// not count. kBusy while the bridge holds the file, kNotThere without it. A file that cannot be read is
  /// kOk with code 99.
  [[nodiscard]] os::FileOutcome ReadResult(int& code) const;

  /// Removes whatever is there; what cannot be removed stays.
  void Remove();

  /// The extensions of the files that are there now.
  std::vector<std::string> There() const;

 private:
  bool Has(std::string_view extension) const;

  os::Files& files_;
  std::string folder_;
  std::string base_;
};

}  // namespace kova::cashless
