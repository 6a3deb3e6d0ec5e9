#pragma once

#include "base/number_text.h"
#include "capacity/capacity_store.h"
#include "capacity/tables_label.h"
#include "engine/fresh_sizing.h"
#include "files/csv_reader.h"

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <vector>

// How a list of duties becomes its answer. Start reading here.
//
// 1. `size_valves` (lists/size_valves.cpp) hands its arguments to `sizeValves` (lists/size_command), which opens the
//    list and the file of the results (lists/results).
// 2. `DutyList` (below) finds how the list is written (files/csv_reader: separator, decimal mark, line ends) and reads
//    its header by the columns that there are (lists/duty_columns).
// 3. For each row, `enteredOn` (lists/duty_entries) makes the choices of the setup screen and fills the boxes of the
//    main form, or refuses the row. Then comes one click (engine/sizing_driver.h).
// 4. `answer` writes the row back with what the main form shows now.
// 5. With `--summaries`, the page of each sized row becomes a PDF file (lists/summary_files).
//
// All rows are sized on the data file as it is when the list is opened.

/// A row of the list, sized as one press of "&Select Valve Size" sizes it.
struct SizedDuty
{
    enum class Status
    {
        sized,
        refused, ///< by a message in the comments, or because the row cannot be entered on the screens
        failed,  ///< with a message box, or because the data file cannot be read
    };

    CsvRow row;
    std::optional<FreshSizing> sizing; ///< nullopt: the row cannot be entered
    Status status = Status::refused;
    std::string reason; ///< why it cannot be entered
};

/// A list of duties as CSV, headed by the names on the screens, read and sized row by row. Missing columns and fields
/// and empty ones take the defaults of the screens; values of boxes that the main form hides for a row are passed over.
/// A number that cannot be one refuses its row. All rows are sized on the data file as it is when the list is opened.
class DutyList
{
public:
    /// Reads how the list is written and its header, twice over `list`, which can be rewound and must outlive this.
    /// Throws CsvProblem when the list or its header cannot be read, std::runtime_error when the data file cannot.
    DutyList(std::istream& list, std::string dataFile);
    DutyList(const DutyList&) = delete; // the reader and the store refer to it

    std::size_t rowCount() const { return format_.rows; }

    /// The label of the tables that the rows are sized on.
    std::optional<TablesLabel> tables() { return tablesLabel(store_); }

    /// Whether the data file is another one by now.
    bool isDataFileReplaced() const { return store_.isReplaced(); }

    /// What the routines of the engine and the report reach of a sizing of this list.
    SizingContext context(FreshSizing& sizing) { return sizing.context(numbers_, store_); }

    /// The next row, sized; nullopt at the end.
    std::optional<SizedDuty> next();

    /// The header of the answer: that of the list, then what a sizing gives.
    std::string answerHeader() const;

    /// One row of the answer in the format of the list: its fields as they came, then the captions of the main form.
    std::string answer(const SizedDuty& duty) const;

private:
    void readHeader();
    void expectDataFile();
    void sizeRow(SizedDuty& duty);
    std::string csvLine(const std::vector<std::string>& fields) const;

    CsvFormat format_;
    NumberText numbers_; ///< before the store, which refers to it as long as it lives
    CapacityStore store_;
    CsvReader reader_;
    std::vector<std::string> header_;
    std::vector<std::size_t> order_; ///< the number of the column that each field belongs to
};
