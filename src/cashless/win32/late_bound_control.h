#pragma once

// A terminal control that is an automation object, reached by the names of its members. docs/cashless.md has
// them.

#include <windows.h>
#include <oaidl.h>

#include <memory>
#include <string>
#include <string_view>

#include "cashless/terminal_control.h"

namespace kova::cashless {

class LateBoundControl final : public TerminalControl {
 public:
  /// `name`: the control's program identifier, then, behind a blank, the terminal's device name ("CAT" when
  /// there is none). For the thread that makes it only.
  explicit LateBoundControl(std::string_view name);
  ~LateBoundControl() override;

  ControlResult Open(bool isTraining) override;
  ControlResult Begin(const PaymentRequest& request) override;
  bool IsBusy(ControlResult& result) override;
  ControlResult Abort() override;
  void Close() override;

 private:
  struct ReleaseObject {
    void operator()(IDispatch* object) const { object->Release(); }
  };
  class Argument;

  bool Create();
  ControlResult Prepare(bool isTraining);
  ControlResult ResultNow();
  HRESULT Invoke(const wchar_t* member, WORD how, Argument* arguments, unsigned count, VARIANT* answer);
  /// The number that a method gives; `failed` when it cannot be called.
  int Call(const wchar_t* method, Argument* arguments, unsigned count, int failed);
  int Get(const wchar_t* property, int failed);
  bool Put(const wchar_t* property, Argument value);

  std::wstring className_;
  std::wstring device_;
  bool hasCom_ = false;
  std::unique_ptr<IDispatch, ReleaseObject> object_;
};

}  // namespace kova::cashless
