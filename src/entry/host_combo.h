#pragma once

#include <afxwin.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "pickers/choice_list.h"

namespace kova::entry {

/// A host's drop-down list: its window's where it has one, so that texts arrive as they are whatever the
/// system's code page is; else the object's own.
class HostCombo {
 public:
  virtual ~HostCombo() = default;

  /// Replaces the entries, each with a block of its own for its data, and selects. Blocks that the old
  /// entries point to stay.
  void Fill(const pickers::ChoiceList& choices);

  /// Frees the blocks that Fill gave the entries, and empties the list.
  void Free();

 protected:
  virtual void Empty() = 0;
  /// The new entry's index at the end; negative when there is no room for it.
  virtual int Append(std::string_view text) = 0;
  virtual int Count() const = 0;
  virtual void SetData(int at, std::uintptr_t data) = 0;
  virtual std::uintptr_t Data(int at) const = 0;
  virtual void Select(int at) = 0;
};

/// `combo` must outlive it.
std::unique_ptr<HostCombo> HostComboOf(CComboBox& combo);

/// The list of an object without window.
std::unique_ptr<HostCombo> ComboWithoutWindow(CComboBox& combo);

}  // namespace kova::entry
