#include "platform/toollib/tools.h"

std::string CTools::MakeDate(std::string_view date) {
  std::string shown(date);
  if (date.size() != 8 || date.find_first_not_of("0123456789") != std::string_view::npos) return shown;
  return shown.insert(6, 1, '/').insert(4, 1, '/');
}
