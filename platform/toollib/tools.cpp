#include "platform/toollib/tools.h"

#include <afxwin.h>

#include "platform/os/paths.h"

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

unsigned CTools::GetCashChangerOption(std::string* device) {
  CWinApp* app = AfxGetApp();
  if (device != nullptr)
    *device = app == nullptr ? "" : app->GetProfileString("CASHCHANGER", "DEVICE", "").GetString();
  return app == nullptr ? 0 : static_cast<unsigned>(app->GetProfileInt("CASHCHANGER", "OPTION", 0));
}

std::string CTools::NumericFormat(std::int64_t number) {
  std::string text = std::to_string(number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > first + 3;) text.insert(at -= 3, 1, ',');
  return text;
}

std::string CTools::LastDelimAdd(std::string_view path) { return kova::os::AddTrailingDelimiter(path); }

std::string CTools::LastDelimDel(std::string_view path) {
  return std::string(kova::os::DropTrailingDelimiter(path));
}

bool CTools::ExistFile(std::string_view path) {
  return kova::os::RealFiles().Kind(path) == kova::os::PathKind::kFile;
}
