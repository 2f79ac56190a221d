#include "platform/os/error_text.h"

#include <windows.h>

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

DWORD ErrorOf(FileOutcome outcome) {
  switch (outcome) {
    case FileOutcome::kOk:
      return ERROR_SUCCESS;
    case FileOutcome::kNotThere:
      return ERROR_FILE_NOT_FOUND;
    case FileOutcome::kNoAccess:
    case FileOutcome::kReadOnly:
      return ERROR_ACCESS_DENIED;
    case FileOutcome::kBusy:
      return ERROR_SHARING_VIOLATION;
    case FileOutcome::kChanged:
      return ERROR_FILE_EXISTS;
    case FileOutcome::kTooLarge:
      return ERROR_FILE_TOO_LARGE;
    case FileOutcome::kFull:
      return ERROR_DISK_FULL;
    case FileOutcome::kFailed:
      break;
  }
  return ERROR_CANNOT_MAKE;
}

}  // namespace

std::string SystemErrorText(FileOutcome outcome) {
  wchar_t wide[512]{};
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
      ErrorOf(outcome), 0, wide, 512, nullptr);
  std::string text;
  (void)text932::FromUtf16(std::u16string(wide, wide + length), text);
  return text;
}

}  // namespace kova::os
