#include "cashless/payment_names.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "cashless/exchange_files.h"
#include "cashless/line_check.h"
#include "foundation/number_text.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestWorkstation = 15;
constexpr int kLockPatience = 5000;  // milliseconds
constexpr std::int32_t kMostNumber = 999999;
constexpr int kMostInUse = 100;

bool Stays(std::string_view character) {
  const auto c = static_cast<unsigned char>(character[0]);
  // The private area is how characters are decoded that the code page does not define.
  if (character.size() == 2) return (text932::DecodeAt(character, 0) & 0xFF00) != 0xF700;
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '_' ||
         (c >= 0xA6 && c <= 0xDF);
}

std::string Plain(std::string_view name, std::size_t limit) {
  std::string plain;
  for (std::size_t at = 0; at < name.size();) {
    const std::string_view character = name.substr(at, text932::CharLength(name, at));
    plain += Stays(character) ? character : "_";
    at += character.size();
  }
  return std::string(text932::CutAtCharacter(plain, limit));
}

bool IsDevice(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
  constexpr std::array<std::string_view, 4> kDevices = {"CON", "PRN", "AUX", "NUL"};
  if (std::find(kDevices.begin(), kDevices.end(), upper) != kDevices.end()) return true;
  return upper.size() == 4 && (upper.starts_with("COM") || upper.starts_with("LPT")) && upper[3] >= '0' &&
         upper[3] <= '9';
}

// Under the lock. The counter's first missing or unreadable number is 1.
FileOutcome CountUp(os::Files& files, const std::string& path, std::int32_t& number) {
  std::string content;
  const FileOutcome read = files.Read(path, 64, content);
  if (read != FileOutcome::kOk && read != FileOutcome::kNotThere && read != FileOutcome::kTooLarge)
    return read;
  const std::int32_t last = foundation::ReadInteger(content);
  number = last < 1 || last >= kMostNumber ? 1 : last + 1;
  return files.Replace(path, std::to_string(number));
}

std::string Stamp(const std::tm& now, std::string_view workstation) {
  char time[32];
  std::strftime(time, sizeof time, "%Y%m%d-%H%M%S-", &now);
  std::string name;
  // A bridge may be a program that knows ASCII only.
  for (const char c : Plain(workstation, kLongestWorkstation))
    name += static_cast<unsigned char>(c) < 0x80 && Stays({&c, 1}) ? c : '_';
  return time + (name.empty() ? "_" : name);
}

}  // namespace

std::string SafeBaseName(std::string_view name) {
  std::string plain = Plain(name, kLongestName);
  if (plain == name && !plain.empty() && !IsDevice(plain)) return plain;
  const std::string check = "-" + LineCheck(name);
  return std::string(text932::CutAtCharacter(plain, kLongestName - check.size())) + check;
}

FileOutcome TakePaymentName(os::Files& files, std::string_view databaseFolder, std::string_view workstation,
                            const std::tm& now, PaymentName& taken) {
  if (databaseFolder.empty()) return FileOutcome::kNotThere;
  std::unique_ptr<os::FileLock> lock;
  const FileOutcome locked = files.Lock(os::JoinPath(databaseFolder, "Cashless.lock"), kLockPatience, lock);
  if (locked != FileOutcome::kOk) return locked;
  const std::string counter = os::JoinPath(databaseFolder, "Cashless.number");
  for (int attempt = 0; attempt < kMostInUse; ++attempt) {
    PaymentName next;
    const FileOutcome counted = CountUp(files, counter, next.sequence);
    if (counted != FileOutcome::kOk) return counted;
    char number[16];
    std::snprintf(number, sizeof number, "-%06d", static_cast<int>(next.sequence));
    next.name = Stamp(now, workstation) + number;
    const ExchangeFiles used(files, ExchangeFolder(databaseFolder), next.name);
    if (!used.There().empty()) continue;
    taken = std::move(next);
    return FileOutcome::kOk;
  }
  return FileOutcome::kFailed;
}

}  // namespace kova::cashless
