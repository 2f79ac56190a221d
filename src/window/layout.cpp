#include "window/layout.h"

#include <algorithm>

namespace kova::window {
namespace {

// A row and a column differ in which side of a size is along it.
int Along(const Box& box, Size size) { return box.kind == Box::Kind::kRow ? size.width : size.height; }
int Beside(const Box& box, Size size) { return box.kind == Box::Kind::kRow ? size.height : size.width; }

int GapsOf(const Box& box) {
  return box.children.empty() ? 0 : box.gap * (static_cast<int>(box.children.size()) - 1);
}

/// What each child gets along the box, of `room` without gaps.
std::vector<int> Shares(const Box& box, int room) {
  std::vector<int> shares;
  int left = room;
  int stretch = 0;
  for (const Box& child : box.children) {
    shares.push_back(Along(box, LeastSize(child)));
    left -= shares.back();
    stretch += child.stretch;
  }
  for (std::size_t i = 0; i < box.children.size() && left > 0 && stretch > 0; ++i) {
    const int share = left * box.children[i].stretch / stretch;
    shares[i] += share;
    left -= share;
    stretch -= box.children[i].stretch;
  }
  return shares;
}

void PlaceIn(const Box& box, Rect room, std::vector<Placement>& placed) {
  if (box.kind == Box::Kind::kSpace) return;
  if (box.kind == Box::Kind::kControl) {
    placed.push_back({box.control, room});
    return;
  }
  if (box.control != 0) placed.push_back({box.control, room});
  const bool row = box.kind == Box::Kind::kRow;
  room = {room.x + box.margin, room.y + box.margin, room.width - 2 * box.margin,
          room.height - 2 * box.margin};
  const int across = row ? room.height : room.width;
  const std::vector<int> shares = Shares(box, (row ? room.width : room.height) - GapsOf(box));
  int at = row ? room.x : room.y;
  for (std::size_t i = 0; i < box.children.size(); ++i) {
    const Box& child = box.children[i];
    const int needed = std::min(Beside(box, LeastSize(child)), across);
    const int taken = child.across == Across::kFill ? across : needed;
    const int offset = row ? (across - taken) / 2 : 0;
    PlaceIn(child,
            row ? Rect{at, room.y + offset, shares[i], taken} : Rect{room.x + offset, at, taken, shares[i]},
            placed);
    at += shares[i] + box.gap;
  }
}

Box Of(Box::Kind kind, int gap, std::vector<Box> children) {
  Box box;
  box.kind = kind;
  box.gap = gap;
  box.children = std::move(children);
  return box;
}

int Inside(int from, int size, int screenFrom, int screenSize) {
  return std::max(screenFrom, std::min(from, screenFrom + screenSize - size));
}

}  // namespace

Box Control(int control, Size least) {
  Box box;
  box.kind = Box::Kind::kControl;
  box.control = control;
  box.least = least;
  return box;
}

Box Space(int width, int height) {
  Box box;
  box.least = {width, height};
  return box;
}

Box Row(int gap, std::vector<Box> children) { return Of(Box::Kind::kRow, gap, std::move(children)); }

Box Column(int gap, std::vector<Box> children) { return Of(Box::Kind::kColumn, gap, std::move(children)); }

Box Grid(int columnGap, int rowGap, std::vector<std::vector<Box>> rows, int stretchColumn) {
  const std::size_t columns = rows.empty() ? 0 : rows[0].size();
  for (std::size_t column = 0; column < columns; ++column) {
    int widest = 0;
    for (const auto& row : rows) widest = std::max(widest, LeastSize(row[column]).width);
    for (auto& row : rows) {
      row[column].least.width = std::max(row[column].least.width, widest);
      if (static_cast<int>(column) == stretchColumn) row[column].stretch = 1;
    }
  }
  std::vector<Box> lines;
  for (auto& row : rows) lines.push_back(Row(columnGap, std::move(row)));
  return Column(rowGap, std::move(lines));
}

Size LeastSize(const Box& box) {
  if (box.kind == Box::Kind::kControl || box.kind == Box::Kind::kSpace) return box.least;
  int along = GapsOf(box);
  int beside = 0;
  for (const Box& child : box.children) {
    const Size size = LeastSize(child);
    along += Along(box, size);
    beside = std::max(beside, Beside(box, size));
  }
  Size size = box.kind == Box::Kind::kRow ? Size{along, beside} : Size{beside, along};
  size = {size.width + 2 * box.margin, size.height + 2 * box.margin};
  return {std::max(size.width, box.least.width), std::max(size.height, box.least.height)};
}

std::vector<Placement> Place(const Box& box, const Rect& room) {
  const Size least = LeastSize(box);
  std::vector<Placement> placed;
  PlaceIn(box, {room.x, room.y, std::max(room.width, least.width), std::max(room.height, least.height)},
          placed);
  return placed;
}

Rect CenteredOver(const Rect& over, Size size, const Rect& screen) {
  const int x = over.x + (over.width - size.width) / 2;
  const int y = over.y + (over.height - size.height) / 2;
  return {Inside(x, size.width, screen.x, screen.width), Inside(y, size.height, screen.y, screen.height),
          size.width, size.height};
}

Rect Covering(const Rect& over, Size least, const Rect& screen) {
  const auto back = [](int end, int grown, int screenEnd) {
    return std::clamp(end + grown - screenEnd, 0, grown);
  };
  const int wider = std::max(least.width - over.width, 0);
  const int higher = std::max(least.height - over.height, 0);
  return {over.x - back(over.x + over.width, wider, screen.x + screen.width),
          over.y - back(over.y + over.height, higher, screen.y + screen.height), over.width + wider,
          over.height + higher};
}

}  // namespace kova::window
