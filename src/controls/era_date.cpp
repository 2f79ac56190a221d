#include "controls/era_date.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "foundation/kana.h"
#include "foundation/number_text.h"
#include "foundation/text_tools.h"

namespace kova::controls {
namespace {

constexpr std::string_view kFirstYear = "元";

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string HalfWidth(std::string_view text) {
  return foundation::MapKana(text, foundation::KanaForm::kHalfKatakana);
}

/// Years before the first one of the era.
int YearsBefore(int era) {
  const int first = era < 0 ? 0 : kEras[static_cast<std::size_t>(era)].firstDay / 10000;
  return first > 0 ? first - 1 : 0;
}

/// Reads a date from half-width text, part by part.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool AtEnd() {
    (void)SkipBlanks();
    return rest_.empty();
  }
  bool Take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }
  /// A number of one to `most` digits; 0 when there is none.
  int Number(std::size_t most) {
    (void)SkipBlanks();
    const std::size_t digits = std::min(Digits(), most);
    const int number = foundation::ReadInteger(rest_.substr(0, digits));
    rest_.remove_prefix(digits);
    return number;
  }
  std::size_t Digits() const {
    return static_cast<std::size_t>(std::find_if_not(rest_.begin(), rest_.end(), IsDigit) - rest_.begin());
  }
  /// What stands between two parts: the part's own word, a mark, or a blank.
  bool Separator(std::string_view word) {
    const bool blank = SkipBlanks();
    if (Take(word)) return true;
    for (const char* mark : {".", "/", "-", "･", "ｰ", ","}) {
      if (Take(mark)) return true;
    }
    return blank;
  }
  std::optional<int> EraName() {
    (void)SkipBlanks();
    for (std::size_t i = 0; i < kEras.size(); ++i) {
      if (Take(kEras[i].name)) return static_cast<int>(i);
    }
    const auto era = FindEra(rest_.substr(0, 1));
    if (era) rest_.remove_prefix(1);
    return era;
  }

 private:
  bool SkipBlanks() {
    const std::size_t blanks = std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size());
    rest_.remove_prefix(blanks);
    return blanks > 0;
  }
  std::string_view rest_;
};

/// "20240401", and nothing else.
std::optional<EraDate> ReadEightDigits(Reader in) {
  if (in.AtEnd() || in.Digits() != 8) return std::nullopt;
  const int number = in.Number(8);
  if (!in.AtEnd() || number < 10000) return std::nullopt;
  return ToEra({number / 10000, number / 100 % 100, number % 100});
}

/// "年1月1日" or the like to the end; `date` gets month and day. False when it is something else.
bool ReadMonthAndDay(Reader& in, EraDate& date) {
  if (!in.Separator("年") || (date.month = in.Number(2)) == 0) return false;
  if (!in.Separator("月") || (date.day = in.Number(2)) == 0) return false;
  (void)in.Take("日");
  return in.AtEnd();
}

bool IsYearAlone(Reader in) { return in.AtEnd() || (in.Take("年") && in.AtEnd()); }

}  // namespace

EraDate ToEra(const WesternDate& date) {
  EraDate shown{kNoEra, date.year, date.month, date.day};
  if (date.year == 0) return shown;
  const std::int64_t number = std::int64_t{date.year} * 10000 + std::int64_t{date.month} * 100 + date.day;
  for (int era = static_cast<int>(kEras.size()) - 1; era >= 0 && shown.era == kNoEra; --era) {
    if (kEras[static_cast<std::size_t>(era)].firstDay <= number) shown.era = era;
  }
  shown.year -= YearsBefore(shown.era);
  return shown;
}

WesternDate ToWestern(const EraDate& date) {
  const std::int64_t year = std::int64_t{date.year} + YearsBefore(date.era);
  return {static_cast<int>(std::min<std::int64_t>(year, std::numeric_limits<int>::max())), date.month,
          date.day};
}

std::string EraText(const WesternDate& date) {
  const EraDate shown = ToEra(date);
  if (shown.era == kNoEra || date.month == 0 || date.day == 0) return {};
  const bool isFirstYear = shown.era != kWestern && shown.year == 1;
  const std::string year = isFirstYear ? std::string(kFirstYear) : std::to_string(shown.year);
  return std::string(kEras[static_cast<std::size_t>(shown.era)].name) + year + "年" +
         std::to_string(date.month) + "月" + std::to_string(date.day) + "日";
}

std::optional<int> FindEra(std::string_view text) {
  for (std::size_t i = 0; i < kEras.size(); ++i) {
    const bool isLetter = text.size() == 1 && kEras[i].letter != ' ' && (text[0] & ~0x20) == kEras[i].letter;
    if (text == kEras[i].name || isLetter) return static_cast<int>(i);
  }
  return std::nullopt;
}

int NumberInField(std::string_view text) {
  const std::string folded = HalfWidth(text);
  return folded.starts_with(kFirstYear) ? 1 : foundation::ReadInteger(folded);
}

std::optional<EraDate> ReadDate(std::string_view text) {
  const std::string folded = HalfWidth(text);
  Reader in(folded);
  if (const auto date = ReadEightDigits(in)) return date;
  const auto era = in.EraName();
  const bool isWestern = era.value_or(kWestern) == kWestern;
  EraDate date{era.value_or(kNoEra), 0, 0, 0};
  date.year = !isWestern && in.Take(kFirstYear) ? 1 : in.Number(isWestern ? 4 : 2);
  // A year of two digits without an era could be of any.
  if (date.year == 0 || (isWestern && date.year < 1000)) return std::nullopt;
  if (era && IsYearAlone(in)) return date;
  if (!ReadMonthAndDay(in, date)) return std::nullopt;
  return era ? date : ToEra({date.year, date.month, date.day});
}

std::string NoteOf(const EraDate& date, const std::optional<WesternDate>& today) {
  if (date.year == 0 || date.month == 0 || date.day == 0) return {};
  const WesternDate western = ToWestern(date);
  if (!foundation::IsRealDay(western)) return "暦にない日付";
  if (date.era > kWestern && ToEra(western).era != date.era) return "元号の期間外";
  const std::string weekday(foundation::GetDayOfWeekString(foundation::WeekdayOf(western)));
  const std::string note = "(" + weekday + ")";
  if (!today || foundation::DayNumber(western) > foundation::DayNumber(*today)) return note;
  const bool birthdayToCome = std::pair(today->month, today->day) < std::pair(western.month, western.day);
  return note + " " + std::to_string(today->year - western.year - (birthdayToCome ? 1 : 0)) + "歳";
}

int CountedOn(DateField field, int number, int step) {
  if (field == DateField::kYear)
    return std::clamp(number, 1 - step, std::numeric_limits<int>::max() - 1) + step;
  const int last = field == DateField::kMonth ? 12 : 31;
  if (step > 0) return number >= last || number < 1 ? 1 : number + 1;
  return number <= 1 || number > last ? last : number - 1;
}

}  // namespace kova::controls
