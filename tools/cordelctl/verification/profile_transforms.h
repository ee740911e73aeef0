// Whether colours can be turned with a profile in every direction in which printers use it.

#pragma once

#include <string>
#include <string_view>

/// The first direction in which it fails; empty when it fails in none. The profile's tags have been found to be whole.
std::string FailingTransform(std::string_view file);
