#pragma once

#include <span>
#include <string>

#include "platform/recordstore/schema.h"

namespace kova::hosts {

/// A Markdown page that describes the tables: fields with type, width and meaning, and keys with their width.
std::string TablePage(std::span<const store::TableDef> tables);

}  // namespace kova::hosts
