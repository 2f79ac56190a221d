#include "controls/list_columns.h"

#include <gtest/gtest.h>

#include "platform/os/testing/fake_files.h"

namespace {

using namespace kova::controls;
using kova::os::testing::FakeFiles;
using kova::os::testing::FakeStep;

constexpr char kProfile[] = "C:\\app.ini";

class ListColumns : public testing::Test {
 protected:
  void Keep(std::string_view text) { files_.contents[kProfile] = "[Reserv]\r\n" + std::string(text); }
  /// "2:120 0:-100": column and width in the order of display.
  std::string Shown(int count) const {
    std::string text;
    for (const PlacedColumn& each : ReadColumns(profile_, "Reserv", count))
      text += (text.empty() ? "" : " ") + std::to_string(each.column) + ":" + std::to_string(each.width);
    return text;
  }
  bool Apply(const std::vector<ColumnRow>& rows) {
    const auto saved = ReadColumns(profile_, "Reserv", static_cast<int>(rows.size()));
    return StoreColumns(profile_, "Reserv", Rearranged(saved, rows), ReadPatientListChoices(profile_));
  }

  FakeFiles files_;
  kova::os::IniApplicationProfile profile_{files_, kProfile};
};

TEST_F(ListColumns, AreReadWhateverIsStored) {
  const struct {
    const char* stored;
    const char* shown;
  } cases[] = {
      {"", "0:-100 1:-100 2:-100"},
      {"ListHeaderID00=2\r\nListHeaderID02=0\r\nListWidth00=80\r\nListWidth01=-70\r\n", "2:80 1:-70 0:-100"},
      {"ListHeaderID00=1\r\nListHeaderID02=1\r\nListWidth02=55\r\n", "1:-100 0:-100 2:55"},
      {"ListHeaderID00=7\r\nListHeaderID01=-1\r\nListHeaderID02=1\r\n", "0:-100 2:-100 1:-100"},
      {"ListHeaderID00=x\r\nListWidth00=abc\r\nListWidth01=\r\nListWidth02=0\r\n", "0:-100 1:-100 2:0"},
      {"ListWidth00=-2147483648\r\n", "0:-2147483647 1:-100 2:-100"},
  };
  for (const auto& each : cases) {
    Keep(each.stored);
    EXPECT_EQ(Shown(3), each.shown) << each.stored;
  }
  EXPECT_EQ(Shown(0), "");
  EXPECT_EQ(ReadColumns(profile_, "Reserv", 200).back(), (PlacedColumn{199, -100}));
}

TEST_F(ListColumns, KeepTheirWidthsWhenHiddenShownAndMoved) {
  Keep("ListWidth00=80\r\nListWidth01=70\r\n");
  ASSERT_TRUE(Apply({{1, false}, {2, true}, {0, true}}));
  EXPECT_EQ(Shown(3), "1:-70 2:100 0:80");
  ASSERT_TRUE(Apply({{0, true}, {1, true}, {2, false}}));
  EXPECT_EQ(Shown(3), "0:80 1:70 2:-100");
  Keep("ListWidth00=0\r\n");  // the sign of 0 says nothing: a hidden column is hidden all the same
  ASSERT_TRUE(Apply({{0, false}}));
  EXPECT_EQ(Shown(1), "0:-100");
  EXPECT_EQ(StoredPositions(profile_, "Reserv"), 1);
}

TEST_F(ListColumns, RowsMove) {
  std::vector<ColumnRow> rows = {{0, true}, {1, false}, {2, true}, {3, true}};
  const auto order = [&] {
    std::string text;
    for (const ColumnRow& row : rows) text += std::to_string(row.column) + (row.isShown ? "+" : "-");
    return text;
  };
  EXPECT_EQ(MoveRow(rows, 1, 0), 0);
  EXPECT_EQ(order(), "1-0+2+3+");
  EXPECT_EQ(MoveRow(rows, 0, 9), 3);
  EXPECT_EQ(order(), "0+2+3+1-");
  EXPECT_EQ(MoveRow(rows, 0, -1), 0);
  EXPECT_EQ(MoveRow(rows, 4, 0), 4);
  EXPECT_EQ(order(), "0+2+3+1-");
  ResetOrder(rows);
  EXPECT_EQ(order(), "0+1-2+3+");
}

TEST_F(ListColumns, OptionsAndItemsComeBackAsStored) {
  EXPECT_EQ(ReadPatientListChoices(profile_), DefaultPatientListChoices());
  PatientListChoices turned = DefaultPatientListChoices();
  for (bool& each : turned) each = !each;
  ASSERT_TRUE(StoreColumns(profile_, "Reserv", {}, turned));
  EXPECT_EQ(ReadPatientListChoices(profile_), turned);
  EXPECT_EQ(files_.contents[kProfile].substr(0, 35), "[PatientInfo]\r\nParent=0\r\nRecall=1\r\n");
  ASSERT_TRUE(StoreItems(profile_, "Reserv", {{0, true}, {3, false}}));
  EXPECT_TRUE(IsItemShown(profile_, "Reserv", 0));
  EXPECT_FALSE(IsItemShown(profile_, "Reserv", 3));
  EXPECT_TRUE(IsItemShown(profile_, "Reserv", 4));
}

/// A profile that can be written a number of times.
class FillingProfile final : public kova::os::ApplicationProfile {
 public:
  FillingProfile(ApplicationProfile& profile, int writes) : profile_(profile), writes_(writes) {}
  std::string GetString(std::string_view section, std::string_view key,
                        std::string_view otherwise) const override {
    return profile_.GetString(section, key, otherwise);
  }
  std::int32_t GetInt(std::string_view section, std::string_view key, std::int32_t otherwise) const override {
    return profile_.GetInt(section, key, otherwise);
  }
  bool WriteString(std::string_view, std::string_view, std::string_view) override { return false; }
  bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) override {
    return writes_-- != 0 && profile_.WriteInt(section, key, value);
  }

 private:
  ApplicationProfile& profile_;
  int writes_;
};

TEST_F(ListColumns, AreAsBeforeWhenOneCannotBeWritten) {
  for (int writes = 0; writes < 6; ++writes) {
    Keep("ListWidth00=80\r\nListHeaderID00=2\r\nListHeaderID02=0\r\nListWidth02=60\r\n");
    const std::string before = Shown(3);
    FillingProfile filling(profile_, writes);
    EXPECT_FALSE(StoreColumns(filling, "Reserv", {{1, -33}, {0, 80}, {2, 60}}, {}));
    EXPECT_EQ(Shown(3), before) << writes;
  }
}

}  // namespace
