#include "entry/date_input.h"

#include "controls/win32/date_input_dialog.h"
#include "entry/session.h"
#include "platform/os/clock.h"

using namespace kova;

namespace {

controls::WesternDate Today() {
  const std::tm now = os::LocalTime();
  return {now.tm_year + 1900, now.tm_mon + 1, now.tm_mday};
}

}  // namespace

std::intptr_t CDateInput::DoModal() {
  return entry::Guarded<std::intptr_t>(IDCANCEL, [&] {
    HWND window = cover == nullptr ? nullptr : cover->GetSafeHwnd();
    controls::DateInputDialog dialog({year, month, day}, window,
                                     isBirth ? std::optional(Today()) : std::nullopt);
    const std::intptr_t result = dialog.RunModal(window);
    if (result == IDOK) {
      year = dialog.Date().year;
      month = dialog.Date().month;
      day = dialog.Date().day;
    }
    return result;
  });
}
