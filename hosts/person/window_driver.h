#pragma once

// Drives real windows as a person would: a second thread finds a dialog that the test's own thread is
// running, works its controls, reads them back, and takes its picture. It waits for what it can see, never
// for a time.

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::person {

/// Throws std::runtime_error when something awaited does not come within this time, in milliseconds.
inline constexpr int kPatience = 20000;

/// Runs `person` on a thread of its own while `program` (which runs dialogs) runs on this one. When `person`
/// fails, every window that it left open is closed; gives what failed, empty when nothing did.
[[nodiscard]] std::string Drive(const std::function<void()>& program, const std::function<void()>& person);

/// Waits until `holds` gives true.
void WaitFor(const char* what, const std::function<bool()>& holds);

/// The visible top-level window of this process with that title (code page 932), waited for.
HWND Dialog(std::string_view title);
/// The visible top-level windows of that title that can be worked, of any process, once there are `count`.
std::vector<HWND> Dialogs(std::string_view title, std::size_t count);
/// Waits until the window is gone.
void WaitUntilClosed(HWND window);

/// A message box's text, waited for; its title is not looked at.
HWND MessageBoxWindow(std::string_view containing);

HWND Item(HWND dialog, int control);
/// Presses a button, without waiting for what it does.
void Press(HWND dialog, int control);
/// Presses a key in the window that has the focus of the dialog's thread; with Alt when asked.
void PressKey(HWND focus, WPARAM key, bool alt = false);
/// Takes what lies under the mouse at one place of a dialog's list and drops it at another; the dialog is one
/// that captures the mouse while something is dragged. Places are of the screen.
void DragAndDrop(HWND dialog, POINT from, POINT to);
/// Presses and lets go of the left button at a place of the screen.
void Click(POINT at);
/// The middle of a control, on the screen.
POINT MiddleOf(HWND control);
/// The middle of a list's cell, on the screen.
POINT CellOnScreen(HWND list, int row, int column);
/// Replaces a control's text as pasting would.
void PutIn(HWND dialog, int control, std::string_view text);
/// What a control shows, code page 932.
std::string Shown(HWND item);
/// Chooses the item of a combo box with that text.
void Choose(HWND dialog, int control, std::string_view text);
std::vector<std::string> ComboItems(HWND combo);
/// The captions of a tree, two blanks a level.
std::vector<std::string> TreeItems(HWND tree);
/// Selects the tree's item of that caption.
void SelectInTree(HWND tree, std::string_view caption);
std::string ListCell(HWND list, int row, int column);

/// The control of the dialog that has the focus, once one has it.
HWND FocusOf(HWND dialog);

/// What is wrong with how the dialog looks: texts that do not fit into their controls, controls outside the
/// window or over each other, access keys used twice, controls without name. Empty when nothing is.
std::string Faults(HWND dialog);

/// Saves the window's picture as "out/windows/NAME.bmp" in the folder that KOVA_PICTURES names; not at all
/// without that variable.
void Photograph(HWND window, const std::string& name);

}  // namespace kova::person
