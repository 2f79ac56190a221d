#pragma once

// Order and nesting of the templates in the selection tree, and its file "$mt.Tree".

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kova::mail {

/// A forest of template numbers, each there once. Positions of children are their order.
class TemplateTree {
 public:
  /// From the bytes of the tree file and the numbers that have a template. Every number of `existing` is in
  /// the tree once, and nothing else is.
  ///
  /// A line is a number and, after "-", its parent's, both by atoi's rule; one that begins with no digit or
  /// whose number has no template is passed over, and of two lines for one number the first counts. Siblings
  /// are in the order of their lines; a parent may come later in the file. An item whose parent is missing or
  /// 0 hangs under the root; of items that hang in a ring the one whose line comes first does. Numbers
  /// without a line follow at the end of the root's children.
  TemplateTree(std::string_view file, const std::vector<int>& existing);

  /// The numbers under `parent` (nothing: under the root), in their order.
  const std::vector<int>& Children(std::optional<int> parent) const;
  /// The number above; nothing under the root or when the number is not in the tree.
  std::optional<int> Parent(int number) const;

  /// One place up or down among its siblings; false when it is the first or last, or not there.
  bool MoveUp(int number);
  bool MoveDown(int number);

  /// Hangs `number` with all under it below `parent` (nothing: the root), before `before` of its children
  /// (nothing: at the end). False, and nothing changes, when that would put it under itself, when one of the
  /// numbers is not where it is said to be, or under number 0, which the file cannot say.
  bool Move(int number, std::optional<int> parent, std::optional<int> before);

  /// The file's text: depth first, "%04d\r\n" or "%04d-%04d\r\n" (own number, parent's); number 0 is left
  /// out.
  std::string FileText() const;

 private:
  struct Item {
    std::optional<int> parent;
    std::vector<int> children;
  };

  std::vector<int>& ChildrenOf(std::optional<int> parent);
  bool Step(int number, int places);
  bool IsUnder(int number, int above) const;

  std::unordered_map<int, Item> items_;
  std::vector<int> top_;  // the root's children
};

}  // namespace kova::mail
