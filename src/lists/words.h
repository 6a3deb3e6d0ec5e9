#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// "A", "A or B", "A, B or C".
std::string listed(const std::vector<std::string>& names, const char* lastOne = " or ");

/// How many slips make `one` of `other`: a letter more, less or another one, or two neighbours exchanged.
std::size_t slipsBetween(std::string_view one, std::string_view other);

/// The column of `listColumns` that a header resembles, which is not its name: up to two slips, other signs or case, a
/// word more, words cut short, or the one word that says it. nullopt when it resembles none.
std::optional<std::size_t> resembledColumn(std::string_view header);
