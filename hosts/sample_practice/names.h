#pragma once

// What made-up patients are called and where they live. Texts are code page 932; readings are hiragana.

#include <span>

namespace kova::sample {

struct NamePart {
  const char* text;
  const char* reading;
};

/// Common surnames, common ones first; rare characters and long ones at the end.
std::span<const NamePart> Surnames();
std::span<const NamePart> MaleNames();
std::span<const NamePart> FemaleNames();

/// Whole names that are unusual: long, foreign, of one character.
struct WholeName {
  const char* surname;
  const char* surnameReading;
  const char* given;
  const char* givenReading;
  bool male;
};
std::span<const WholeName> UnusualNames();

struct Town {
  const char* postalCode;
  const char* name;
};
std::span<const Town> Towns();

std::span<const char* const> Occupations();
std::span<const char* const> MedicalNotes();

}  // namespace kova::sample
