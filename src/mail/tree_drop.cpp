#include "mail/tree_drop.h"

#include <algorithm>
#include <vector>

namespace kova::mail {
namespace {

/// The sibling behind `number`; nothing for the last.
std::optional<int> NextSibling(const TemplateTree& tree, int number) {
  const std::vector<int>& siblings = tree.Children(tree.Parent(number));
  const auto at = std::find(siblings.begin(), siblings.end(), number);
  if (at == siblings.end() || at + 1 == siblings.end()) return std::nullopt;
  return *(at + 1);
}

}  // namespace

DropPlace PlaceInRow(int y, int height) {
  if (y * 4 < height) return DropPlace::kBefore;
  return y * 4 >= height * 3 ? DropPlace::kBehind : DropPlace::kUnder;
}

bool DropOn(TemplateTree& tree, int number, std::optional<int> target, DropPlace place) {
  if (!target) return tree.Move(number, std::nullopt, std::nullopt);
  if (*target == number) return false;
  if (place == DropPlace::kUnder) return tree.Move(number, target, std::nullopt);
  const std::optional<int> before = place == DropPlace::kBefore ? target : NextSibling(tree, *target);
  if (before == number) return false;  // it stands there already
  return tree.Move(number, tree.Parent(*target), before);
}

bool NestUnderPrevious(TemplateTree& tree, int number) {
  const std::vector<int>& siblings = tree.Children(tree.Parent(number));
  const auto at = std::find(siblings.begin(), siblings.end(), number);
  if (at == siblings.end() || at == siblings.begin()) return false;
  return tree.Move(number, *(at - 1), std::nullopt);
}

bool LiftBehindParent(TemplateTree& tree, int number) {
  const std::optional<int> parent = tree.Parent(number);
  return parent && tree.Move(number, tree.Parent(*parent), NextSibling(tree, *parent));
}

}  // namespace kova::mail
