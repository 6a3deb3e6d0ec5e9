#pragma once

#include "files/csv_reader.h"
#include "lists/duty_columns.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// What the header of a list says, and the columns of its answer.
struct ListHeader
{
    enum class Kind
    {
        own,    ///< of the user's own: carried through
        duty,   ///< one of `listColumns`
        answer, ///< one of `answerColumns()`: made anew
    };
    struct Column
    {
        std::string name;
        Kind kind;
        std::size_t number; ///< in the table of its kind
    };

    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    std::vector<Column> columns;                              ///< of the answer: those of the list first
    std::size_t given = 0;                                    ///< how many of them the list has
    std::array<std::size_t, std::size(listColumns)> places{}; ///< of each duty column in `columns`, or `nowhere`
    std::size_t firstGiven = 0;                               ///< the first of `columns` that is not made anew

    HeaderUnit unit;        ///< what the columns of the list say
    std::string systemBy;   ///< the header that says the unit system
    std::string pressureBy; ///< the header that says the unit of pressure

    /// Throws a CsvProblem that names all faults: columns that resemble one of a duty, columns that stand twice,
    /// unknown units, units of two systems, or no column of a duty.
    explicit ListHeader(const CsvRow& row);

    /// Whether the list itself has the column.
    bool has(std::size_t column) const { return places[column] < given; }

    /// Whether the list is an answer, with columns that are made anew.
    bool isAnswer() const;

    /// Where a column of the answer is; `nowhere` when the list has none.
    std::size_t placeOfAnswer(std::string_view name) const;

private:
    void addDuty(const std::string& header, const NamedColumn& named, std::vector<std::string>& faults);
    void addUnit(const std::string& header, const HeaderUnit& found, std::vector<std::string>& faults);
    void addWhatIsLacking();

    std::vector<Box> boxesWithUnit_;
};
