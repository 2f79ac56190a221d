#include "cashless/exchange_files.h"

#include "cashless/payment_names.h"
#include "cashless/result_codes.h"
#include "foundation/number_text.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;

// Names that bridges use too; do not change.
constexpr std::string_view kWritten = ".tmp";
constexpr std::string_view kRequested = ".dat";
constexpr std::string_view kInProcess = ".pro";
constexpr std::string_view kFinished = ".fin";
constexpr std::string_view kError = ".err";
constexpr std::string_view kResultMarker = "$RESULT=";

constexpr std::size_t kErrorLimit = 64 * 1024;
constexpr std::size_t kTextLimit = 200;

}  // namespace

std::string ExchangeFolder(std::string_view databaseFolder) {
  return databaseFolder.empty() ? std::string() : os::JoinPath(databaseFolder, "Cashless\\");
}

std::string OneLine(std::string_view text) {
  std::string line(text932::CutAtCharacter(text, kTextLimit));
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return line;
}

std::string RequestText(const PaymentRequest& request) {
  std::string text;
  for (const std::int32_t value : {request.amount, request.taxOrOther, request.kind, request.payType,
                                   request.training, request.sequence})
    text += std::to_string(value) + '\n';
  return text + OneLine(request.name) + '\n' + OneLine(request.text) + '\n';
}

int ResultCodeIn(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    if (line.starts_with(kResultMarker)) return foundation::ReadInteger(line.substr(kResultMarker.size()));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : text.size());
  }
  return kNoCode;
}

ExchangeFiles::ExchangeFiles(os::Files& files, std::string_view folder, std::string_view name)
    : files_(files), folder_(os::AddTrailingDelimiter(folder)), base_(folder_ + SafeBaseName(name)) {}

bool ExchangeFiles::Has(std::string_view extension) const {
  return files_.Kind(Path(extension)) == os::PathKind::kFile;
}

ExchangeStatus ExchangeFiles::Status() const {
  if (folder_.empty()) return ExchangeStatus::kNone;
  if (Has(kRequested)) return ExchangeStatus::kRequested;
  if (Has(kFinished)) return ExchangeStatus::kFinished;
  if (Has(kError)) return ExchangeStatus::kError;
  return Has(kInProcess) ? ExchangeStatus::kInProcess : ExchangeStatus::kNone;
}

bool ExchangeFiles::IsFolderThere() const { return files_.Kind(folder_) == os::PathKind::kFolder; }

FileOutcome ExchangeFiles::Put(const PaymentRequest& request) {
  if (folder_.empty()) return FileOutcome::kNotThere;
  FileOutcome outcome = files_.Replace(Path(kWritten), RequestText(request));
  if (outcome != FileOutcome::kOk) return outcome;
  outcome = files_.Rename(Path(kWritten), Path(kRequested));
  if (outcome != FileOutcome::kOk) (void)files_.Delete(Path(kWritten));
  return outcome;
}

FileOutcome ExchangeFiles::Withdraw() {
  const FileOutcome removed = files_.Delete(Path(kRequested));
  return removed == FileOutcome::kOk && Status() != ExchangeStatus::kNone ? FileOutcome::kChanged : removed;
}

FileOutcome ExchangeFiles::TakeBack(ExchangeStatus& status) {
  status = Status();
  if (status != ExchangeStatus::kRequested) return FileOutcome::kOk;
  const FileOutcome taken = Withdraw();
  if (taken != FileOutcome::kNotThere && taken != FileOutcome::kChanged) return taken;
  status = Status();
  return status == ExchangeStatus::kRequested ? FileOutcome::kBusy : FileOutcome::kOk;
}

FileOutcome ExchangeFiles::ReadResult(int& code) const {
  std::string text;
  const FileOutcome outcome = files_.Read(Path(kError), kErrorLimit, text);
  if (outcome == FileOutcome::kBusy || outcome == FileOutcome::kNotThere) return outcome;
  // The number of a line that goes on beyond the limit may be cut.
  if (outcome == FileOutcome::kTooLarge) text.resize(text.rfind('\n') + 1);
  code = ResultCodeIn(text);
  return FileOutcome::kOk;
}

void ExchangeFiles::Remove() {
  if (folder_.empty()) return;
  for (const std::string_view extension : {kWritten, kRequested, kInProcess, kFinished, kError})
    (void)files_.Delete(Path(extension));
}

std::vector<std::string> ExchangeFiles::There() const {
  std::vector<std::string> there;
  for (const std::string_view extension : {kWritten, kRequested, kInProcess, kFinished, kError}) {
    if (Has(extension)) there.emplace_back(extension);
  }
  return there;
}

}  // namespace kova::cashless
