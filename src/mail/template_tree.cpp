#include "mail/template_tree.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

#include "foundation/number_text.h"
#include "mail/template_store.h"

namespace kova::mail {
namespace {

constexpr int kNoNumber = 0;  // what the file's readers take the root for

struct Line {
  int number;
  int parent;  // kNoNumber for the root
};

std::optional<Line> ReadLine(std::string_view text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  if (digits == 0) return std::nullopt;
  const bool nested = digits < text.size() && text[digits] == '-';
  return Line{foundation::ReadInteger(text),
              nested ? foundation::ReadInteger(text.substr(digits + 1)) : kNoNumber};
}

/// The lines that count, the first of each number.
std::vector<Line> ReadLines(std::string_view file, const std::unordered_set<int>& existing) {
  std::vector<Line> lines;
  std::unordered_set<int> seen;
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size());
    const auto line = ReadLine(file.substr(0, end));
    if (line && existing.contains(line->number) && seen.insert(line->number).second) lines.push_back(*line);
    file.remove_prefix(std::min(end + 1, file.size()));
  }
  return lines;
}

/// Hangs the first line of every ring under the root. Each line is walked over once.
void OpenRings(std::vector<Line>& lines) {
  std::unordered_map<int, std::size_t> lineOf;
  for (std::size_t i = 0; i < lines.size(); ++i) lineOf[lines[i].number] = i;
  std::vector<std::size_t> walkOf(lines.size(), 0);  // the walk that came by, counted from 1
  for (std::size_t start = 0; start < lines.size(); ++start) {
    std::size_t at = start;
    auto above = lineOf.end();
    while (walkOf[at] == 0) {
      walkOf[at] = start + 1;
      above = lineOf.find(lines[at].parent);
      if (above == lineOf.end()) break;
      at = above->second;
    }
    if (above == lineOf.end() || walkOf[at] != start + 1) continue;
    std::size_t first = at;
    for (std::size_t i = lineOf[lines[at].parent]; i != at; i = lineOf[lines[i].parent])
      first = std::min(first, i);
    lines[first].parent = kNoNumber;
  }
}

}  // namespace

TemplateTree::TemplateTree(std::string_view file, const std::vector<int>& existing) {
  const std::unordered_set<int> known(existing.begin(), existing.end());
  std::vector<Line> lines = ReadLines(file, known);
  OpenRings(lines);
  for (const int number : known) items_[number];
  std::unordered_set<int> placed;
  for (const Line& line : lines) {
    placed.insert(line.number);
    if (line.parent != kNoNumber && known.contains(line.parent)) items_[line.number].parent = line.parent;
    ChildrenOf(items_[line.number].parent).push_back(line.number);
  }
  for (const int number : existing) {
    if (placed.insert(number).second) top_.push_back(number);
  }
}

const std::vector<int>& TemplateTree::Children(std::optional<int> parent) const {
  static const std::vector<int> kNone;
  if (!parent) return top_;
  const auto found = items_.find(*parent);
  return found == items_.end() ? kNone : found->second.children;
}

std::vector<int>& TemplateTree::ChildrenOf(std::optional<int> parent) {
  return parent ? items_[*parent].children : top_;
}

std::optional<int> TemplateTree::Parent(int number) const {
  const auto found = items_.find(number);
  return found == items_.end() ? std::nullopt : found->second.parent;
}

bool TemplateTree::Step(int number, int places) {
  if (!items_.contains(number)) return false;
  std::vector<int>& siblings = ChildrenOf(Parent(number));
  const auto at = std::find(siblings.begin(), siblings.end(), number);
  if (places < 0 ? at == siblings.begin() : at + 1 == siblings.end()) return false;
  std::iter_swap(at, at + places);
  return true;
}

bool TemplateTree::MoveUp(int number) { return Step(number, -1); }

bool TemplateTree::MoveDown(int number) { return Step(number, 1); }

bool TemplateTree::IsUnder(int number, int above) const {
  for (std::optional<int> at = number; at; at = Parent(*at)) {
    if (*at == above) return true;
  }
  return false;
}

bool TemplateTree::Move(int number, std::optional<int> parent, std::optional<int> before) {
  if (!items_.contains(number) || before == number) return false;
  if (parent && (*parent == kNoNumber || !items_.contains(*parent) || IsUnder(*parent, number))) return false;
  const std::vector<int>& target = Children(parent);
  if (before && std::find(target.begin(), target.end(), *before) == target.end()) return false;

  std::erase(ChildrenOf(Parent(number)), number);
  std::vector<int>& siblings = ChildrenOf(parent);
  siblings.insert(before ? std::find(siblings.begin(), siblings.end(), *before) : siblings.end(), number);
  items_[number].parent = parent;
  return true;
}

std::string TemplateTree::FileText() const {
  std::string text;
  std::vector<int> waiting(top_.rbegin(), top_.rend());
  while (!waiting.empty()) {
    const int number = waiting.back();
    waiting.pop_back();
    const Item& item = items_.at(number);
    if (number != kNoNumber) {
      text.append(NumberText(number));
      if (item.parent) text.append("-").append(NumberText(*item.parent));
      text.append("\r\n");
    }
    waiting.insert(waiting.end(), item.children.rbegin(), item.children.rend());
  }
  return text;
}

}  // namespace kova::mail
