#pragma once

#include <string>
#include <string_view>

/// A tag number as a file name without its ending: letters, digits and what is harmless in a name on every system. ""
/// where nothing of it is left.
std::string fileNameOf(std::string_view tagNumber);
