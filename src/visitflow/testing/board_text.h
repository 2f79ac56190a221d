#pragma once

// Boards and stages as one line of text, for tests: "before: 12 15 | A: 7 | B: | done: 3".

#include <sstream>
#include <string>
#include <vector>

#include "visitflow/board.h"

namespace kova::visitflow::testing {

inline std::vector<std::string> Words(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

/// "A10 B20": stage 10 of the name A, then stage 20 of the name B.
inline std::vector<Stage> StagesOf(const std::string& text) {
  std::vector<Stage> stages;
  for (const std::string& word : Words(text))
    stages.push_back({std::stoi(word.substr(1)), word.substr(0, 1)});
  return stages;
}

inline std::string BoardText(const Board& board, const std::vector<Stage>& stages) {
  const auto keys = [](const std::vector<BoardRow>& rows, int stage) {
    std::string text;
    for (const BoardRow& row : rows) text += row.stage == stage ? " " + row.key : "";
    return text;
  };
  std::string text = "before:" + keys(board.before, -1);
  for (std::size_t i = 0; i < stages.size(); ++i)
    text += " | " + stages[i].name + ":" + keys(board.staged, static_cast<int>(i));
  return text + " | done:" + keys(board.finished, -1);
}

}  // namespace kova::visitflow::testing
