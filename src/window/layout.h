#pragma once

// Where the controls of a dialog go: boxes in boxes, computed without any window. All numbers are pixels; who
// builds the boxes has scaled them.

#include <utility>
#include <vector>

namespace kova::window {

struct Size {
  int width = 0;
  int height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Rect&) const = default;
};

/// What a box does with room across its row or column that it does not need. kText is for labels: in the
/// middle of a row's height, at the left of a column.
enum class Across { kFill, kText };

/// A control, an empty space, or a row or column of boxes. `stretch` is its share of the room that is left
/// along its row or column; 0 keeps it at its least size.
struct Box {
  enum class Kind { kControl, kSpace, kRow, kColumn };

  Kind kind = Kind::kSpace;
  int control = 0;  // of a row or column: the frame around it, 0 for none
  Size least;
  int stretch = 0;
  Across across = Across::kFill;
  int gap = 0;
  int margin = 0;
  std::vector<Box> children;

  Box Stretch(int share = 1) && {
    stretch = share;
    return std::move(*this);
  }
  Box Aligned(Across how) && {
    across = how;
    return std::move(*this);
  }
  Box Margin(int width) && {
    margin = width;
    return std::move(*this);
  }
  /// A control that is drawn around the row or column.
  Box Framed(int frame) && {
    control = frame;
    return std::move(*this);
  }
};

Box Control(int control, Size least);
Box Space(int width, int height);
Box Row(int gap, std::vector<Box> children);
Box Column(int gap, std::vector<Box> children);
/// Rows of equally many boxes each, the boxes of a column equally wide. `stretchColumn` takes the room that
/// is left; -1 for none.
Box Grid(int columnGap, int rowGap, std::vector<std::vector<Box>> rows, int stretchColumn);

/// The smallest size in which everything has its least size.
Size LeastSize(const Box& box);

struct Placement {
  int control = 0;
  Rect rect;
  bool operator==(const Placement&) const = default;
};

/// The rectangles of all controls in `room`, in the order of the boxes. Where the room is smaller than the
/// least size, the boxes at the end stick out.
std::vector<Placement> Place(const Box& box, const Rect& room);

/// The top left corner at which a window of `size` stands over the middle of `over` and, as far as it fits,
/// inside `screen`.
Rect CenteredOver(const Rect& over, Size size, const Rect& screen);

/// `over` itself, grown to the right and downwards where it is smaller than `least`; by as much as it grew it
/// moves back to stay inside `screen`.
Rect Covering(const Rect& over, Size least, const Rect& screen);

}  // namespace kova::window
