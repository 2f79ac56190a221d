#pragma once

// What a key or the mouse does to the tree of templates.

#include <optional>

#include "mail/template_tree.h"

namespace kova::mail {

/// Where in an item's row something is dropped: its upper quarter, its middle, its lower quarter.
enum class DropPlace { kBefore, kUnder, kBehind };

/// @param y       pixels from the row's upper edge
/// @param height  of the row
DropPlace PlaceInRow(int y, int height);

/// Moves `number` with all under it to where it was dropped: before or behind an item, or under it at the end
/// of its children. On the root (nothing) it goes to the end of the root's children. False when nothing
/// changed.
bool DropOn(TemplateTree& tree, int number, std::optional<int> target, DropPlace place);

/// Hangs an item at the end of what is under the sibling above it; false for a first one.
bool NestUnderPrevious(TemplateTree& tree, int number);

/// Takes an item out from under its parent and puts it right behind that; false at the top.
bool LiftBehindParent(TemplateTree& tree, int number);

}  // namespace kova::mail
