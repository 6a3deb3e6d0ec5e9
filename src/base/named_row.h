#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

/// The row of a layout table that has a certain `name`, found when compiling: a name that the table lacks does not
/// compile.
template <const auto& table>
struct NamedRow
{
    std::size_t index;

    consteval NamedRow(const char* name) : index(find(name)) {}

private:
    static consteval std::size_t find(std::string_view name)
    {
        for (std::size_t row = 0; row < std::size(table); ++row)
            if (name == table[row].name)
                return row;
        throw "no row of that name";
    }
};
