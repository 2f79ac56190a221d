#pragma once

// Which columns a list shows, how wide and in which order, as the host application's profile keeps it. Key
// names, signs and defaults are stored; do not change.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/application_profile.h"

namespace kova::controls {

// ---- The simple setting: which columns are shown.

/// "Item%d" of the column number; a column is shown unless 0 is stored.
[[nodiscard]] bool IsItemShown(const os::ApplicationProfile& profile, std::string_view section, int column);

struct ShownItem {
  int column = 0;
  bool isShown = true;
};
/// False when the profile cannot be written; what was stored before then is stored still.
[[nodiscard]] bool StoreItems(os::ApplicationProfile& profile, std::string_view section,
                              const std::vector<ShownItem>& items);

// ---- The ordered setting: "ListHeaderID%02d" and "ListWidth%02d" of the display position.

/// A column at its position. A negative width: it is hidden, and the absolute value is kept for it.
struct PlacedColumn {
  int column = 0;
  std::int32_t width = 0;
  bool IsShown() const { return width >= 0; }
  bool operator==(const PlacedColumn&) const = default;
};

inline constexpr std::int32_t kHiddenWidth = -100;  // of a position with nothing stored

/// The columns 0 to `count` - 1 in the order of display, each once: a position whose stored number is no
/// column, or one that came before, gets the lowest column that no position names. A width that is no number
/// counts as not stored.
[[nodiscard]] std::vector<PlacedColumn> ReadColumns(const os::ApplicationProfile& profile,
                                                    std::string_view section, int count);

/// How many positions have something stored, counted to the last of them; at most kMostPositions.
inline constexpr int kMostPositions = 256;
[[nodiscard]] int StoredPositions(const os::ApplicationProfile& profile, std::string_view section);

/// A row of the dialog that orders columns.
struct ColumnRow {
  int column = 0;
  bool isShown = false;
  bool operator==(const ColumnRow&) const = default;
};

[[nodiscard]] std::vector<ColumnRow> RowsOf(const std::vector<PlacedColumn>& columns);

/// Moves a row; the others keep their order. Gives the row's new index: `to` as far as there are rows.
int MoveRow(std::vector<ColumnRow>& rows, int from, int to);

/// The default order, by column numbers.
void ResetOrder(std::vector<ColumnRow>& rows);

/// The saved columns in the order of the rows, each with the width that it had; showing and hiding change its
/// sign alone. A width of 0 has no sign: hidden it becomes kHiddenWidth.
[[nodiscard]] std::vector<PlacedColumn> Rearranged(const std::vector<PlacedColumn>& saved,
                                                   const std::vector<ColumnRow>& rows);

// ---- The patient list's options, in a section of their own.

inline constexpr std::string_view kPatientSection = "PatientInfo";

struct PatientListOption {
  std::string_view key;
  bool normally;
  std::string_view caption;  // of its check box
};
inline constexpr std::array<PatientListOption, 8> kPatientListOptions = {{
    {"Parent", true, "保護者情報"},
    {"Recall", false, "リコール月"},
    {"Reserv", true, "次回予約日"},
    {"NotPaid", false, "未払い"},
    {"NotPaidContAll", false, "契約分は全て"},
    {"DateOnly", false, "次回予約は\n日付のみ表示"},
    {"UseMemory", false, "詳細情報の先読み"},
    {"AllWait", false, "過去分の予約待ち全てをチェック"},
}};

/// On or off, in the order of kPatientListOptions.
using PatientListChoices = std::array<bool, kPatientListOptions.size()>;

[[nodiscard]] PatientListChoices DefaultPatientListChoices();
[[nodiscard]] PatientListChoices ReadPatientListChoices(const os::ApplicationProfile& profile);

// ---- Storing.

/// What the dialog that orders columns stores. False when the profile cannot be written; what was stored
/// before then is stored still.
[[nodiscard]] bool StoreColumns(os::ApplicationProfile& profile, std::string_view section,
                                const std::vector<PlacedColumn>& columns);
[[nodiscard]] bool StoreColumns(os::ApplicationProfile& profile, std::string_view section,
                                const std::vector<PlacedColumn>& columns, const PatientListChoices& choices);

}  // namespace kova::controls
