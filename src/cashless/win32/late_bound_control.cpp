#include "cashless/win32/late_bound_control.h"

#include <oleauto.h>

#include <algorithm>
#include <utility>

#include "cashless/result_codes.h"
#include "window/wide_text.h"

namespace kova::cashless {
namespace {

constexpr int kClaimPatience = 3000;  // milliseconds
constexpr int kForever = -1;          // the operator ends the wait
constexpr int kStateBusy = 3;
constexpr int kUnreadable = -1;
constexpr int kFailureCode = 111;  // does not exclude that money was taken
constexpr CY kYen = {{10000, 0}};  // a currency value counts ten-thousandths

}  // namespace

/// A VARIANT that frees what it holds.
class LateBoundControl::Argument {
 public:
  explicit Argument(int number) {
    value.vt = VT_I4;
    value.lVal = number;
  }
  explicit Argument(bool truth) {
    value.vt = VT_BOOL;
    value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Argument(const std::wstring& text) {
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  static Argument Yen(std::int32_t amount) {
    Argument argument(0);
    argument.value.vt = VT_CY;
    argument.value.cyVal.int64 = kYen.int64 * amount;
    return argument;
  }
  Argument(Argument&& other) noexcept : value(other.value) { VariantInit(&other.value); }
  Argument& operator=(Argument&&) = delete;
  ~Argument() { VariantClear(&value); }

  VARIANT value{};
};

LateBoundControl::LateBoundControl(std::string_view name) {
  const std::size_t end = std::min(name.find(' '), name.size());
  className_ = window::Wide(name.substr(0, end));
  device_ = end < name.size() ? window::Wide(name.substr(end + 1)) : L"CAT";
}

LateBoundControl::~LateBoundControl() {
  Close();
  object_.reset();
  if (hasCom_) CoUninitialize();
}

bool LateBoundControl::Create() {
  if (object_) return true;
  if (!hasCom_) hasCom_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  CLSID identifier{};
  IDispatch* object = nullptr;
  if (className_.empty() || FAILED(CLSIDFromString(className_.c_str(), &identifier)) ||
      FAILED(CoCreateInstance(identifier, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&object))))
    return false;
  object_.reset(object);
  return true;
}

ControlResult LateBoundControl::Open(bool isTraining) {
  if (!Create()) return {kNoServiceCode, 0};
  const ControlResult ready = Prepare(isTraining);
  if (ready.code != kNormalCode) Close();
  return ready;
}

ControlResult LateBoundControl::Prepare(bool isTraining) {
  Argument device(device_);
  int code = Call(L"Open", &device, 1, kNoServiceCode);
  if (code != kNormalCode) return {code, 0};
  Argument patience(kClaimPatience);
  code = Call(L"ClaimDevice", &patience, 1, kNoServiceCode);
  if (code != kNormalCode) return {code, 0};
  const bool isEnabled = Put(L"DeviceEnabled", Argument(true)) && Put(L"AsyncMode", Argument(true));
  // A terminal that cannot be put into training would charge in earnest.
  const bool isInMode = Put(L"TrainingMode", Argument(isTraining)) || !isTraining;
  if (isEnabled && isInMode) return {};
  const ControlResult why = ResultNow();
  return why.code == kNormalCode ? ControlResult{kNoServiceCode, 0} : why;
}

ControlResult LateBoundControl::Begin(const PaymentRequest& request) {
  if (!object_) return {kNoServiceCode, 0};
  const std::wstring additional = std::to_wstring(request.payType) + L"\t" +
                                  window::Wide(OneLine(request.name)) + L"\t" +
                                  window::Wide(OneLine(request.text));
  if (!Put(L"PaymentMedia", Argument(request.kind)) ||
      !Put(L"AdditionalSecurityInformation", Argument(additional)))
    return {kNoServiceCode, 0};
  // Arguments go last one first.
  Argument arguments[] = {Argument(kForever), Argument::Yen(request.taxOrOther),
                          Argument::Yen(request.amount), Argument(request.sequence)};
  const int code = Call(L"AuthorizeSales", arguments, 4, kFailureCode);
  return {code, code == kExtendedCode ? Get(L"ResultCodeExtended", 0) : 0};
}

bool LateBoundControl::IsBusy(ControlResult& result) {
  result = {};
  if (Get(L"State", kUnreadable) == kStateBusy) return true;
  result = ResultNow();
  return false;
}

ControlResult LateBoundControl::ResultNow() {
  const int code = Get(L"ResultCode", kFailureCode);
  return {code, code == kExtendedCode ? Get(L"ResultCodeExtended", 0) : 0};
}

ControlResult LateBoundControl::Abort() { return {Call(L"ClearOutput", nullptr, 0, kFailureCode), 0}; }

void LateBoundControl::Close() {
  if (!object_) return;
  (void)Put(L"DeviceEnabled", Argument(false));
  (void)Call(L"ReleaseDevice", nullptr, 0, 0);
  (void)Call(L"Close", nullptr, 0, 0);
}

HRESULT LateBoundControl::Invoke(const wchar_t* member, WORD how, Argument* arguments, unsigned count,
                                 VARIANT* answer) {
  if (!object_) return E_POINTER;
  auto* name = const_cast<wchar_t*>(member);
  DISPID number = 0;
  const HRESULT found = object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &number);
  if (FAILED(found)) return found;
  static_assert(sizeof(Argument) == sizeof(VARIANT));
  DISPID put = DISPID_PROPERTYPUT;
  const bool isPut = how == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{reinterpret_cast<VARIANT*>(arguments), isPut ? &put : nullptr, count,
                        isPut ? 1U : 0U};
  return object_->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters, answer, nullptr, nullptr);
}

int LateBoundControl::Call(const wchar_t* method, Argument* arguments, unsigned count, int failed) {
  Argument answer(0);
  if (FAILED(Invoke(method, DISPATCH_METHOD, arguments, count, &answer.value))) return failed;
  return SUCCEEDED(VariantChangeType(&answer.value, &answer.value, 0, VT_I4)) ? answer.value.lVal : failed;
}

int LateBoundControl::Get(const wchar_t* property, int failed) {
  Argument answer(0);
  if (FAILED(Invoke(property, DISPATCH_PROPERTYGET, nullptr, 0, &answer.value))) return failed;
  return SUCCEEDED(VariantChangeType(&answer.value, &answer.value, 0, VT_I4)) ? answer.value.lVal : failed;
}

bool LateBoundControl::Put(const wchar_t* property, Argument value) {
  return SUCCEEDED(Invoke(property, DISPATCH_PROPERTYPUT, &value, 1, nullptr));
}

}  // namespace kova::cashless
