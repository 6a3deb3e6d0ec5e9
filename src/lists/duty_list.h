#pragma once

#include "base/number_text.h"
#include "capacity/capacity_store.h"
#include "capacity/tables_label.h"
#include "lists/list_header.h"
#include "lists/sized_duty.h"

#include <cstddef>
#include <functional>
#include <istream>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// How a list of duties becomes its answer. Start reading here.
//
// 1. `size_valves` (lists/size_valves.cpp) hands its arguments to `sizeValves` (lists/size_command), which opens the
//    list and the file of the results (lists/results).
// 2. `DutyList` (below) finds how the list is written (files/csv_reader: separator, decimal mark, line ends) and reads
//    its header (lists/list_header) by the columns and units that there are (lists/duty_columns), and by what looks
//    like one of them (lists/words).
// 3. For each row, `enteredOn` (lists/duty_entries) makes the choices of the setup screen and fills the boxes of the
//    main form, or refuses the row. Then comes one click (engine/sizing_driver.h).
// 4. `answer` writes the row back, filled in with the choices that it left out, and with what the main form shows now
//    (lists/answer_columns).
// 5. With `--summaries`, the page of each sized row becomes a PDF file (lists/summary_files).
//
// All rows are sized on the data file as it is when the list is opened. The screens do the same: "Size a List..." by
// lists/list_run, "Size Copied Rows" by lists/copied_rows.

/// A list of duties as CSV, headed by the names on the screens, read and sized row by row. Missing columns and fields
/// and empty ones take the defaults of the screens, and the answer says which; values of boxes that the main form hides
/// for a row are passed over. A number that cannot be one refuses its row. An answer is a list again: what it filled in
/// is worked out anew, and so are its results.
class DutyList
{
public:
    /// Reads how the list is written and its header, twice over `list`, which can be rewound and must outlive this.
    /// Throws CsvProblem when the list or its header cannot be read, std::runtime_error when the data file cannot.
    DutyList(std::istream& list, std::string dataFile, const CsvKnown& known = {});
    DutyList(const DutyList&) = delete; // the reader and the store refer to it

    std::size_t rowCount() const { return format_.rows; }

    /// The label of the tables that the rows are sized on.
    const std::optional<TablesLabel>& tables() const { return tables_; }

    /// Whether the data file is another one by now.
    bool isDataFileReplaced() const { return store_.isReplaced(); }

    /// What the routines of the engine and the report reach of a sizing of this list.
    SizingContext context(FreshSizing& sizing) { return sizing.context(numbers_, store_); }

    /// What a row has for a tag number; "" when it has none or does not fit the header.
    std::string tagNumber(const SizedDuty& duty) const;

    /// The next row, sized; nullopt at the end.
    std::optional<SizedDuty> next();

    /// The header of the answer: that of the list, the choices that it lacks, what a sizing gives.
    std::string answerHeader() const;

    /// One row of the answer in the format of the list: its fields as they came, those it left out filled in, then the
    /// captions of the main form.
    std::string answer(const SizedDuty& duty) const;

    /// The same without the columns of the list.
    std::string addedHeader() const;
    std::string added(const SizedDuty& duty) const;

    /// Whether the list has most of the answer's columns.
    bool isAnswer() const { return header_.isAnswer(); }

    /// The columns that a row needs and the header lacks: "Pump Rate", "Pressure"; by API-2000 "Tank Volume".
    std::vector<std::string> lacking() const;

    /// What the user is told at the end, a line each: what was taken for granted in the rows so far, and which columns
    /// are the user's own.
    std::vector<std::string> notes() const;

private:
    ListHeader readHeader();
    void expectDataFile();
    std::string misfit(CsvRow& row) const;
    bool hasOneText(const std::vector<std::string>& fields) const;
    void emptyWhatWasFilledIn(std::vector<std::string>& fields) const;
    void sizeRow(SizedDuty& duty);
    void expectUnits(const SizedDuty& duty) const;
    void noteTaken(const Entries& entries, const FreshSizing& sizing);
    std::vector<std::string> answerNames() const;
    std::vector<std::string> answerFields(const SizedDuty& duty) const;
    std::string line(std::vector<std::string> fields, std::size_t from) const;

    CsvFormat format_;
    NumberText numbers_; ///< before the store, which refers to it as long as it lives
    CapacityStore store_;
    CsvReader reader_;
    ListHeader header_;
    std::size_t filledInAt_; ///< of the columns with these names; `ListHeader::nowhere` without them
    std::size_t commentsAt_;
    std::optional<TablesLabel> tables_;
    std::string tablesText_; ///< what the answer says of them
    std::map<std::size_t, std::map<std::string, std::size_t, std::less<>>>
        taken_; ///< by column and text: in how many rows
};
