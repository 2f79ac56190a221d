#include "hosts/sample_practice/settings_files.h"

#include <string>
#include <vector>

#include "hosts/console/console.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"

namespace kova::sample {
namespace {

constexpr std::size_t kLargestTemplate = 1U << 20;

constexpr std::string_view kSettings =
    "; 診療所全体の設定です。全ての端末で共用します。\r\n"
    "[GLOBAL]\r\n"
    "ClinicName=表町みなと歯科クリニック\r\n"
    "ClinicAddress=東京都千代田区神田駿河台１丁目２番３号　十河ビル２階\r\n"
    "ClinicTel=0900-00-1234\r\n"
    "ClinicRegNo=T0000000000000\r\n"
    "; 消費税の扱い　1: 料金に消費税を加える\r\n"
    "ConsumptionTax=1\r\n"
    "ConsumptionTaxCont=1\r\n"
    "; 契約日の扱い　0: 使わない　1: 契約日の税率　2: 経過措置\r\n"
    "ConsumptionTaxCont2=2\r\n"
    "; 端数処理　1: 四捨五入　2: 切り上げ　3: 切り捨て\r\n"
    "CalculationTax=1\r\n"
    "; 来院・治療終了のメールを送る　1: 送る\r\n"
    "WatchOption=1\r\n"
    "\r\n"
    "[MENTE]\r\n"
    "; 消費税率の期間（TaxRate2 は軽減税率、TaxCont は経過措置の基準日）\r\n"
    "TaxCount=4\r\n"
    "TaxFrm01=19890401\r\nTaxTo01=19970331\r\nTaxRate01=3\r\nTaxRate201=0\r\nTaxCont01=\r\n"
    "TaxFrm02=19970401\r\nTaxTo02=20140331\r\nTaxRate02=5\r\nTaxRate202=0\r\nTaxCont02=19961001\r\n"
    "TaxFrm03=20140401\r\nTaxTo03=20190930\r\nTaxRate03=8\r\nTaxRate203=0\r\nTaxCont03=20131001\r\n"
    "TaxFrm04=20191001\r\nTaxTo04=99991231\r\nTaxRate04=10\r\nTaxRate204=8\r\nTaxCont04=20190401\r\n"
    "; 領収率の期間\r\n"
    "ReceptCount=2\r\n"
    "ReceptFrm01=20000401\r\nReceptTo01=20180331\r\nReceptRate01=5\r\n"
    "ReceptFrm02=20180401\r\nReceptTo02=99991231\r\nReceptRate02=8\r\n"
    "Show12or24=1\r\n"
    "PrintUnitPrice=1\r\n"
    "PrintUnitPriceAddText=@\r\n"
    "PrintListSum=1\r\n"
    "PrintListSum4=1\r\n"
    "\r\n"
    "[EMail]\r\n"
    "EmailAddress=yoyaku@omotecho-minato.example\r\n"
    "Sender=表町みなと歯科クリニック\r\n"
    "; 用途ごとのメール用テンプレート\r\n"
    "ReservationTemplate=0001\r\n"
    "NotComeTemplate=0001\r\n"
    "ComeTemplate=0006\r\n"
    "TrearmentCompTemplate=0007\r\n"
    "ChangeConfirmTemplate=0008\r\n"
    "\r\n"
    "; キャッシュレス決済　USE_...: 使う　PAY_...: 支払方法のコード　Training=1: 実際の決済をしない\r\n"
    "[CASHLESS]\r\n"
    "USE_CREDIT=1\r\nPAY_CREDIT=02\r\n"
    "USE_ID=1\r\nPAY_ID=03\r\n"
    "USE_WAON=1\r\nPAY_WAON=03\r\n"
    "USE_SUICA=1\r\nPAY_SUICA=03\r\n"
    "USE_QR=1\r\nPAY_QR=03\r\n"
    "\r\n"
    "[KOVACOM]\r\n"
    "VisitFlowAutoUpdate=1\r\n";

void WriteFile(const std::string& path, std::string_view content) {
  if (os::RealFiles().Replace(path, content) != os::FileOutcome::kOk)
    throw hosts::UsageError("cannot write the settings and template files");
}

}  // namespace

void WriteSettings(std::string_view folder) {
  const std::string in(folder);
  WriteFile(in + "GLOBALSETTING.ini", kSettings);
  // The terminal is reached through the bridge.
  WriteFile(in + "CashlessOpt.sys", "2\r\n");
  if (os::RealFiles().MakeFolder(in + "Cashless") != os::FileOutcome::kOk)
    throw hosts::UsageError("cannot make the folder of the payment files");
  WriteFile(in + "app.ini", "[GLOBAL]\r\nDATABASE=" + in + "\r\nPROFILE=0\r\n");
}

bool CopyTemplates(std::string_view installed, std::string_view folder) {
  os::Files& files = os::RealFiles();
  std::vector<std::string> names;
  if (files.List(installed, names) != os::FileOutcome::kOk || names.empty()) return false;
  const std::string target = os::JoinPath(folder, "templates\\");
  if (files.MakeFolders(target) != os::FileOutcome::kOk)
    throw hosts::UsageError("cannot make the folder of the mail templates");
  for (const std::string& name : names) {
    std::string content;
    if (files.Read(os::JoinPath(installed, name), kLargestTemplate, content) != os::FileOutcome::kOk)
      throw hosts::UsageError("cannot read the installed mail templates");
    WriteFile(target + name, content);
  }
  return true;
}

}  // namespace kova::sample
