#include "mail/win32/template_tree_dialog.h"

#include <windowsx.h>

#include "mail/tree_drop.h"
#include "window/wide_text.h"

namespace kova::mail {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

namespace {

constexpr LPARAM kRoot = -1;  // the root carries no number

std::map<int, std::string> NamesOf(const TemplateStore& store) {
  std::map<int, std::string> names;
  for (const int number : store.Numbers()) names[number] = NumberText(number) + "（読み込めません）";
  for (NamedTemplate& entry : store.List()) names[entry.number] = std::move(entry.name);
  return names;
}

}  // namespace

TemplateTreeDialog::TemplateTreeDialog(TemplateStore& store, int selected)
    : Dialog("テンプレート選択", {420, 460}),
      store_(store),
      first_(selected),
      tree_(store.ReadTreeFile(), store.Numbers()),
      names_(NamesOf(store)) {}

std::optional<int> TemplateTreeDialog::Run(HWND parent) {
  return RunModal(parent) == IDOK ? std::optional(first_) : std::nullopt;
}

void TemplateTreeDialog::AddControls() {
  AddLabel(kTreeLabel, "テンプレート(&T)");
  AddOther(kTree, WC_TREEVIEWW, TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS);
  AddButton(kUp, "↑");
  AddButton(kDown, "↓");
  AddLabel(kHint, "Alt+↑↓：順序　Alt+→←：階層　ドラッグでも移動できます");
  AddOkAndCancel();
}

Box TemplateTreeDialog::Arrange() const {
  Box buttons = Column(Dip(6), {AtLeast(kUp, {40, 30}), AtLeast(kDown, {40, 30}), Space(0, 0).Stretch()});
  return Column(Dip(6), {Natural(kTreeLabel),
                         Row(Dip(8), {AtLeast(kTree, {260, 200}).Stretch(), std::move(buttons)}).Stretch(),
                         Natural(kHint), Space(0, Dip(2)), OkAndCancel()})
      .Margin(Dip(12));
}

void TemplateTreeDialog::OnStart() {
  ShowTree(first_);
  Focus(kTree);
}

void TemplateTreeDialog::OnCommand(int control, int notification) {
  if (notification != BN_CLICKED || (control != kUp && control != kDown)) return;
  if (const auto number = Selected())
    ShowMoved(*number, control == kUp ? tree_.MoveUp(*number) : tree_.MoveDown(*number));
  Focus(kTree);
}

LRESULT TemplateTreeDialog::OnNotify(const NMHDR& header) {
  if (header.idFrom != kTree) return 0;
  if (header.code == TVN_BEGINDRAGW) BeginDrag(reinterpret_cast<const NMTREEVIEWW&>(header));
  // A leaf is chosen by a double click; an item with others under it opens and closes by it.
  if (header.code == NM_DBLCLK) {
    const auto number = Selected();
    if (number && tree_.Children(number).empty()) PostMessageW(Handle(), WM_COMMAND, IDOK, 0);
  }
  return 0;
}

bool TemplateTreeDialog::OnMessage(UINT message, WPARAM, LPARAM lParam, LRESULT&) {
  if (!dragged_) return false;
  const POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  if (message == WM_MOUSEMOVE) {
    DragOver(at);
  } else if (message == WM_LBUTTONUP) {
    Drop(at);
  } else if (message == WM_CAPTURECHANGED) {
    EndDrag();
  } else {
    return false;
  }
  return true;
}

bool TemplateTreeDialog::OnKey(HWND focus, WPARAM key, bool alt) {
  if (dragged_ && key == VK_ESCAPE) {
    EndDrag();
    return true;
  }
  return alt && focus == Item(kTree) && MoveByKey(key);
}

bool TemplateTreeDialog::MoveByKey(WPARAM key) {
  const auto number = Selected();
  if (!number) return false;
  switch (key) {
    case VK_UP:
      ShowMoved(*number, tree_.MoveUp(*number));
      return true;
    case VK_DOWN:
      ShowMoved(*number, tree_.MoveDown(*number));
      return true;
    case VK_RIGHT:
      ShowMoved(*number, NestUnderPrevious(tree_, *number));
      return true;
    case VK_LEFT:
      ShowMoved(*number, LiftBehindParent(tree_, *number));
      return true;
    default:
      return false;
  }
}

void TemplateTreeDialog::ShowMoved(int number, bool moved) {
  if (moved) ShowTree(number);
}

void TemplateTreeDialog::ShowTree(std::optional<int> selected) {
  HWND tree = Item(kTree);
  std::set<int> closed;
  for (const auto& [number, item] : items_) {
    const bool open = (TreeView_GetItemState(tree, item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
    if (!open && !tree_.Children(number).empty()) closed.insert(number);
  }
  const bool first = items_.empty();
  SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
  TreeView_DeleteAllItems(tree);
  items_.clear();
  AddUnder(TVI_ROOT, std::nullopt);
  for (const auto& [number, item] : items_) {
    if (first || !closed.contains(number)) TreeView_Expand(tree, item, TVE_EXPAND);
  }
  TreeView_Expand(tree, TreeView_GetRoot(tree), TVE_EXPAND);
  const auto at = selected ? items_.find(*selected) : items_.end();
  TreeView_SelectItem(tree, at == items_.end() ? TreeView_GetRoot(tree) : at->second);
  SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
  TreeView_EnsureVisible(tree, TreeView_GetSelection(tree));
}

// Adds the root, and everything under it: each item after the one above it, so no depth is too much.
void TemplateTreeDialog::AddUnder(HTREEITEM parent, std::optional<int> number) {
  HWND tree = Item(kTree);
  const auto add = [&](HTREEITEM under, const std::string& caption, LPARAM data) {
    std::wstring text = window::Wide(caption);
    TVINSERTSTRUCTW added{};
    added.hParent = under;
    added.hInsertAfter = TVI_LAST;
    added.item.mask = TVIF_TEXT | TVIF_PARAM;
    added.item.pszText = text.data();
    added.item.lParam = data;
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&added)));
  };
  std::vector<std::pair<HTREEITEM, std::optional<int>>> waiting{{add(parent, "テンプレート", kRoot), number}};
  while (!waiting.empty()) {
    const auto [item, above] = waiting.back();
    waiting.pop_back();
    for (const int child : tree_.Children(above)) {
      items_[child] = add(item, names_[child], child);
      waiting.emplace_back(items_[child], child);
    }
  }
}

