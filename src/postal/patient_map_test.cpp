#include "postal/patient_map.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/os/testing/fake_files.h"
#include "postal/map_job.h"

namespace kova::postal {
namespace {

/// Stops after a number of reports.
class Stopper final : public foundation::Progress {
 public:
  explicit Stopper(int reports) : left_(reports) {}
  void Begin(std::string_view, double, double) override {}
  bool Report(double) override { return left_-- > 0; }

 private:
  int left_;
};

foundation::NoProgress going;

std::string Counted(const PostTable& table) {
  std::string text;
  for (std::size_t i = 0; i < table.Size(); ++i)
    if (table.CountAt(i) > 0)
      text += std::string(table.EntryAt(i)->code) + "=" + std::to_string(table.CountAt(i)) + " ";
  return text;
}

TEST(PostTable, ReadsWhatHasAPlace) {
  PostTable table;
  ASSERT_TRUE(
      table.Load("1000001,千代田,35.684,139.752\r\n"
                 "\r\n,no code,1,2\r\nabc\r\n"
                 "1,cut,35.1\n"
                 "2,nan,nan,1\n3,beyond,1e400,1\n4,hex,0x10,1\n5,blank, 35.5 x,139\n"
                 "6,comma,35,68,139\n"
                 "7,minus,-33.8,-151.2\n"
                 "8,long,35.00000000000000012345,139\n"
                 "9,pole,91,0\n"
                 "1000001,later,1,2\n"
                 "0,half\x81,3,4",
                 going));
  const std::vector<std::pair<std::string, std::pair<double, double>>> expected = {
      {"1000001", {1, 2}},    {"4", {0, 1}},    {"5", {35.5, 139}}, {"6", {35, 68}},
      {"7", {-33.8, -151.2}}, {"8", {35, 139}}, {"0", {3, 4}}};
  std::vector<std::pair<std::string, std::pair<double, double>>> read;
  for (std::size_t i = 0; i < table.Size(); ++i) {
    if (const auto entry = table.EntryAt(i))
      read.push_back({std::string(entry->code), {entry->latitude, entry->longitude}});
  }
  EXPECT_EQ(read, expected);
  EXPECT_EQ(table.EntryAt(0)->text, "later");
}

TEST(PostTable, CountsCodesAsTheyAreWritten) {
  PostTable table;
  ASSERT_TRUE(table.Load("1000001,a,1,2\n1230000,b,1,2\n0000000,c,1,2\n", going));
  for (const char* code : {"100-0001", "1000001", "10000019", "1-2-3", "123", "12300", "", "---", "9999999"})
    table.Count(code);
  table.Count(std::string(100, '1'));
  EXPECT_EQ(Counted(table), "1000001=3 1230000=3 0000000=2 ");
  table.ResetCounts();
  EXPECT_EQ(Counted(table), "");
  PostTable empty;
  empty.Count("1000001");
  EXPECT_TRUE(empty.Load("", going));
}

TEST(PostTable, HoldsManyAndStopsWhenAsked) {
  std::string csv;
  for (int i = 1000000; i < 1020000; ++i) csv += std::to_string(i) + ",t,35.5,139.5\n";
  PostTable stopped;
  EXPECT_FALSE(stopped.Load(csv, *std::make_unique<Stopper>(3)));
  EXPECT_TRUE(stopped.IsEmpty());
  PostTable table;
  ASSERT_TRUE(table.Load(csv, going));
  for (int i = 1000000; i < 1020000; ++i) table.Count(std::to_string(i));
  for (std::size_t i = 0; i < table.Size(); ++i) ASSERT_EQ(table.CountAt(i), 1);
  PlaceTable places;
  Stopper stopper(1);
  EXPECT_FALSE(GatherPlaces(table, places, stopper).has_value());
}

TEST(PatientMap, GathersByPlaceAndWritesThePage) {
  PostTable table;
  PlaceTable places;
  ASSERT_TRUE(
      table.Load("1000000,甲,35,139\n2000000,乙,35.0000001,139\n3000000,甲,35,139\n4000000,表\"};alert(1)//"
                 ",36,140.5\n5000000,nobody,0,0\n",
                 going));
  for (const char* code : {"1000000", "2000000", "3000000"})
    for (int i = 0; i < 4; ++i) table.Count(code);
  table.Count("4");
  const auto bounds = GatherPlaces(table, places, going);
  ASSERT_TRUE(bounds.has_value());
  ASSERT_EQ(places.Entries().size(), 2U);
  EXPECT_EQ(places.Entries()[0].code, "35.000000,139.000000");
  EXPECT_EQ(places.Entries()[0].text, "甲、乙");
  EXPECT_EQ(
      MapPage("<script>\r\n  //<setView>\n//<Maker>\n//<setView>//<Maker>\n</script>", places, *bounds),
      "<script>\r\n"
      "          map.setView([35.500000,139.750000], 10);\r\n"
      "  //<setView>\r\n"
      "          L.circleMarker([35.000000,139.000000], { radius: 20, color: \"#ff8000\", weight: 4, fill: "
      "true, "
      "fillColor: \"#ff8000\", opacity: 0.8  }).addTo(map);\r\n"
      "          L.marker([35.000000,139.000000], { title: \"[甲、乙:12件]\" }).addTo(map);\r\n"
      "          L.circleMarker([36.000000,140.500000], { radius: 20, color: \"#5050ff\", weight: 4, fill: "
      "true, "
      "fillColor: \"#5050ff\", opacity: 0.8  }).addTo(map);\r\n"
      "          L.marker([36.000000,140.500000], { title: \"[表\\u0022};alert(1)//:1件]\" }).addTo(map);\r\n"
      "//<Maker>\r\n"
      "          map.setView([35.500000,139.750000], 10);\r\n"
      "//<setView>//<Maker>\r\n"
      "</script>\r\n");
}

TEST(PatientMap, WithoutPatientsIsAPageWithoutMarkers) {
  PostTable table;
  PlaceTable places;
  const auto bounds = GatherPlaces(table, places, going);
  EXPECT_EQ(MapPage("//<Maker>\n//<setView>", places, *bounds),
            "//<Maker>\r\n          map.setView([499.500000,499.500000], 12);\r\n//<setView>\r\n");
  EXPECT_EQ(MapPage("no marks", places, *bounds), "no marks\r\n");
}

TEST(PatientMap, ChoosesZoomAndColour) {
  const std::pair<double, int> zooms[] = {{15.1, 5}, {15.0, 6}, {7.3, 7},  {3.9, 9},
                                          {1.9, 10}, {0.9, 11}, {0.5, 12}, {0, 12}};
  for (const auto& [span, zoom] : zooms) {
    EXPECT_EQ(ZoomFor({0, span, 0, 0}), zoom) << span;
    EXPECT_EQ(ZoomFor({0, 0, 0, span}), zoom) << span;
  }
  EXPECT_EQ(ColourOf(20), "#ff2020");
  EXPECT_EQ(ColourOf(19), ColourOf(10));
  EXPECT_EQ(ColourOf(9), ColourOf(5));
  EXPECT_EQ(ColourOf(4), "#5050ff");
}

TEST(PatientMap, NoLabelLeavesItsString) {
  EXPECT_EQ(ScriptText("</script>"), "\\u003c/script\\u003e");
  EXPECT_EQ(ScriptText("能\\\r\n&'"), "能\\u005c\\u000d\\u000a\\u0026'");
  EXPECT_EQ(ScriptText("half\x81"), "half?");
  EXPECT_EQ(ScriptText("\x81\""), "?\\u0022");
}

/// Writes down the phases, and stops after a number of reports.
class Watcher final : public foundation::Progress {
 public:
  explicit Watcher(int reports = 1000000) : left_(reports) {}
  std::string phases;
  void Begin(std::string_view text, double from, double to) override {
    phases.append(text).append(" " + std::to_string(static_cast<int>(from * 100)) + "-" +
                               std::to_string(static_cast<int>(to * 100)) + "\n");
  }
  bool Report(double) override { return left_-- > 0; }

