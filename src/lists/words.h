#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// "A", "A or B", "A, B or C".
std::string listed(const std::vector<std::string>& names, const char* lastOne = " or ");

/// Notes as sentences, each on a new line: "\nNo column Gas: Air taken for 2 rows."
std::string sentences(const std::vector<std::string>& notes);

/// The column of `listColumns` that a header resembles without having its name: up to two slips, other signs or case,
/// an additional word, words cut short, initials, or another usual name. nullopt when it resembles none.
std::optional<std::size_t> resembledColumn(std::string_view header);
