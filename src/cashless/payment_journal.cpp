#include "cashless/payment_journal.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "cashless/journal_line.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;

constexpr int kLockPatience = 5000;  // milliseconds
constexpr std::size_t kLimit = std::size_t{16} << 20;
constexpr std::size_t kMostKept = 1000;

std::string Stamp(const std::tm& now) {
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &now);
  return text;
}

// Lines stay as they are, whatever is in them.
std::vector<std::string> Split(std::string_view content) {
  std::vector<std::string> lines;
  while (!content.empty()) {
    const std::size_t end = std::min(content.find('\n'), content.size());
    std::string_view line = content.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    content.remove_prefix(std::min(end + 1, content.size()));
  }
  return lines;
}

std::string Join(const std::vector<std::string>& lines) {
  std::string content;
  for (const std::string& line : lines) content.append(line).append("\r\n");
  return content;
}

// The oldest known outcomes go; what is unresolved or damaged never does.
void DropOldest(std::vector<std::string>& lines) {
  std::size_t left = lines.size() > kMostKept ? lines.size() - kMostKept : 0;
  if (left == 0) return;
  std::erase_if(lines, [&](const std::string& line) {
    if (left == 0) return false;
    const auto entry = ParseJournalLine(line);
    const bool goes = entry && !entry->IsUnresolved();
    left -= goes ? 1 : 0;
    return goes;
  });
}

bool IsBlank(std::string_view text) { return OneLine(text).find_first_not_of(' ') == std::string::npos; }

}  // namespace

std::string JournalPath(std::string_view profilePath) { return std::string(profilePath) + ".payments"; }

PaymentJournal::PaymentJournal(os::Files& files, std::string path) : files_(files), path_(std::move(path)) {}

FileOutcome PaymentJournal::ReadLines(std::vector<std::string>& lines) const {
  std::string content;
  lines.clear();
  if (path_.empty()) return FileOutcome::kNotThere;
  const FileOutcome outcome = files_.Read(path_, kLimit, content);
  if (outcome == FileOutcome::kOk) lines = Split(content);
  return outcome == FileOutcome::kNotThere ? FileOutcome::kOk : outcome;
}

FileOutcome PaymentJournal::ChangeLines(const Change& change) {
  if (path_.empty()) return FileOutcome::kNotThere;
  std::unique_ptr<os::FileLock> lock;
  const FileOutcome locked = files_.Lock(path_ + ".lock", kLockPatience, lock);
  if (locked != FileOutcome::kOk) return locked;
  std::vector<std::string> lines;
  FileOutcome outcome = ReadLines(lines);
  if (outcome == FileOutcome::kOk) outcome = change(lines);
  if (outcome != FileOutcome::kOk) return outcome;
  DropOldest(lines);
  return files_.Replace(path_, Join(lines));
}

FileOutcome PaymentJournal::ChangeEntry(std::string_view name,
                                        const std::function<void(JournalEntry&)>& change) {
  return ChangeLines([&](std::vector<std::string>& lines) {
    for (std::string& line : lines) {
      auto entry = ParseJournalLine(line);
      if (!entry || entry->name != name || !entry->IsUnresolved()) continue;
      change(*entry);
      line = JournalLine(*entry);
      return FileOutcome::kOk;
    }
    return FileOutcome::kNotThere;
  });
}

FileOutcome PaymentJournal::Begin(const PaymentRequest& request, const std::tm& now) {
  JournalEntry begun;
  begun.startedAt = Stamp(now);
  begun.name = OneLine(request.name);
  begun.amount = request.amount;
  begun.kind = request.kind;
  begun.text = request.text;
  const FileOutcome outcome = ChangeLines([&](std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      const auto entry = ParseJournalLine(line);
      if (entry && entry->name == begun.name) return FileOutcome::kChanged;
    }
    // Before the line is written: whoever reads it must see that its program runs. Two payments at once are
    // rare; the second goes without.
    if (!goingOn_) (void)files_.Lock(path_ + ".active", 0, goingOn_);
    goingOnName_ = begun.name;
    lines.push_back(JournalLine(begun));
    return FileOutcome::kOk;
  });
  if (outcome != FileOutcome::kOk) goingOn_.reset();
  return outcome;
}

FileOutcome PaymentJournal::Close(std::string_view name, PaymentOutcome outcome, int code) {
  const FileOutcome closed = ChangeEntry(OneLine(name), [&](JournalEntry& entry) {
    entry.outcome = outcome;
    entry.code = code;
  });
  if (goingOnName_ == OneLine(name)) goingOn_.reset();
  return closed;
}

FileOutcome PaymentJournal::Settle(std::string_view name, PaymentOutcome outcome, std::string_view reason) {
  const bool isKnown = outcome == PaymentOutcome::kPaid || outcome == PaymentOutcome::kNotPaid;
  if (!isKnown || IsBlank(reason)) return FileOutcome::kFailed;
  return ChangeEntry(OneLine(name), [&](JournalEntry& entry) {
    entry.outcome = outcome;
    entry.reason = reason;
  });
}

FileOutcome PaymentJournal::Read(std::vector<JournalEntry>& entries, std::size_t* damaged) const {
  entries.clear();
  std::vector<std::string> lines;
  const FileOutcome outcome = ReadLines(lines);
  std::size_t unread = 0;
  for (const std::string& line : lines) {
    if (auto entry = ParseJournalLine(line)) {
      entries.push_back(std::move(*entry));
    } else {
      ++unread;
    }
  }
  if (damaged != nullptr) *damaged = unread;
  return outcome;
}

bool PaymentJournal::IsOneGoingOn() const {
  if (goingOn_) return true;
  std::unique_ptr<os::FileLock> lock;
  return files_.Lock(path_ + ".active", 0, lock) == FileOutcome::kBusy;
}

FileOutcome PaymentJournal::ReadUnresolved(std::vector<JournalEntry>& entries) const {
  const bool oneGoesOn = IsOneGoingOn();
  const FileOutcome outcome = Read(entries);
  std::erase_if(entries, [&](const JournalEntry& entry) {
    return !entry.IsUnresolved() || (oneGoesOn && entry.outcome == PaymentOutcome::kOpen);
  });
  return outcome;
}

}  // namespace kova::cashless