 private:
  int left_;
};

class MapJob : public testing::Test {
 protected:
  MapJob() {
    files_.contents["P\\PostGeo.csv"] = "1000001,a,35,139\n1000002,b,36,140\n";
    files_.contents["P\\map_tmp.htm"] = "//<Maker>\n";
  }
  MapResult Make(foundation::Progress& progress) {
    return MakePatientMap(files_, "P\\", table_, codes_, progress);
  }

  os::testing::FakeFiles files_;
  PostTable table_;
  std::vector<std::string> codes_ = {"100-0001", "1000001", "", "9999999"};
};

TEST_F(MapJob, LoadsOnceAndLeavesNoCounts) {
  Watcher first, second;
  EXPECT_EQ(Make(first).outcome, MapResult::Outcome::kWritten);
  EXPECT_EQ(first.phases,
            "〒番号データ読み込み中 0-50\n〒番号データマッチング中 50-80\n地図情報作成中 80-100\n");
  EXPECT_NE(files_.contents["P\\map.htm"].find("[a:2件]"), std::string::npos);
  EXPECT_EQ(Counted(table_), "");
  const int reads = files_.reads;
  EXPECT_EQ(Make(second).outcome, MapResult::Outcome::kWritten);
  EXPECT_EQ(second.phases, "〒番号データマッチング中 0-50\n地図情報作成中 50-100\n");
  EXPECT_EQ(files_.reads, reads + 1);  // the page's template
}

TEST_F(MapJob, StopsInEveryPhase) {
  // Reports: one of the loading, two of the counting, one of the page.
  for (int reports = 0; reports < 4; ++reports) {
    PostTable table;
    Watcher watcher(reports);
    EXPECT_EQ(MakePatientMap(files_, "P\\", table, codes_, watcher).outcome, MapResult::Outcome::kStopped)
        << reports;
    EXPECT_EQ(Counted(table), "");
    EXPECT_EQ(table.IsEmpty(), reports == 0);
    EXPECT_FALSE(files_.contents.contains("P\\map.htm"));
  }
}

TEST_F(MapJob, SaysWhichFileFailed) {
  Watcher watcher;
  files_.contents.erase("P\\PostGeo.csv");
  EXPECT_EQ(Make(watcher).outcome, MapResult::Outcome::kWritten);  // a page without places
  EXPECT_EQ(files_.contents["P\\map.htm"], "//<Maker>\r\n");
  files_.readOnly.insert("P\\map.htm");
  EXPECT_EQ(Make(watcher).why, os::FileOutcome::kReadOnly);
  files_.contents.erase("P\\map_tmp.htm");
  const MapResult missing = Make(watcher);
  EXPECT_EQ(missing.outcome, MapResult::Outcome::kFailed);
  EXPECT_EQ(missing.file, "P\\map_tmp.htm");
  EXPECT_EQ(missing.why, os::FileOutcome::kNotThere);
}

}  // namespace
}  // namespace kova::postal
