#pragma once

// The suite's names for the map's operations and their table.

#include "postal/post_table.h"

/// Postal codes with where they lie and their numbers of patients; kept with a connection.
using CPostList = kova::postal::PostTable;
/// The places of a map.
using CPlaceList = kova::postal::PlaceTable;
