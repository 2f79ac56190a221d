#pragma once

// "テンプレート選択": the templates in their order and nesting, to choose one or to change the order.

#include <windows.h>
#include <commctrl.h>

#include <map>
#include <optional>
#include <set>
#include <string>

#include "mail/template_store.h"
#include "mail/template_tree.h"
#include "window/dialog.h"

namespace kova::mail {

class TemplateTreeDialog final : public window::Dialog {
 public:
  enum Id { kTreeLabel = 100, kTree, kUp, kDown, kHint };

  /// `store` must outlive the dialog; `selected` is the number to show selected, if it is there.
  TemplateTreeDialog(TemplateStore& store, int selected);

  /// Runs it; with OK the order has been stored, and this is the selected number: 0 for none (the root).
  std::optional<int> Run(HWND parent);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  void OnOk() override;

  bool MoveByKey(WPARAM key);
  void ShowMoved(int number, bool moved);
  void ShowTree(std::optional<int> selected);
  void AddUnder(HTREEITEM parent, std::optional<int> number);
  void BeginDrag(const NMTREEVIEWW& notice);
  void DragOver(POINT at);
  void Drop(POINT at);
  void EndDrag();
  std::optional<int> Selected() const;
  std::optional<int> NumberOf(HTREEITEM item) const;

  TemplateStore& store_;
  int first_;
  TemplateTree tree_;
  std::map<int, std::string> names_;
  std::map<int, HTREEITEM> items_;
  std::optional<int> dragged_;
};

}  // namespace kova::mail
