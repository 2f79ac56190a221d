#include "mail/template_tree.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <tuple>

#include "platform/text932/cp932.h"

namespace kova::mail {
namespace {

// A tree as text: "1(2 3(4)) 5".
std::string Show(const TemplateTree& tree, std::optional<int> parent = std::nullopt) {
  std::string shown;
  for (const int number : tree.Children(parent)) {
    shown += (shown.empty() ? "" : " ") + std::to_string(number);
    EXPECT_EQ(tree.Parent(number), parent);
    if (!tree.Children(number).empty()) shown += "(" + Show(tree, number) + ")";
  }
  return shown;
}

TEST(TemplateTree, Reading) {
  // Of templates 1 to 5; a blank in the file stands for a line end.
  const std::tuple<const char*, const char*> cases[] = {
      {"", "1 2 3 4 5"},
      {"0003 0001-0003 0002-0001", "3(1(2)) 4 5"},
      {"2-1 1 3-2", "1(2(3)) 4 5"},           // a parent that comes later
      {"3-9 9 2-9 1", "3 2 1 4 5"},           // a parent that has no template
      {"2-5 1-5", "3 4 5(2 1)"},              // a parent that has no line
      {"2-2 1", "2 1 3 4 5"},                 // its own parent
      {"1 3-4 4-2 2-3", "1 3(2(4)) 5"},       // a ring
      {"5-4 3-2 2-3 4-3 1", "3(2 4(5)) 1"},   // a tail in front of its ring
      {"2 1 2-1", "2 1 3 4 5"},               // two lines for one
      {"x1 -2 3-x 4- 5x9 2-0", "3 4 5 2 1"},  // what is no number
  };
  for (const auto& [file, shown] : cases) {
    for (const char* lineEnd : {"\r\n", "\n"}) {
      const TemplateTree tree(text932::ReplaceAll(file, " ", lineEnd), {1, 2, 3, 4, 5});
      EXPECT_EQ(Show(tree), shown) << file;
      EXPECT_EQ(Show(TemplateTree(tree.FileText(), {5, 4, 3, 2, 1})), shown) << "saved and read";
    }
  }
  EXPECT_EQ(TemplateTree("5\n12345-5\n0-5\n", {0, 5, 12345}).FileText(), "0005\r\n12345-0005\r\n");
}

TEST(TemplateTree, Moving) {
  using M = std::optional<int>;
  const M kRoot, kEnd;
  const auto move = [](int number, M parent, M before) {
    return [=](TemplateTree& tree) { return tree.Move(number, parent, before); };
  };
  // An empty outcome: refused.
  const std::tuple<const char*, std::function<bool(TemplateTree&)>, const char*> cases[] = {
      {"up", [](TemplateTree& tree) { return tree.MoveUp(3); }, "1(3 2(4)) 5"},
      {"up, the first", [](TemplateTree& tree) { return tree.MoveUp(2); }, ""},
      {"down", [](TemplateTree& tree) { return tree.MoveDown(1); }, "5 1(2(4) 3)"},
      {"down, the last", [](TemplateTree& tree) { return tree.MoveDown(5); }, ""},
      {"to the root's end", move(2, kRoot, kEnd), "1(3) 5 2(4)"},
      {"before another", move(5, 1, 3), "1(2(4) 5 3)"},
      {"among its own", move(3, 1, 2), "1(3 2(4)) 5"},
      {"under itself", move(1, 1, kEnd), ""},
      {"under its own grandchild", move(1, 4, kEnd), ""},
      {"before itself", move(3, 1, 3), ""},
      {"under a missing one", move(5, 9, kEnd), ""},
      {"a missing one", move(9, kRoot, kEnd), ""},
      {"under 0", move(5, 0, kEnd), ""},
  };
  for (const auto& [name, operation, after] : cases) {
    TemplateTree tree("1\n2-1\n4-2\n3-1\n5\n", {1, 2, 3, 4, 5});
    const bool refused = after[0] == '\0';
    EXPECT_EQ(operation(tree), !refused) << name;
    EXPECT_EQ(Show(tree), refused ? "1(2(4) 3) 5" : after) << name;
  }
}

TEST(TemplateTree, DeepAndLongOnes) {
  for (const bool ring : {false, true}) {
    constexpr int kCount = 100000;
    std::vector<int> existing(kCount);
    std::iota(existing.begin(), existing.end(), 1);
    std::string file;
    for (const int number : existing)
      file += std::to_string(number) + "-" +
              std::to_string(number > 1 ? number - 1
                             : ring     ? kCount
                                        : 0) +
              "\n";
    TemplateTree tree(file, existing);
    EXPECT_EQ(tree.Parent(kCount), kCount - 1);
    EXPECT_FALSE(tree.Move(1, kCount, std::nullopt));
    EXPECT_EQ(Show(TemplateTree(tree.FileText(), {1, 2, 3})), "1(2(3))");
  }
}

}  // namespace
}  // namespace kova::mail
