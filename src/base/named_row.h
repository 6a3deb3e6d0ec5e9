#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

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

/// The rows of a layout table that another table names, in its order; `name` gives the name in each of its elements.
template <typename Row, const auto& names, auto name = std::identity()>
consteval auto rowsNamed()
{
    return []<std::size_t... at>(std::index_sequence<at...>)
    {
        return std::array{Row(std::invoke(name, names[at]))...};
    }
    (std::make_index_sequence<std::size(names)>());
}
