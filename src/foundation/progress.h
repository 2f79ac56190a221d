#pragma once

// What long work tells of itself, and how it learns that the user wants to stop it. Called on the thread that
// works.

#include <string_view>

namespace kova::foundation {

class Progress {
 public:
  virtual ~Progress() = default;

  /// A phase begins; `text` (code page 932) says what is being done. It takes the bar from one place to
  /// another, 0 to 1.
  virtual void Begin(std::string_view text, double from = 0, double to = 1) = 0;

  /// How far the phase is, 0 to 1. False when the user wants to stop; cheap enough to be called often.
  [[nodiscard]] virtual bool Report(double done) = 0;
};

/// Tells nobody, and never stops.
class NoProgress final : public Progress {
 public:
  void Begin(std::string_view, double, double) override {}
  bool Report(double) override { return true; }
};

}  // namespace kova::foundation
