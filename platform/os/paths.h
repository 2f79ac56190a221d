#pragma once

// Path text in code page 932 with "\" between its parts. "表" ends in the byte 0x5C and in no delimiter, so
// every function here steps by characters. "/" is taken for a delimiter where a path is split, never added.

#include <string>
#include <string_view>

namespace kova::os {

/// `path` with a "\" behind it; an empty path and one that ends in "\" come back as they are.
std::string AddTrailingDelimiter(std::string_view path);

/// `path` without the one "\" at its end, if it has one.
std::string_view DropTrailingDelimiter(std::string_view path);

/// The part of `path` up to and with its last delimiter (or the colon of its drive); empty when it has none.
/// A folder that ends in a delimiter is its own.
std::string_view FolderOf(std::string_view path);

/// The part of `path` behind FolderOf.
std::string_view FileNameOf(std::string_view path);

/// The folder that holds `path`, delimiter at its end, whether or not `path` ends in one: "C:\A\B\" and
/// "C:\A\B" give "C:\A\". Empty when there is none above it.
std::string_view ParentFolderOf(std::string_view path);

/// `folder` and `name` with one delimiter between them; `name` alone when `folder` is empty.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace kova::os
