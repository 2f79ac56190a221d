#include "platform/toollib/tools.h"

std::string CTools::MakeDate(std::string_view date) {
  std::string shown(date);
  if (date.size() != 8 || date.find_first_not_of("0123456789") != std::string_view::npos) return shown;
  return shown.insert(6, 1, '/').insert(4, 1, '/');
}

std::string CTools::WithMaidenName(std::string_view name, std::string_view maidenName) {
  std::string shown(name);
  if (!maidenName.empty()) shown.append("（").append(maidenName).append("）");
  return shown;
}
