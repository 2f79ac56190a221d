#include "platform/os/error_text.h"

#include <cerrno>
#include <cstring>

namespace kova::os {
namespace {

int ErrorOf(FileOutcome outcome) {
  switch (outcome) {
    case FileOutcome::kOk:
      return 0;
    case FileOutcome::kNotThere:
      return ENOENT;
    case FileOutcome::kNoAccess:
    case FileOutcome::kReadOnly:
      return EACCES;
    case FileOutcome::kBusy:
      return EBUSY;
    case FileOutcome::kChanged:
      return EEXIST;
    case FileOutcome::kTooLarge:
      return EFBIG;
    case FileOutcome::kFull:
      return ENOSPC;
    case FileOutcome::kFailed:
      break;
  }
  return EIO;
}

}  // namespace

std::string SystemErrorText(FileOutcome outcome) { return std::strerror(ErrorOf(outcome)); }

}  // namespace kova::os
