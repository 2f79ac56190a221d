#include "entry/host_combo.h"

namespace kova::entry {

std::unique_ptr<HostCombo> HostComboOf(CComboBox& combo) { return ComboWithoutWindow(combo); }

}  // namespace kova::entry
