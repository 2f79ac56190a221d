#include "pickers/patient_query.h"

#include <algorithm>
#include <utility>

#include "foundation/kana.h"
#include "platform/text932/cp932.h"
#include "platform/toollib/tools.h"

namespace kova::pickers {
namespace {

using store::GetText;

constexpr int kByName = 1, kByReading = 2, kById = 3;  // keys of the patient table
constexpr std::uint8_t kNeverListed = 1;

/// Full-width letters and digits made half-width; everything else as it is.
std::string NarrowLettersAndDigits(std::string_view text) {
  constexpr char32_t kWidthStep = 0xFEE0;
  std::string narrow;
  for (std::size_t i = 0; i < text.size(); i += text932::CharLength(text, i)) {
    const char32_t c = text932::DecodeAt(text, i);
    const bool wide = (c >= U'０' && c <= U'９') || (c >= U'Ａ' && c <= U'Ｚ') || (c >= U'ａ' && c <= U'ｚ');
    if (wide) {
      narrow += static_cast<char>(c - kWidthStep);
    } else {
      narrow += text.substr(i, text932::CharLength(text, i));
    }
  }
  return narrow;
}

std::ptrdiff_t QuestionMarks(std::string_view text) {
  std::ptrdiff_t count = 0;
  for (std::size_t i = 0; i < text.size(); i += text932::CharLength(text, i)) {
    const char32_t c = text932::DecodeAt(text, i);
    if (c == U'?' || c == U'？') ++count;
  }
  return count;
}

/// `text` in every kana form and with both widths of its spaces.
std::vector<std::string> KanaForms(std::string_view text) {
  std::vector<std::string> forms{std::string(text)};
  for (const foundation::KanaForm form :
       {foundation::KanaForm::kFullHiragana, foundation::KanaForm::kHalfKatakana,
        foundation::KanaForm::kFullKatakana}) {
    for (const int spaceFlag : {0, 1}) {
      std::string mapped = foundation::ChangeFurigana(text, static_cast<int>(form), spaceFlag);
      // A character without that form was mapped to a question mark: that would find other readings.
      if (QuestionMarks(mapped) == QuestionMarks(text)) forms.push_back(std::move(mapped));
    }
  }
  return forms;
}

/// The beginnings to look for, in key order; none of them begins with another one, so no record has two of
/// them.
std::vector<std::string> Beginnings(SearchMode mode, std::string_view text) {
  std::vector<std::string> all{std::string(text)};
  if (mode == SearchMode::kId) all.push_back(NarrowLettersAndDigits(text));
  if (mode == SearchMode::kKana) all = KanaForms(text);
  std::sort(all.begin(), all.end());
  std::vector<std::string> distinct;
  for (std::string& each : all) {
    if (distinct.empty() || !each.starts_with(distinct.back())) distinct.push_back(std::move(each));
  }
  return distinct;
}

int KeyOf(SearchMode mode) {
  if (mode == SearchMode::kId) return kById;
  return mode == SearchMode::kKana ? kByReading : kByName;
}

void AddHit(const tagPATIENTDB& patient, bool withMaidenName, std::vector<PatientHit>& hits) {
  if (patient.neverListed == kNeverListed) return;
  const std::string_view name = GetText(patient.name);
  hits.push_back(
      {std::string(GetText(patient.patientCode)), std::string(GetText(patient.reading)),
       withMaidenName ? CTools::WithMaidenName(name, GetText(patient.maidenName)) : std::string(name),
       patient.sexCode == 1});
}

/// Positions at the first patient whose key is not less than `text`, for a walk to the end.
int GoToWalk(CPatientDB& table, std::string_view text) {
  table.SetKeyBuffer(text.data(), static_cast<unsigned long>(text.size()));
  table.SetWalkEnd("", 0);
  return table.GetGREQ();
}

/// Positions at the first patient whose key begins with one of `beginnings`, for a walk through these.
int GoToWalk(CPatientDB& table, const std::vector<std::string>& beginnings) {
  table.SetWalk(beginnings);
  return table.GetFIRST();
}

}  // namespace

SearchMode SearchModeOf(std::string_view text) {
  if (text == "BYID") return SearchMode::kId;
  if (text == "BYKANA") return SearchMode::kKana;
  return text == "BYNAME" ? SearchMode::kName : SearchMode::kUnknown;
}

std::vector<PatientHit> QueryPatients(CKovaDBSys* db, SearchMode mode, std::string_view text,
                                      bool withMaidenName) {
  std::vector<PatientHit> hits;
  if (mode == SearchMode::kUnknown) return hits;
  const bool alsoMaidenName = mode == SearchMode::kName && withMaidenName;
  const CKovaReads reads(db);
  CPatientDB table(nullptr, 0);
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = table.SetFields("name reading maidenName sexCode neverListed");
  if (result == 0) result = table.SetKey(KeyOf(mode));
  if (result == 0) result = alsoMaidenName ? GoToWalk(table, text) : GoToWalk(table, Beginnings(mode, text));
  for (; result == 0; result = table.GetNEXT()) {
    const tagPATIENTDB& patient = table.record;
    if (!alsoMaidenName || GetText(patient.name).starts_with(text) || GetText(patient.maidenName).starts_with(text))
      AddHit(patient, withMaidenName, hits);
  }
  if (result == static_cast<int>(store::Result::kEndOfTable)) result = 0;
  if (result != 0) hits.clear();
  return hits;
}

void SortHits(std::vector<PatientHit>& hits, HitColumn column, bool descending) {
  const auto textOf = [column](const PatientHit& hit) -> std::string_view {
    if (column == HitColumn::kId) return hit.patientCode;
    if (column == HitColumn::kReading) return hit.reading;
    return column == HitColumn::kName ? std::string_view(hit.name) : SexText(hit);
  };
  std::stable_sort(hits.begin(), hits.end(), [&](const PatientHit& a, const PatientHit& b) {
    return descending ? textOf(b) < textOf(a) : textOf(a) < textOf(b);
  });
}

std::string_view SexText(const PatientHit& hit) { return hit.male ? "男" : "女"; }

}  // namespace kova::pickers
