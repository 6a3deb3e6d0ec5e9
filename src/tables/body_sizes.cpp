#include "tables/body_sizes.h"

#include "files/csv_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <regex>
#include <string_view>

namespace
{

/// The inches that a nominal diameter in mm stands for.
std::optional<double> inchesOfDn(double diameter)
{
    constexpr std::pair<double, double> diameters[] = {
        {6, 0.125}, {8, 0.25}, {10, 0.375}, {15, 0.5}, {20, 0.75}, {25, 1},  {32, 1.25}, {40, 1.5}, {50, 2},
        {65, 2.5},  {80, 3},   {100, 4},    {125, 5},  {150, 6},   {200, 8}, {250, 10},  {300, 12}};
    for (const auto& [dn, inches] : diameters)
        if (diameter == dn)
            return inches;
    return std::nullopt;
}

/// Takes a number like 1, 1 1/2, 1/2 or 1.5 from the beginning of `text`.
std::optional<double> takeNumber(std::string_view& text)
{
    const std::string copy(text);
    double whole = 0;
    double over = 0;
    double under = 1;
    int taken = 0;
    if (std::sscanf(copy.c_str(), "%lf %lf/%lf%n", &whole, &over, &under, &taken) != 3) {
        whole = 0;
        if (std::sscanf(copy.c_str(), "%lf/%lf%n", &over, &under, &taken) != 2) {
            over = 0;
            if (std::sscanf(copy.c_str(), "%lf%n", &whole, &taken) != 1)
                return std::nullopt;
        }
    }
    text.remove_prefix(static_cast<std::size_t>(taken));
    return whole + over / under;
}

} // namespace

std::optional<double> inchesOf(std::string bodySize)
{
    for (const auto& [written, plain] : {std::pair{"½", " 1/2"}, {"¼", " 1/4"}, {"¾", " 3/4"}, {"-", " "}, {",", "."}})
        for (std::size_t at = 0; (at = bodySize.find(written, at)) != std::string::npos;)
            bodySize.replace(at, std::strlen(written), plain);
    std::string_view text = trimmed(bodySize);
    const bool isDn = text.size() > 2 && isAlike(text.substr(0, 2), "DN");
    if (isDn)
        text.remove_prefix(2);
    const auto number = takeNumber(text);
    constexpr std::string_view marks[] = {"\"", "''", "″", "”", "in", "in.", "inch", "Zoll"};
    const bool isMarked = std::ranges::any_of(marks, [&](std::string_view mark) { return isAlike(text, mark); });
    if (!number || (!isMarked && !trimmed(text).empty()))
        return std::nullopt;
    return isDn || (!isMarked && *number >= 10) ? inchesOfDn(*number) : number;
}

bool isMadeADate(const std::string& bodySize)
{
    // Months by their first letters in the languages of Western Europe. February, April and August also in others: the
    // inches 1/2, 1/4 and 1/8 become these.
    static const std::string month = "(jan|ene|gen|feb|fév|mar|mär|mrz|apr|abr|avr|may|mai|mag|mei|maj|jun|jui|giu|jul|"
                                     "lug|aug|ago|aoû|sep|set|oct|okt|out|ott|nov|dec|dez|déc|dic|"
                                     "fev|lut|úno|şub|Şub|hel|ii|ápr|kwi|dub|nis|huh|iv|sie|srp|ağu|elo|viii)";
    static const std::regex date("\\d{1,4}[. /-]+" + month + ".*|" + month +
                                     "r?[. /-]+\\d{1,4}\\.?|"
                                     "\\d{1,4}[./-]\\d{1,2}[./-]\\d{1,4}|[34]\\d{4}",
                                 std::regex::icase);
    // A long text would overflow the stack, for the matching recurses.
    return bodySize.size() < 40 && std::regex_match(bodySize, date);
}
