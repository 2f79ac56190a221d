#include "window/layout.h"

#include <gtest/gtest.h>

namespace kova::window {
namespace {

TEST(Layout, ShareRoomByStretchAndKeepLeastSizes) {
  const Box form =
      Column(5, {Row(10, {Control(1, {40, 20}).Aligned(Across::kText), Control(2, {50, 30}).Stretch()}),
                 Control(3, {80, 40}).Stretch(), Row(5, {Space(0, 0).Stretch(), Control(4, {60, 25})})})
          .Margin(8);
  EXPECT_EQ(LeastSize(form), (Size{116, 30 + 5 + 40 + 5 + 25 + 16}));
  EXPECT_EQ(
      Place(form, {0, 0, 216, 171}),
      (std::vector<Placement>{
          {1, {8, 13, 40, 20}}, {2, {58, 8, 150, 30}}, {3, {8, 43, 200, 90}}, {4, {148, 138, 60, 25}}}));
  // Too little room: nothing is squeezed below its least size or turned inside out.
  EXPECT_EQ(Place(form, {0, 0, 10, 10}), Place(form, {0, 0, 116, 121}));
}

TEST(Layout, UnevenRoomIsGivenOutToTheLastPixel) {
  const Box row = Row(0, {Control(1, {}).Stretch(), Control(2, {}).Stretch(), Control(3, {}).Stretch()});
  const auto placed = Place(row, {0, 0, 100, 10});
  EXPECT_EQ(placed[0].rect.width + placed[1].rect.width + placed[2].rect.width, 100);
  EXPECT_EQ(placed[2].rect.x + placed[2].rect.width, 100);
}

TEST(Layout, GridColumnsAreAligned) {
  const Box grid = Grid(
      4, 2, {{Control(1, {30, 20}), Control(2, {10, 20})}, {Control(3, {50, 20}), Control(4, {20, 20})}}, 1);
  EXPECT_EQ(Place(grid, {0, 0, 100, 42}),
            (std::vector<Placement>{
                {1, {0, 0, 50, 20}}, {2, {54, 0, 46, 20}}, {3, {0, 22, 50, 20}}, {4, {54, 22, 46, 20}}}));
}

TEST(Layout, LabelsStandMidwayInARowAndLeftInAColumn) {
  EXPECT_EQ(Place(Row(0, {Control(1, {40, 20}).Aligned(Across::kText)}), {0, 0, 100, 30})[0].rect,
            (Rect{0, 5, 40, 20}));
  EXPECT_EQ(Place(Column(0, {Control(1, {40, 20}).Aligned(Across::kText)}), {0, 0, 100, 30})[0].rect,
            (Rect{0, 0, 40, 20}));
}

TEST(Layout, WindowsStayOnTheScreen) {
  const Rect screen{0, 0, 1000, 700};
  EXPECT_EQ(CenteredOver({100, 100, 400, 300}, {200, 100}, screen), (Rect{200, 200, 200, 100}));
  EXPECT_EQ(CenteredOver({900, 650, 100, 50}, {300, 200}, screen), (Rect{700, 500, 300, 200}));
  EXPECT_EQ(CenteredOver({0, 0, 100, 50}, {1200, 900}, screen),
            (Rect{0, 0, 1200, 900}));  // its title bar shows
  // A popup over a field: as it is, grown to the right, grown at the right and lower edges, beside the
  // screen.
  EXPECT_EQ(Covering({100, 50, 300, 24}, {200, 20}, screen), (Rect{100, 50, 300, 24}));
  EXPECT_EQ(Covering({100, 50, 100, 24}, {250, 20}, screen), (Rect{100, 50, 250, 24}));
  EXPECT_EQ(Covering({880, 690, 100, 10}, {250, 30}, screen), (Rect{750, 670, 250, 30}));
  EXPECT_EQ(Covering({1900, 50, 100, 24}, {250, 20}, screen), (Rect{1750, 50, 250, 24}));
}

}  // namespace
}  // namespace kova::window
