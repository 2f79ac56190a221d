#pragma once

// How a control looks that differs from the others of its dialog.

#include <windows.h>

#include <memory>
#include <optional>
#include <type_traits>

namespace kova::window {

struct Look {
  int textPercent = 100;  // of the usual height
  bool isBold = false;
  std::optional<COLORREF> text = std::nullopt;  // labels and edits that are read only
  std::optional<COLORREF> background = std::nullopt;
};

struct DeleteGdiObject {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteGdiObject>;
using Brush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, DeleteGdiObject>;

/// A look with what drawing it takes.
struct ControlLook {
  Look look;
  Font font;  // of the present scale; null for the usual one
  Brush background;
};

}  // namespace kova::window
