#include "hosts/companions/form_page.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/text932/cp932.h"

namespace kova::companions {
namespace {

using printing::PrintColumn;
using printing::PrintData;

constexpr std::string_view kFrame = "■■";

constexpr std::string_view kStyle = R"(
@page { size: A5; margin: 10mm }
* { box-sizing: border-box }
html { background: #e8e8e6 }
body { width: 148mm; min-height: 210mm; margin: 6mm auto; padding: 10mm; background: #fff; color: #1a1a1a;
  font: 9.5pt/1.5 "Yu Gothic", "Noto Sans CJK JP", "Hiragino Sans", "IPAexGothic", "VL PGothic", sans-serif;
  overflow-wrap: anywhere; font-variant-numeric: tabular-nums }
@media print { html { background: none } body { width: auto; min-height: 0; margin: 0; padding: 0 } }
h1 { margin: 0; font-size: 19pt; font-weight: normal; letter-spacing: .6em; text-indent: .6em;
  text-align: center; border-bottom: 2.5pt double #1a1a1a; padding-bottom: 1mm }
h2 { margin: 4mm 0 1mm; font-size: 9pt; font-weight: bold; color: #33475b }
p { margin: 0 }
table { width: 100%; border-collapse: collapse }
th, td { padding: .7mm 1.5mm; text-align: left; vertical-align: top; font-weight: normal;
  border: .4pt solid #9aa3ab }
th { background: #eef1f4; white-space: nowrap }
td.n, th.n { text-align: right; white-space: nowrap }
thead { display: table-header-group }
tr { break-inside: avoid }
.head { display: flex; justify-content: space-between; gap: 6mm; margin-top: 3mm }
.small { font-size: 8.5pt }
.dim { color: #555 }
.right { text-align: right }
.again { position: absolute; border: 1.2pt solid #b3261e; color: #b3261e; padding: .3mm 2.5mm; font-size: 10pt }
.payer { font-size: 14pt; border-bottom: .8pt solid #1a1a1a; padding: 0 2mm .5mm; flex: 1; align-self: flex-end }
.head + p { margin-top: 1mm }
.sum { display: flex; justify-content: center; align-items: baseline; gap: 5mm; margin: 4mm 0 1mm; padding: 2mm;
  border: 1.2pt solid #1a1a1a; background: #f6f7f8 }
.sum b { font-size: 19pt; letter-spacing: .03em }
.boxes { display: grid; grid-template-columns: repeat(5, 1fr); gap: 1.5mm; font-size: 8.5pt; text-align: right }
.boxes > div { border: .4pt solid #9aa3ab; break-inside: avoid }
.boxes p { padding: .4mm 1.5mm }
.boxes p:first-child { background: #eef1f4; text-align: left }
.sub td { background: #f6f7f8 }
.list th:last-child { width: 20mm }
.list td:first-child + td { width: 1% }
.side { display: grid; grid-template-columns: 1fr 1fr; gap: 4mm; align-items: start; margin-top: 4mm;
  break-inside: avoid }
.side th { width: 1%; min-width: 24mm }
.strong td, .strong th { font-weight: bold; border-top: 1.2pt solid #1a1a1a }
.foot { display: flex; justify-content: space-between; gap: 6mm; margin-top: 4mm; break-inside: avoid }
.clinic { font-size: 12pt }
.stamp { flex: none; width: 20mm; height: 20mm; border: .6pt dashed #888; color: #888; font-size: 8pt;
  display: flex; align-items: center; justify-content: center }
.when { font-size: 12pt; white-space: nowrap }
.note { margin-top: 2mm; font-size: 8.5pt }
.bye { margin-top: 3mm; text-align: center }
)";

/// A text of the file as it stands in a page. The byte of the backslash is the yen mark on these forms.
std::string Shown(std::string_view text) {
  std::string html;
  for (std::size_t i = 0; i < text.size(); i += text932::CharLength(text, i)) {
    const std::string_view c = text.substr(i, text932::CharLength(text, i));
    if (c == "\\") {
      html += "&yen;";
    } else if (c == "&") {
      html += "&amp;";
    } else if (c == "<") {
      html += "&lt;";
    } else if (c == ">") {
      html += "&gt;";
    } else if (c == "\"") {
      html += "&quot;";
    } else {
      html += c;
    }
  }
  return html;
}

class Page {
 public:
  explicit Page(const PrintData& data) : data_(data) {}

  std::string Make() {
    const bool isReceipt = data_.form->hasReceiptParts;
    isReceipt ? Receipt() : Patient();
    const std::string title = Shown(Key(isReceipt ? 1 : 2));
    return text932::ToUtf8("<!DOCTYPE html>\n<html lang=\"ja\">\n<meta charset=\"utf-8\">\n<title>" + title +
                           "</title>\n<style>" + std::string(kStyle) + "</style>\n<body>\n" + html_ +
                           "</body>\n</html>\n");
  }

 private:
  std::string_view Key(int number) const {
    const auto found = data_.simple.find(number);
    return found == data_.simple.end() ? std::string_view() : std::string_view(found->second);
  }
  bool Has(int number) const { return !Key(number).empty(); }
  /// An amount that is there and not nothing.
  bool HasAmount(int number) const { return Has(number) && Key(number) != "0" && Key(number) != "\\0"; }

  void Add(std::string_view html) { html_ += html; }
  void AddText(std::string_view element, std::string_view attributes, std::string_view text) {
    html_.append("<").append(element).append(attributes).append(">").append(Shown(text));
    html_.append("</").append(element).append(">");
  }
  void Paragraph(std::string_view text, std::string_view attributes = "") {
    if (!text.empty()) AddText("p", attributes, text), Add("\n");
  }
  void Row(std::string_view heading, std::string_view value, std::string_view row = "<tr>",
           std::string_view cell = " class=n") {
    Add(row);
    AddText("th", "", heading);
    AddText("td", cell, value);
    Add("</tr>\n");
  }

  // ---- Receipt.

  void Receipt() {
    if (Has(59)) AddText("span", " class=again", Key(59));
    Add("<h1>領収証</h1>\n");
    ReceiptHead();
    Boxes();
    List();
    Add("<div class=side>\n");
    Payment();
    Taxes();
    Add("</div>\n");
    Contract();
    Notes();
    Clinic();
  }

  void ReceiptHead() {
    Add("<div class=head><div class=payer>");
    Add(Shown(Key(3)));
    Add("</div><div class=\"small right\">");
    for (const int key : {1, 2, 19}) Paragraph(Key(key));
    Add("</div></div>\n<p class=\"small dim\">");
    AddText("span", "", "患者番号 " + std::string(Key(15)));
    if (Has(18)) AddText("span", "", "　保険種別 " + std::string(Key(18)));
    if (Has(39)) AddText("span", "", "　負担割合 " + std::string(Key(39)));
    if (Has(45)) AddText("span", "", "　診療科 " + std::string(Key(45)));
    Add("</p>\n<div class=sum><span>領収金額</span>");
    AddText("b", "", Key(4));
    Add("</div>\n");
    if (Has(98))
      Paragraph("但し　" + std::string(Key(98)) + "の代金として、上記の金額を領収いたしました。",
                " class=small");
  }

  /// The points of the categories that have any; the names are those that this form has for their numbers.
  void Boxes() {
    static constexpr std::string_view kNames[] = {"初・再診料",     "医学管理等", "処置",       "検査",
                                                  "画像診断",       "投薬",       "注射",       "リハビリ",
                                                  "手術",           "麻酔",       "放射線治療", "病理診断",
                                                  "歯冠修復・補綴", "歯科矯正",   "在宅医療",   "その他"};
    if (!Has(22)) return;
    Add("<h2>保険診療の点数</h2>\n<div class=boxes>");
    for (std::size_t i = 0; i < data_.insurance.size(); ++i) {
      if (data_.insurance[i].empty()) continue;
      Box(i < std::size(kNames) ? std::string(kNames[i]) : "区分" + std::to_string(i + 1),
          data_.insurance[i]);
    }
    Box("点数合計", Key(22));
    Add("</div>\n");
  }
  void Box(std::string_view name, std::string_view points) {
    Add("<div>");
    Paragraph(name);
    Paragraph(points);
    Add("</div>");
  }

  void List() {
    if (data_.columns.empty()) return;
    Add("<h2>明細</h2>\n<table class=list>\n<thead><tr><th>項目</th><th "
        "class=n>金額・点数</th><th>備考</th></tr></thead>\n");
    const std::size_t lines = static_cast<std::size_t>(std::max(0, std::atoi(std::string(Key(20)).c_str())));
    for (std::size_t i = 0; i < data_.columns.size(); ++i) {
      const PrintColumn& column = data_.columns[i];
      Add(i < lines ? "<tr>" : "<tr class=sub>");
      AddText("td", "", Unframed(column.rows[0]));
      AddText("td", " class=n", column.rows[2]);
      AddText("td", " class=small", column.rows[3]);
      Add("</tr>\n");
    }
    Add("</table>\n");
  }
  static std::string Unframed(const std::string& name) {
    const bool framed = name.size() > 2 * kFrame.size() && name.starts_with(kFrame) && name.ends_with(kFrame);
    return framed ? name.substr(kFrame.size(), name.size() - 2 * kFrame.size()) : name;
  }

  void Payment() {
    Add("<table>\n");
    if (Has(37)) Row("保険分負担金", Key(37));
    if (Has(38)) Row("自費分", Key(38));
    if (Has(40)) Row("値引", "-" + std::string(Key(40)));
    Row("領収金額", Key(29), "<tr class=strong>");
    if (Has(41)) Row("お預り", Key(41));
    if (Has(42)) Row("お釣り", Key(42));
    if (Has(17)) Row("お支払方法", Key(17));
    Add("</table>\n");
  }

  void Taxes() {
    if (!Has(50) && !Has(53) && !Has(56)) return Add("<div></div>\n");
    Add("<table>\n");
    if (Has(53)) Row((Has(54) ? RateIn(Key(54)) : "標準税率") + "対象（税込）", "\\" + std::string(Key(53)));
    if (Has(55)) Row("　うち消費税", "\\" + std::string(Key(55)));
    if (Has(56)) Row("※" + ReducedRate() + "対象（税込）", "\\" + std::string(Key(56)));
    if (Has(57)) Row("　うち消費税", "\\" + std::string(Key(57)));
    if (Has(50)) Row("非課税", "\\" + std::string(Key(50)));
    Add("</table>\n");
  }
  /// "10%" of "消費税(10%)".
  static std::string RateIn(std::string_view heading) {
    const std::size_t from = heading.find('(') + 1;
    return std::string(heading.substr(from, heading.find(')') - from));
  }
  std::string ReducedRate() const {
    const std::size_t number = Key(60).rfind("<BR>");
    return number == std::string_view::npos ? "" : std::string(Key(60).substr(number + 4)) + "%";
  }

  void Contract() {
    if (!Has(34)) return;
    Add("<h2>ご契約</h2>\n<table class=small><tr>");
    for (const char* heading : {"契約日", "契約金額", "お支払済", "残額"}) AddText("th", " class=n", heading);
    Add("</tr><tr>");
    AddText("td", " class=n", Key(49));
    for (const int key : {34, 35, 36}) AddText("td", " class=n", "\\" + std::string(Key(key)));
    Add("</tr></table>\n");
  }

  void Notes() {
    const std::string_view closing = Key(60).substr(0, Key(60).rfind("<BR>"));
    if (!closing.empty()) Paragraph(std::string(closing) + " " + ReducedRate(), " class=note");
    if (Has(13)) Paragraph(Key(13), " class=note");
  }

  void Clinic() {
    Add("<div class=foot><div>");
    Paragraph(Key(5), " class=clinic");
    Paragraph(Key(6), " class=small");
    if (Has(7)) Paragraph("電話 " + std::string(Key(7)), " class=small");
    if (Has(14)) Paragraph("登録番号 " + std::string(Key(14)), " class=small");
    std::string people;
    if (Has(43)) people += "院長 " + std::string(Key(43));
    if (Has(44)) people += std::string(people.empty() ? "" : "　") + "担当医 " + std::string(Key(44));
    Paragraph(people, " class=small");
    Add("</div><div class=stamp>領収印</div></div>\n");
    Paragraph(Key(61), " class=bye");
  }

  // ---- Patient.

  void Patient() {
    Add("<h1>次回ご予約票</h1>\n<div class=head><div class=payer>");
    Add(Shown(Key(2)));
    Add("</div><div class=\"small right\">");
    Paragraph(Key(4));
    Paragraph("患者番号 " + std::string(Key(51)));
    if (Has(1)) Paragraph("カルテ番号 " + std::string(Key(1)));
    Add("</div></div>\n");
    Appointments();
    Details();
    Add("<div class=foot><div>");
    Paragraph(Key(10), " class=clinic");
    Paragraph(Key(11), " class=small");
    if (Has(12)) Paragraph("電話 " + std::string(Key(12)), " class=small");
    Add("</div></div>\n");
    Paragraph("ご都合が悪くなったときは、お早めにお電話ください。", " class=bye");
  }

  void Appointments() {
    Add("<h2>ご予約</h2>\n");
    if (!Has(52)) return Paragraph("ご予約はございません。");
    Add("<table>\n<thead><tr><th>日時</th><th>内容</th><th>担当</th></tr></thead>\n");
    for (int key = 52; key <= 73 && Has(key); key += 7) {
      Add("<tr><td class=when>");
      Add(Shown(std::string(Key(key)) + " (" + std::string(Key(key + 1)) + ")"));
      Add("<br>");
      Add(Shown(Key(key + 2)));
      Add("</td><td>");
      Paragraph(Key(key + 3));
      Paragraph(Key(key + 6), " class=\"small dim\"");
      Add("</td><td>");
      Paragraph(Key(key + 4));
      Paragraph(Key(key + 5), " class=\"small dim\"");
      Add("</td></tr>\n");
    }
    Add("</table>\n");
  }

  void Details() {
    Add("<h2>ご登録の内容</h2>\n<table class=small>\n");
    const std::pair<const char*, std::string> rows[] = {
        {"フリガナ", std::string(Key(19))},
        {"生年月日・性別", std::string(Key(41)) + "　" + std::string(Key(42))},
        {"住所", (Has(23) ? "〒" + std::string(Key(23)) + "　" : std::string()) + std::string(Key(24))},
        {"電話", std::string(Key(28)) + (Has(28) && Has(29) ? "　" : "") + std::string(Key(29))},
        {"保護者", std::string(Key(44))},
        {"保険種別", std::string(Key(27))},
        {"担当医", std::string(Key(26))},
        {"受診期間", Key(43) == "～" ? std::string() : std::string(Key(43))},
        {"次回の定期健診", std::string(Key(45))},
        {"その他", ExtraItems()}};
    for (const auto& [heading, value] : rows) {
      if (!value.empty()) Row(heading, value, "<tr>", "");
    }
    Add("</table>\n");
  }
  std::string ExtraItems() const {
    std::string all;
    for (int key = 31; key <= 40; ++key) {
      if (Has(key)) all += (all.empty() ? "" : "、") + std::string(Key(key));
    }
    return all;
  }

  const PrintData& data_;
  std::string html_;
};

}  // namespace

std::string FormPage(const PrintData& data) { return Page(data).Make(); }

}  // namespace kova::companions
