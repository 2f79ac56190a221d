#pragma once

// Stand-in for the part of MFC's afx.h that stands in exported signatures. It is on the include path only
// where the toolchain has no MFC; a host built with MFC uses MFC's own. Members behave as MFC documents them;
// texts are bytes of code page 932 and are not interpreted. Only what the library and its hosts use is here.

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "mfc_stand_in_export.h"

/// A text of bytes (MFC's ANSI CString).
class CString {
 public:
  CString() = default;
  CString(const char* text) : text_(text == nullptr ? "" : text) {}
  CString(const char* text, int length) : text_(text, static_cast<std::size_t>(length)) {}

  int GetLength() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  void Empty() { text_.clear(); }
  const char* GetString() const { return text_.c_str(); }
  operator const char*() const { return text_.c_str(); }
  char GetAt(int at) const { return text_[static_cast<std::size_t>(at)]; }

  CString& operator=(const char* text) {
    text_ = text == nullptr ? "" : text;
    return *this;
  }
  CString& operator+=(const char* text) {
    if (text != nullptr) text_ += text;
    return *this;
  }
  CString& operator+=(char c) {
    text_ += c;
    return *this;
  }
  friend CString operator+(const CString& a, const CString& b) { return CString(a) += b.GetString(); }
  friend CString operator+(const CString& a, const char* b) { return CString(a) += b; }
  friend CString operator+(const char* a, const CString& b) { return CString(a) += b.GetString(); }
  friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }
  friend bool operator==(const CString& a, const char* b) { return a.text_ == b; }
  friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
  friend bool operator!=(const CString& a, const char* b) { return !(a == b); }

  /// Less than, equal to or greater than 0, byte by byte and case-sensitive.
  int Compare(const char* other) const { return text_.compare(other); }

  /// Replaces the content by the formatted text (as printf; `long` in a template wants %ld).
  MFC_STAND_IN_API void Format(const char* format, ...)
#ifdef __GNUC__
      __attribute__((format(printf, 2, 3)))
#endif
      ;

 private:
  std::string text_;
};

/// A growing array of texts.
class CStringArray {
 public:
  std::intptr_t GetSize() const { return static_cast<std::intptr_t>(items_.size()); }
  std::intptr_t GetCount() const { return GetSize(); }
  const CString& GetAt(std::intptr_t at) const { return items_[static_cast<std::size_t>(at)]; }
  CString& operator[](std::intptr_t at) { return items_[static_cast<std::size_t>(at)]; }
  const CString& operator[](std::intptr_t at) const { return GetAt(at); }
  /// Appends; gives the index of the new element.
  std::intptr_t Add(const char* text) {
    items_.emplace_back(text);
    return GetSize() - 1;
  }
  void RemoveAll() { items_.clear(); }

 private:
  std::vector<CString> items_;
};

/// A growing array of pointers; it does not own what they point to.
class CPtrArray {
 public:
  std::intptr_t GetSize() const { return static_cast<std::intptr_t>(items_.size()); }
  std::intptr_t GetCount() const { return GetSize(); }
  void* GetAt(std::intptr_t at) const { return items_[static_cast<std::size_t>(at)]; }
  /// Appends; gives the index of the new element.
  std::intptr_t Add(void* item) {
    items_.push_back(item);
    return GetSize() - 1;
  }
  void RemoveAll() { items_.clear(); }

 private:
  std::vector<void*> items_;
};
