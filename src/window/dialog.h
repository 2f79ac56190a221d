#pragma once

// A modal dialog of real, resizable, sharply scaled controls. A dialog of the library derives from Dialog,
// adds its controls, says how they are arranged, and answers what the user does.

#include <windows.h>

#include <exception>
#include <map>
#include <string>
#include <string_view>

#include "window/layout.h"
#include "window/look.h"

namespace kova::window {

class Dialog {
 public:
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;
  virtual ~Dialog() = default;

  /// Shows the dialog over the top-level window of `parent` (null: over the thread's active window), which is
  /// disabled meanwhile, and runs until it is closed. IDOK or IDCANCEL, or what Close was given; IDCANCEL
  /// when it cannot be shown. An exception that a handler threw closes the dialog and comes out here.
  INT_PTR RunModal(HWND parent);

  HWND Handle() const { return window_; }

 protected:
  /// @param title      code page 932
  /// @param preferred  size of the inside at first, in 96ths of an inch; it opens larger where that is too
  /// small
  Dialog(std::string_view title, Size preferred);

  // ---- What a dialog says of itself.

  /// Adds the controls, in tab order.
  virtual void AddControls() = 0;
  /// How they are arranged; asked anew when the screen scale changes.
  virtual Box Arrange() const = 0;
  /// All controls are there and in place: fill them.
  virtual void OnStart() {}
  /// A control tells of something (BN_CLICKED, EN_CHANGE, ...).
  virtual void OnCommand(int /*control*/, int /*notification*/) {}
  virtual LRESULT OnNotify(const NMHDR& /*header*/) { return 0; }
  virtual void OnTimer(UINT_PTR /*timer*/) {}
  /// Enter and the OK button; Escape, the cancel button and the close box.
  virtual void OnOk() { Close(IDOK); }
  virtual void OnCancel() { Close(IDCANCEL); }
  /// A key goes down in the dialog, before any control sees it; true when it was dealt with.
  virtual bool OnKey(HWND /*focus*/, WPARAM /*key*/, bool /*alt*/) { return false; }
  /// The smallest outer size that the user can make; by itself what the controls need.
  virtual Size SmallestFrame() const { return FrameOf(LeastSize(Arrange())); }
  /// False: a popup without title that cannot be moved or resized.
  virtual bool HasFrame() const { return true; }
  /// Where it opens, asked when the controls are there; by itself over the middle of the owner.
  virtual Rect FirstPlace() const;
  /// Any other message; true when it was dealt with, with the answer in `result`.
  virtual bool OnMessage(UINT /*message*/, WPARAM, LPARAM, LRESULT& /*result*/) { return false; }

  void Close(INT_PTR result);
  /// Another first size of the inside, before RunModal.
  void Prefer(Size inside) { preferred_ = inside; }

  // ---- Adding controls. Texts are code page 932; "&" marks the access key. `control` is a number of the
  // dialog's own choice, above 99; IDOK and IDCANCEL are the two buttons. A label goes right before the
  // control that it names, which is also how a screen reader knows.

  void AddLabel(int control, std::string_view text, DWORD style = SS_LEFT);
  void AddButton(int control, std::string_view text);
  void AddOkAndCancel();
  void AddCheckBox(int control, std::string_view text);
  /// One of several buttons of which one is pressed; `first` begins the group.
  void AddChoiceButton(int control, std::string_view text, bool first);
  /// A frame, with a caption or without, drawn around other controls (Box::Framed); add it before them.
  void AddFrame(int control, std::string_view text);
  void AddEdit(int control, DWORD style = 0);
  /// With its scroll bar; Enter makes a new line.
  void AddTextBox(int control, DWORD style = 0);
  void AddComboBox(int control, DWORD style);
  /// Any window class, such as a tree or list.
  void AddOther(int control, const wchar_t* windowClass, DWORD style, DWORD exStyle = WS_EX_CLIENTEDGE);
  /// A look of its own for a control that was added.
  void UseLook(int control, const Look& look);

  // ---- Arranging.

  /// 96ths of an inch in this screen's pixels.
  int Dip(int length) const { return MulDiv(length, static_cast<int>(dpi_), 96); }
  /// The control with the least size that its kind and text need.
  Box Natural(int control) const;
  /// The same with at least that many 96ths of an inch.
  Box AtLeast(int control, Size dips) const;
  /// OK and cancel at the right end of a row.
  Box OkAndCancel() const;
  /// The outer size of the window for what the controls need and, at least, the preferred inside.
  Size PreferredFrame() const;
  /// The outer size of a window of that inside.
  Size FrameOf(Size inside) const;
  /// Computes the places anew after something that they depend on has changed.
  void ArrangeAgain();

  // ---- Texts of controls, at the border between code page 932 and Unicode.

  HWND Item(int control) const { return GetDlgItem(window_, control); }
  /// What the user does not touch comes back byte for byte.
  void ShowText(int control, std::string_view text);
  /// The same, but nothing is drawn where the text is there already.
  void ShowIfChanged(int control, std::string_view text);
  /// False, after telling the user and moving the focus there, when the control holds characters that cannot
  /// be stored.
  [[nodiscard]] bool TakeText(int control, std::string& text);
  void Enable(int control, bool enabled);
  void Focus(int control);

  /// Shows texts in message boxes over this dialog.
  void Inform(std::string_view text) const;

 private:
  struct ShownText {
    std::string text;
    std::wstring shown;
  };

  static LRESULT CALLBACK KeyHook(int code, WPARAM wParam, LPARAM message) noexcept;
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  bool Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  HBRUSH Colour(HWND item, HDC device);
  void Keep(std::exception_ptr thrown) noexcept;
  void Start();
  void Command(int control, int notification);
  bool IsComposing() const;
  void Add(int control, const wchar_t* windowClass, const std::wstring& text, DWORD style, DWORD exStyle);
  void UseScale(UINT dpi);
  void PlaceControls();
  SIZE TextSize(HWND item) const;
  int LineHeight(int textHeight) const;
  Size NaturalSize(int control) const;
  Size MeasuredSize(int control) const;

  std::wstring title_;
  Size preferred_;
  HWND owner_ = nullptr;
  HWND window_ = nullptr;
  Font font_;
  std::map<int, ControlLook> looks_;
  mutable std::map<int, Size> natural_;  // of this scale and these texts, as far as it was asked for
  UINT dpi_ = 96;
  bool closing_ = false;
  std::map<int, ShownText> shown_;
  std::exception_ptr thrown_;
};

/// The text of a window as it stands.
std::wstring WindowText(HWND window);

}  // namespace kova::window