void TemplateTreeDialog::BeginDrag(const NMTREEVIEWW& notice) {
  dragged_ = NumberOf(notice.itemNew.hItem);
  if (!dragged_) return;
  TreeView_SelectItem(Item(kTree), notice.itemNew.hItem);
  SetCapture(Handle());
}

// Where the mouse is over the tree, as the rules of dropping see it.
static std::optional<DropPlace> PlaceAt(HWND dialog, HWND tree, POINT at, HTREEITEM& item) {
  MapWindowPoints(dialog, tree, &at, 1);
  TVHITTESTINFO hit{};
  hit.pt = at;
  item = TreeView_HitTest(tree, &hit);
  RECT row{};
  if (item == nullptr || !TreeView_GetItemRect(tree, item, &row, FALSE)) return std::nullopt;
  return PlaceInRow(at.y - row.top, row.bottom - row.top);
}

void TemplateTreeDialog::DragOver(POINT at) {
  HTREEITEM item = nullptr;
  HWND tree = Item(kTree);
  const auto place = PlaceAt(Handle(), tree, at, item);
  const bool between = place && *place != DropPlace::kUnder;
  TreeView_SelectDropTarget(tree, place && !between ? item : nullptr);
  TreeView_SetInsertMark(tree, between ? item : nullptr, place && *place == DropPlace::kBehind);
  SetCursor(
      LoadCursorW(nullptr, place ? reinterpret_cast<LPCWSTR>(IDC_ARROW) : reinterpret_cast<LPCWSTR>(IDC_NO)));
}

void TemplateTreeDialog::Drop(POINT at) {
  HTREEITEM item = nullptr;
  const auto place = PlaceAt(Handle(), Item(kTree), at, item);
  const int number = *dragged_;
  EndDrag();
  if (place) ShowMoved(number, DropOn(tree_, number, NumberOf(item), *place));
}

void TemplateTreeDialog::EndDrag() {
  if (!dragged_) return;
  dragged_.reset();
  TreeView_SelectDropTarget(Item(kTree), nullptr);
  TreeView_SetInsertMark(Item(kTree), nullptr, FALSE);
  ReleaseCapture();
}

std::optional<int> TemplateTreeDialog::Selected() const {
  return NumberOf(TreeView_GetSelection(Item(kTree)));
}

std::optional<int> TemplateTreeDialog::NumberOf(HTREEITEM item) const {
  TVITEMW asked{};
  asked.hItem = item;
  asked.mask = TVIF_PARAM;
  const bool there =
      item != nullptr && SendMessageW(Item(kTree), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked)) != 0;
  return there && asked.lParam != kRoot ? std::optional(static_cast<int>(asked.lParam)) : std::nullopt;
}

void TemplateTreeDialog::OnOk() {
  if (store_.WriteTreeFile(tree_.FileText()) != os::FileOutcome::kOk) {
    Inform("テンプレートの並びを保存できませんでした。");
    return;
  }
  first_ = Selected().value_or(0);
  Close(IDOK);
}

}  // namespace kova::mail
