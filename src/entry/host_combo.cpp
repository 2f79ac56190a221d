#include "entry/host_combo.h"

#include <string>

namespace kova::entry {
namespace {

class ObjectCombo final : public HostCombo {
 public:
  explicit ObjectCombo(CComboBox& combo) : combo_(combo) {}

 private:
  void Empty() override { combo_.ResetContent(); }
  int Append(std::string_view text) override { return combo_.InsertString(-1, std::string(text).c_str()); }
  int Count() const override { return combo_.GetCount(); }
  void SetData(int at, std::uintptr_t data) override { combo_.SetItemData(at, data); }
  std::uintptr_t Data(int at) const override { return combo_.GetItemData(at); }
  void Select(int at) override { combo_.SetCurSel(at); }

  CComboBox& combo_;
};

}  // namespace

std::unique_ptr<HostCombo> ComboWithoutWindow(CComboBox& combo) {
  return std::make_unique<ObjectCombo>(combo);
}

void HostCombo::Fill(const pickers::ChoiceList& choices) {
  Empty();
  for (const pickers::Choice& choice : choices.entries) {
    const int at = Append(choice.text);
    if (at < 0) return;
    if (choice.data.empty()) continue;
    auto block = std::make_unique<char[]>(choice.data.size());
    choice.data.copy(block.get(), choice.data.size());
    SetData(at, reinterpret_cast<std::uintptr_t>(block.release()));
  }
  Select(choices.selected);
}

void HostCombo::Free() {
  const int count = Count();
  for (int at = 0; at < count; ++at) {
    const std::uintptr_t data = Data(at);
    // An entry without data gives 0; the error answer of a list is -1.
    if (data != static_cast<std::uintptr_t>(-1)) delete[] reinterpret_cast<char*>(data);
  }
  Empty();
}

}  // namespace kova::entry
