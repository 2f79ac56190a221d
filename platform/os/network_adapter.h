#pragma once

#include <string>

namespace kova::os {

/// The address of the machine's network adapter, "00-15-5D-0A-1B-2C": of those that have one the first that
/// is connected, else the first. Without any it is all zeros.
std::string NetworkAdapterAddress();

}  // namespace kova::os
