#include "cashless/result_codes.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace kova::cashless {
namespace {

struct Row {
  int code;
  PaymentOutcome outcome;
  std::string_view message;
};

constexpr auto kNotPaid = PaymentOutcome::kNotPaid;
constexpr auto kUnknown = PaymentOutcome::kUnknown;
constexpr std::string_view kBusyOrFaulty = "デバイスがビジー中か、正常に動作していません。";

// Codes and texts are relied on by bridges and by the staff's manuals; do not change.
constexpr Row kResults[] = {
    // Of the exchange itself. Who shows it knows whether the request was taken back; in an error file it says
    // nothing, and could be the beginning of a longer number.
    {kNotTakenUpCode, kUnknown, kBusyOrFaulty},
    {101, kNotPaid, "クローズされているデバイスにアクセスしようとしました。"},
    {102, kNotPaid, kBusyOrFaulty},
    {103, kNotPaid, "デバイスの排他権が獲得されていません。"},
    {kNoServiceCode, kNotPaid, "コントロールがサービスオブジェクトと通信できません。"},
    {105, kNotPaid, "デバイスをディセーブルしているときには動作を実行できません。"},
    {106, kNotPaid, "デバイスがサポートしていない動作か、不正な動作を要求しました。"},
    {107, kNotPaid, "デバイスをシステムに接続していないか、電源が入っていません。"},
    {108, kNotPaid, "デバイスがオフラインです。"},
    {109, kNotPaid, "指定されたDeviceNameが見つかりません。"},
    {111, kUnknown, kBusyOrFaulty},
    {112, kUnknown, "サービスオブジェクトからの応答がタイムアウトになりました。"},
    {113, kNotPaid, "現在の SO の状態は、この要求を受け付けられません。"},
};

constexpr Row kExtendedResults[] = {
    {1, kNotPaid, "取引不成立です。 (取引不可)"},
    {90, kNotPaid, "電文フォーマットエラーです 。指定した業務を端末がサポートしていない可能性があります。"},
    {91, kNotPaid, "端末処理中に CAT のリセットキーが押されました。"},
    {92, kUnknown, "取引不成立です。 (通信障害)"},
    {200, kNotPaid, "取引不成立です。 (端末の取引記録が満杯)"},
    {201, kNotPaid, "取引不成立です。 (残高不足)"},
    {202, kNotPaid, "売上金額、または 税／その他 に指定した値が許容値を超えています。"},
    // What terminals tell by numbers of their own; a bridge translates into these.
    {301, kNotPaid, "取引不成立です。 (自動取消)"},
    {302, kNotPaid, "端末が BUSY 状態です。"},
    {303, kNotPaid, "端末画面が要求された業務モードに設定されていません。"},
    {304, kNotPaid, "POS からのキャンセルを受け付けました。"},
    {305, kNotPaid, "取引不一致（金額、 IC 取扱通番不一致）"},
};

const Row* Find(std::span<const Row> rows, int code) {
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.code == code; });
  return row == rows.end() ? nullptr : &*row;
}

const Row* FindRow(int code, int extended) {
  if (code == kExtendedCode) return Find(kExtendedResults, extended);
  return code >= kTerminalCodes ? Find(kExtendedResults, code - kTerminalCodes) : Find(kResults, code);
}

std::string UnknownError(const std::string& number) { return "不明なエラー(" + number + ")"; }

}  // namespace

std::string ResultMessage(int code, int extended) {
  if (code == kNormalCode) return {};
  if (const Row* row = FindRow(code, extended)) return std::string(row->message);
  return UnknownError(code == kExtendedCode ? "114-" + std::to_string(extended) : std::to_string(code));
}

PaymentOutcome OutcomeOfFailure(int code, int extended) {
  const Row* row = FindRow(code, extended);
  return row == nullptr ? PaymentOutcome::kUnknown : row->outcome;
}

void ShowResult(PaymentView& view, int code, int extended) {
  view.resultCode = code;
  view.message = ResultMessage(code, extended);
}

}  // namespace kova::cashless
