#pragma once

// A terminal control as an automation object of this process: refuses the first payment (114, 201), carries
// out the next ones, and writes down what it is told.

#include <windows.h>
#include <oaidl.h>

#include <array>
#include <string>
#include <string_view>

namespace kova::testing {

// Interfaces have no destructors; nobody deletes this object by one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class TerminalObject final : public IDispatch, public IClassFactory {
 public:
  TerminalObject() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoCreateGuid(&class_);
    CoRegisterClassObject(class_, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                          &registered_);
  }
  ~TerminalObject() {
    CoRevokeClassObject(registered_);
    CoUninitialize();
  }
  TerminalObject(const TerminalObject&) = delete;
  TerminalObject& operator=(const TerminalObject&) = delete;

  /// By which it is found.
  std::string Name() const {
    wchar_t text[64]{};
    StringFromGUID2(class_, text, 64);
    return {text, text + lstrlenW(text)};
  }
  const std::string& Log() const { return log_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (wanted == IID_IClassFactory) {
      *object = static_cast<IClassFactory*>(this);
    } else if (wanted == IID_IUnknown || wanted == IID_IDispatch) {
      *object = static_cast<IDispatch*>(this);
    } else {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
    return QueryInterface(wanted, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) override {
    for (std::size_t i = 0; i < kMembers.size(); ++i) {
      if (std::wstring_view(names[0]) == kMembers[i]) {
        numbers[0] = static_cast<DISPID>(i);
        return S_OK;
      }
    }
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD how, DISPPARAMS* told, VARIANT* answer,
                                   EXCEPINFO*, UINT*) override {
    const std::wstring_view wide = kMembers[static_cast<std::size_t>(member)];
    const std::string name(wide.begin(), wide.end());
    if (how == DISPATCH_PROPERTYGET) {
      answer->vt = VT_I4;
      answer->lVal = Property(name);
      return S_OK;
    }
    std::string arguments;
    for (UINT i = told->cArgs; i-- > 0;) arguments += Text(told->rgvarg[i]) + (i > 0 ? "," : "");
    const bool isText =
        how == DISPATCH_PROPERTYPUT && told->rgvarg[0].vt == VT_BSTR;  // holds a name never the same
    if (!isText)
      log_ += how == DISPATCH_METHOD ? name + "(" + arguments + ") " : name + "=" + arguments + " ";
    if (name == "AuthorizeSales") {
      ++payments_;
      busyFor_ = 2;
    }
    if (answer != nullptr) {
      answer->vt = VT_I4;
      answer->lVal = 0;
    }
    return S_OK;
  }

 private:
  static constexpr std::array<std::wstring_view, 14> kMembers = {L"Open",
                                                                 L"ClaimDevice",
                                                                 L"ReleaseDevice",
                                                                 L"Close",
                                                                 L"AuthorizeSales",
                                                                 L"ClearOutput",
                                                                 L"DeviceEnabled",
                                                                 L"AsyncMode",
                                                                 L"TrainingMode",
                                                                 L"PaymentMedia",
                                                                 L"AdditionalSecurityInformation",
                                                                 L"State",
                                                                 L"ResultCode",
                                                                 L"ResultCodeExtended"};

  long Property(const std::string& name) {
    if (name == "State") return busyFor_-- > 0 ? 3 : 2;
    if (payments_ > 1) return 0;
    return name == "ResultCode" ? 114 : 201;
  }
  static std::string Text(const VARIANT& value) {
    switch (value.vt) {
      case VT_BSTR:
        return {value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal)};
      case VT_BOOL:
        return std::to_string(value.boolVal);
      case VT_CY:
        return std::to_string(value.cyVal.int64 / 10000);
      default:
        return std::to_string(value.lVal);
    }
  }

  GUID class_{};
  DWORD registered_ = 0;
  int payments_ = 0;
  int busyFor_ = 0;
  std::string log_;
};
#pragma GCC diagnostic pop

}  // namespace kova::testing
