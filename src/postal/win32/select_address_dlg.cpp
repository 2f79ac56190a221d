#include "postal/win32/select_address_dlg.h"

#include <optional>
#include <utility>
#include <vector>

#include "foundation/string_table.h"
#include "window/wide_text.h"

namespace kova::postal {

using foundation::StringTableText;
using window::Box;
using window::Column;
using window::Row;

CSelectAddressDlg::CSelectAddressDlg(AddressChoice choice, std::string listAge)
    : Dialog("住所検索", {560, 440}), choice_(std::move(choice)), listAge_(std::move(listAge)) {}

std::string CSelectAddressDlg::Run(HWND parent) { return RunModal(parent) == IDOK ? chosen_ : std::string(); }

void CSelectAddressDlg::AddControls() {
  AddLabel(kTextLabel, "絞り込み(&F)");
  AddEdit(kText);
  AddLabel(kListLabel, "候補(&L)");
  AddOther(kList, WC_LISTVIEWW, window::VirtualList::kStyle | WS_GROUP);
  AddLabel(kCount, "件数:  0000000 / 0000000");
  AddLabel(kAge, "住所データ: 0000年00月00日（00か月前）", SS_RIGHT);
  AddOkAndCancel();
}

Box CSelectAddressDlg::Arrange() const {
  const int gap = Dip(8);
  return Column(gap, {Row(gap, {Natural(kTextLabel), AtLeast(kText, {180, 0}).Stretch()}),
                      Natural(kListLabel), AtLeast(kList, {400, 160}).Stretch(),
                      Row(gap, {AtLeast(kCount, {150, 0}), Natural(kAge).Stretch()}), OkAndCancel()})
      .Margin(Dip(12));
}

void CSelectAddressDlg::OnStart() {
  const std::string address(StringTableText(foundation::kTextAddress));
  const std::string code(StringTableText(foundation::kTextPostalCode));
  std::vector<window::ListColumn> columns{{address, Dip(500)}};
  if (choice_.WhatIsWanted() == Wanted::kPostalCode) columns = {{code, Dip(90)}, {address, Dip(410)}};
  list_.Attach(
      Item(kList), columns, [this](int row, int column) { return CellText(row, column); }, LVS_EX_GRIDLINES);
  ShowText(kAge, listAge_);
  ShowRows();
}

void CSelectAddressDlg::OnCommand(int control, int notification) {
  if (control == kText && notification == EN_CHANGE) Narrow();
}

LRESULT CSelectAddressDlg::OnNotify(const NMHDR& header) {
  if (list_.Answer(header)) return 1;
  if (header.idFrom == kList && header.code == NM_DBLCLK) OnOk();
  return 0;
}

// The list is walked through while the text keeps the focus.
bool CSelectAddressDlg::OnKey(HWND focus, WPARAM key, bool alt) {
  const bool walks = key == VK_DOWN || key == VK_UP || key == VK_NEXT || key == VK_PRIOR;
  if (alt || focus != Item(kText) || !walks) return false;
  SendMessageW(Item(kList), WM_KEYDOWN, key, 0);
  return true;
}

void CSelectAddressDlg::Narrow() {
  std::string text;
  std::wstring missing;
  // No address has characters that cannot be stored; a part of them in the text finds nothing.
  if (!window::Narrow(window::WindowText(Item(kText)), text, missing)) text = "\x01";
  choice_.Narrow(text);
  ShowRows();
}

void CSelectAddressDlg::ShowRows() {
  list_.Select(std::nullopt);
  list_.SetRowCount(static_cast<int>(choice_.Count()));
  if (choice_.Count() > 0) list_.Select(0);
  ShowText(kCount, "件数:  " + std::to_string(choice_.Count()) + " / " + std::to_string(choice_.Total()));
}

void CSelectAddressDlg::OnOk() {
  const std::optional<int> row = list_.Selected();
  if (!row || *row >= static_cast<int>(choice_.Count())) {
    Focus(kText);
    return;
  }
  chosen_ = choice_.AnswerAt(static_cast<std::size_t>(*row));
  Close(IDOK);
}

std::string CSelectAddressDlg::CellText(int row, int column) const {
  if (row < 0 || row >= static_cast<int>(choice_.Count())) return {};
  const Candidate& candidate = choice_.At(static_cast<std::size_t>(row));
  return choice_.WhatIsWanted() == Wanted::kPostalCode && column == 0 ? candidate.postalCode
                                                                      : candidate.address;
}

}  // namespace kova::postal
