#include "lists/words.h"

#include "files/csv_reader.h"
#include "lists/duty_columns.h"

#include <algorithm>
#include <array>

namespace
{

constexpr std::size_t longestHeader = 80; // bytes; a longer header is no name
constexpr std::size_t unlike = 9;         // a distance: the names do not resemble each other

/// Other usual names of the columns. Most of these columns have a default: if such a column was carried through, the
/// valve would be sized with the default. A single word counts only alone: "Pump Model" is not the model of the valve.
constexpr struct
{
    std::size_t column;
    std::array<const char*, 11> names;
} otherNames[] = {
    {columnOf(&SizingState::CustTagNo), {"Tag", "Tag No"}},
    {columnOf(Choice::valveModel), {"Model", "Model No", "Model Number", "Series", "Valve Series"}},
    {columnOf(Choice::valveType), {"Type", "Pad Depad", "Pad or Depad"}},
    {columnOf(Choice::sizingMethod), {"Method", "Calculation Method", "Sizing Standard"}},
    {columnOf(Choice::unitSystem),
     {"Units", "UoM", "Unit System", "System of Units", "Units of Measurement", "Measurement Units", "Units of Flow",
      "Units of Volume", "Volume Units", "Units of Temperature", "Temperature Units"}},
    {columnOf(Choice::pressUnits), {"Pressure Units"}},
    {columnOf(Box::txtPumpRate), {"Rate", "Flow", "Flow Rate", "Pump Flow", "Pump Capacity", "Fill Rate"}},
    {columnOf(Box::txtPressure), {"Supply Pressure of Blanketing Gas", "Blanketing Gas Pressure"}},
    {columnOf(Box::txtTankVolume), {"Volume", "Capacity", "Tank Capacity"}},
    {columnOf(Box::cmbBlanketingGas),
     {"Blanketing Gas Name", "Vented Gas Name", "Blanketing Medium", "Medium", "Fluid"}},
    {columnOf(Box::txtSpecGrav),
     {"Gravity", "SpGr", "Density", "Gas Density", "Relative Density", "Gas Relative Density"}},
    {columnOf(Box::txtBoilingPoint), {"Boiling", "Boiling Pt", "Boiling Temperature"}},
    {columnOf(Box::txtFlashPoint), {"Flash", "Flash Pt", "Flash Temperature"}},
    {columnOf(Box::txtStoredMaterial), {"Material to be Stored"}},
    {columnOf(&SizingState::Representative), {"Representative"}},
};

/// The words of a name in small letters, without "of".
std::vector<std::string> wordsOf(std::string_view name)
{
    std::vector<std::string> words(1);
    for (const char c : name) {
        const char small = lowerCase(c);
        const bool isLetter = (small >= 'a' && small <= 'z') || (c >= '0' && c <= '9') || (c & 0x80) != 0;
        if (isLetter)
            words.back() += small;
        else if (!words.back().empty())
            words.emplace_back();
    }
    std::erase_if(words, [](const std::string& word) { return word.empty() || word == "of"; });
    return words;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += word;
    return text;
}

/// How many slips make `one` of `other`: a letter more, less or another one, or two neighbours exchanged.
std::size_t slipsBetween(std::string_view one, std::string_view other)
{
    // The distances between all beginnings of both texts would be a table. Its last three rows are enough.
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last;
    for (std::size_t i = 0; i <= one.size(); ++i) {
        std::vector<std::size_t> row(other.size() + 1, i);
        for (std::size_t j = 1; j <= other.size(); ++j) {
            if (i == 0) {
                row[j] = j;
                continue;
            }
            const std::size_t changed = last[j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
            row[j] = std::min({changed, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last.back();
}

/// Whether every word is the beginning of the word at the same place, as in "Spec. Grav.".
bool areCutShort(const std::vector<std::string>& words, const std::vector<std::string>& name)
{
    return std::ranges::equal(words, name, [](const std::string& word, const std::string& other) {
        return word.size() >= 2 && other.starts_with(word);
    });
}

/// Whether a header is the initials of a name of two or more words, as "S.G." and "FP" are.
bool isInitials(const std::string& header, const std::vector<std::string>& name)
{
    return name.size() > 1 && std::ranges::equal(header, name, {}, {}, [](const std::string& word) { return word[0]; });
}

/// How far a header is from a column's name; the nearest column is told. In this order: the number of slips, words cut
/// short or initials, additional words, an additional word and a slip. `unlike` when it is none of these.
std::size_t distance(const std::vector<std::string>& words, const ListColumn& column)
{
    const std::vector<std::string> name = wordsOf(column.name);
    const std::string text = joined(name);
    const std::size_t slips = slipsBetween(joined(words), text);
    if (slips <= (text.size() > 3 ? 2 : 1))
        return slips;
    if (areCutShort(words, name) || (column.isNumber && isInitials(joined(words), name)))
        return 3;
    const bool hasAll = std::ranges::all_of(
        name, [&](const std::string& word) { return std::ranges::find(words, word) != words.end(); });
    if (hasAll && (name.size() > 1 || words.size() == 2)) // "Gas" is part of many other names
        return 5 - name.size();
    for (std::size_t more = 0; words.size() > 1 && more < words.size(); ++more) {
        std::vector<std::string> others = words;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(more));
        if (text.size() > 3 && slipsBetween(joined(others), text) <= 1)
            return 6;
    }
    return unlike;
}

/// The same for one of `otherNames`.
std::size_t distance(const std::vector<std::string>& words, std::string_view otherName)
{
    const std::vector<std::string> name = wordsOf(otherName);
    const std::string text = joined(name);
    const std::size_t slips = slipsBetween(joined(words), text);
    const bool isOther =
        slips == 0 || (slips <= 2 && text.size() >= 10) || (name.size() > 1 && areCutShort(words, name));
    return isOther ? std::min<std::size_t>(slips, 3) : unlike;
}

} // namespace

std::string listed(const std::vector<std::string>& names, const char* lastOne)
{
    std::string text;
    for (std::size_t at = 0; at < names.size(); ++at)
        text += (at == 0 ? "" : at + 1 == names.size() ? lastOne : ", ") + names[at];
    return text;
}

std::string sentences(const std::vector<std::string>& notes)
{
    std::string text;
    for (const std::string& note : notes) {
        text += '\n' + note + '.';
        char& first = text[text.size() - note.size() - 1];
        first = upperCase(first);
    }
    return text;
}

std::optional<std::size_t> resembledColumn(std::string_view header)
{
    if (header.size() > longestHeader)
        return std::nullopt;
    const std::vector<std::string> words = wordsOf(header);
    std::optional<std::size_t> nearest;
    std::size_t least = unlike;
    const auto compare = [&](std::size_t column, std::size_t far) {
        if (far < least) {
            least = far;
            nearest = column;
        }
    };
    for (std::size_t column = 0; !words.empty() && column < std::size(listColumns); ++column)
        compare(column, distance(words, listColumns[column]));
    for (const auto& [column, names] : otherNames)
        for (const char* const name : names)
            compare(column, name == nullptr ? unlike : distance(words, name));
    const std::size_t apart = header.find_first_of("[(,/"); // a unit, known or not, as in "S.G. (air=1)"
    return nearest || apart == 0 || apart == std::string_view::npos ? nearest
                                                                    : resembledColumn(header.substr(0, apart));
}
