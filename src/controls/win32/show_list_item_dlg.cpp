#include "controls/win32/show_list_item_dlg.h"

#include <utility>

namespace kova::controls {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

CShowListItemDlg::CShowListItemDlg(os::ApplicationProfile& profile, std::string_view section,
                                   std::vector<NamedColumn> columns)
    : Dialog("表示項目の設定", {0, 420}),
      profile_(profile),
      section_(section),
      columns_(std::move(columns)) {}

void CShowListItemDlg::AddControls() {
  AddLabel(kItemsLabel, "リストに表示したい項目をチェックしてください(&L)");
  AddOther(kItems, WC_LISTVIEWW, CheckList::kStyle);
  AddButton(kAll, "全チェック(&A)");
  AddButton(kNone, "全解除(&N)");
  AddOkAndCancel();
}

Box CShowListItemDlg::Arrange() const {
  Box buttons = Column(Dip(6), {Natural(kAll), Natural(kNone), Space(0, 0).Stretch()});
  return Column(Dip(6), {Natural(kItemsLabel),
                         Row(Dip(8), {AtLeast(kItems, {310, 160}).Stretch(), std::move(buttons)}).Stretch(),
                         Space(0, Dip(2)), OkAndCancel()})
      .Margin(Dip(12));
}

void CShowListItemDlg::OnStart() {
  list_.Attach(Item(kItems), Dip(280));
  std::vector<CheckList::RowText> rows;
  for (const NamedColumn& each : columns_)
    rows.push_back({each.name, IsItemShown(profile_, section_, each.column)});
  list_.Show(rows);
  if (!rows.empty()) list_.Select(0);
  Focus(kItems);
}

void CShowListItemDlg::OnCommand(int control, int notification) {
  if (notification == BN_CLICKED && (control == kAll || control == kNone)) list_.CheckAll(control == kAll);
}

void CShowListItemDlg::OnOk() {
  std::vector<ShownItem> items;
  for (std::size_t i = 0; i < columns_.size(); ++i)
    items.push_back({columns_[i].column, list_.IsChecked(static_cast<int>(i))});
  if (StoreItems(profile_, section_, items)) {
    Close(IDOK);
  } else {
    Inform("表示項目の設定を保存できませんでした。");
  }
}

}  // namespace kova::controls
