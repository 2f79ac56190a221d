#pragma once

// Patients found by the beginning of their ID, reading or name.

#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/kovadbcall.h"

namespace kova::pickers {

/// The numbers are the system's own.
enum class SearchMode { kUnknown = -1, kId = 0, kKana = 1, kName = 2 };

/// "BYID", "BYKANA", "BYNAME"; kUnknown for any other text.
SearchMode SearchModeOf(std::string_view text);

/// A row of the hit list, as it is shown; texts in code page 932.
struct PatientHit {
  std::string patientCode;
  std::string reading;
  std::string name;  // with the maiden name where that is switched on
  bool male = false;
  bool operator==(const PatientHit&) const = default;
};

/// The columns of the hit list behind its first, empty one.
enum class HitColumn { kId = 1, kReading = 2, kName = 3, kSex = 4 };

/// The patients whose field of the mode begins with `text`, in the order of its key; those flagged "never
/// listed" are left out. An empty text finds every patient; an unknown mode, or a table that cannot be read,
/// none.
///
/// With `withMaidenName`, a search by name also finds those whose maiden name begins with the text, among the
/// records whose name is not less than the text (deliberately: the walk begins there).
///
/// Beyond that: in kana mode the text is also tried in its hiragana, full-width and half-width katakana
/// forms, in ID mode with its full-width letters and digits made half-width; no patient is listed twice.
std::vector<PatientHit> QueryPatients(CKovaDBSys* db, SearchMode mode, std::string_view text,
                                      bool withMaidenName);

/// Orders hits by a column; equal ones keep their order.
void SortHits(std::vector<PatientHit>& hits, HitColumn column, bool descending);

/// "男" or "女".
std::string_view SexText(const PatientHit& hit);

}  // namespace kova::pickers
