#include "mail/template_store.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>

#include "foundation/number_text.h"
#include "mail/archive_text.h"
#include "platform/os/paths.h"

namespace kova::mail {
namespace {

using os::FileOutcome;

// Names that other programs of the suite use too; do not change.
constexpr std::string_view kExtension = ".$mt";
constexpr std::string_view kIndexFile = "$mt.index";
constexpr std::string_view kTreeFile = "$mt.Tree";
constexpr std::string_view kLockFile = "$mt.lock";

constexpr int kLockPatience = 5000;  // milliseconds
constexpr std::size_t kIndexLimit = 4096;

struct TemplateTexts {
  std::string_view name, subject, body;
};

std::optional<TemplateTexts> TakeTexts(std::string_view archive) {
  const auto name = TakeArchiveText(archive);
  const auto subject = name ? TakeArchiveText(archive) : std::nullopt;
  const auto body = subject ? TakeArchiveText(archive) : std::nullopt;
  if (!body) return std::nullopt;
  return TemplateTexts{*name, *subject, *body};
}

bool IsTemplateFile(std::string_view fileName) {
  if (fileName.size() < kExtension.size()) return false;
  const std::string_view end = fileName.substr(fileName.size() - kExtension.size());
  return std::equal(end.begin(), end.end(), kExtension.begin(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 0x20 : a) == b; });
}

}  // namespace

std::string NumberText(int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d", number);
  return text;
}

TemplateStore::TemplateStore(os::Files& files, std::string_view folder)
    : files_(files), folder_(os::AddTrailingDelimiter(folder)) {}

std::string TemplateStore::FileOf(int number) const {
  return folder_ + NumberText(number).append(kExtension);
}

FileOutcome TemplateStore::ReadBytes(int number, std::string& bytes) const {
  return folder_.empty() ? FileOutcome::kNotThere : files_.Read(FileOf(number), kTemplateLimit, bytes);
}

FileOutcome TemplateStore::Locked(const std::function<FileOutcome()>& change) {
  if (folder_.empty()) return FileOutcome::kNotThere;
  std::unique_ptr<os::FileLock> lock;
  const FileOutcome locked = files_.Lock(folder_ + std::string(kLockFile), kLockPatience, lock);
  return locked == FileOutcome::kOk ? change() : locked;
}

FileOutcome TemplateStore::Read(int number, MailTemplate& read) const {
  std::string bytes;
  const FileOutcome outcome = ReadBytes(number, bytes);
  if (outcome != FileOutcome::kOk) return outcome;
  const auto texts = TakeTexts(bytes);
  if (!texts) return FileOutcome::kFailed;
  MailTemplate whole{std::string(texts->name), std::string(texts->subject), {}};
  // The long text stays where it was read.
  const auto begin = static_cast<std::size_t>(texts->body.data() - bytes.data());
  bytes.resize(begin + texts->body.size());
  whole.body = std::move(bytes.erase(0, begin));
  read = std::move(whole);
  return FileOutcome::kOk;
}

FileOutcome TemplateStore::Write(int number, const MailTemplate& written) {
  std::string archive;
  for (const std::string* text : {&written.name, &written.subject, &written.body})
    AppendArchiveText(*text, archive);
  if (archive.size() > kTemplateLimit) return FileOutcome::kTooLarge;
  return Locked([&] { return files_.Replace(FileOf(number), archive); });
}

FileOutcome TemplateStore::Delete(int number) {
  return Locked([&] { return files_.Delete(FileOf(number)); });
}

std::vector<int> TemplateStore::Numbers() const {
  std::vector<std::string> names;
  if (folder_.empty() || files_.List(folder_, names) != FileOutcome::kOk) return {};
  std::vector<int> numbers;
  std::unordered_set<int> seen;
  for (const std::string& name : names) {
    if (!IsTemplateFile(name)) continue;
    const int number = foundation::ReadInteger(name);
    if (seen.insert(number).second) numbers.push_back(number);
  }
  return numbers;
}

std::vector<NamedTemplate> TemplateStore::List() const {
  std::vector<NamedTemplate> list;
  std::string bytes;
  for (const int number : Numbers()) {
    if (ReadBytes(number, bytes) != FileOutcome::kOk) continue;
    if (const auto texts = TakeTexts(bytes)) list.push_back({number, std::string(texts->name)});
  }
  return list;
}

int TemplateStore::NextNumber() {
  int next = 0;
  const FileOutcome outcome = Locked([&] {
    const std::string index = folder_ + std::string(kIndexFile);
    std::string content;
    const FileOutcome read = files_.Read(index, kIndexLimit, content);
    if (read != FileOutcome::kOk && read != FileOutcome::kTooLarge) return read;
    const int last = foundation::ReadInteger(std::string_view(content).substr(0, content.find('\n')));
    if (last == std::numeric_limits<int>::max()) return FileOutcome::kFailed;
    next = last + 1;
    return files_.Replace(index, std::to_string(next));
  });
  return outcome == FileOutcome::kOk ? next : 0;
}

std::string TemplateStore::ReadTreeFile() const {
  std::string content;
  if (folder_.empty()) return content;
  const FileOutcome read = files_.Read(folder_ + std::string(kTreeFile), kTemplateLimit, content);
  if (read != FileOutcome::kOk) content.clear();
  return content;
}

FileOutcome TemplateStore::WriteTreeFile(std::string_view content) {
  return Locked([&] { return files_.Replace(folder_ + std::string(kTreeFile), content); });
}

}  // namespace kova::mail
