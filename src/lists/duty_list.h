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
//    its header (lists/list_header). The known columns and units are in lists/duty_columns; lists/words finds headers
//    that resemble one of them.
// 3. For each row, `enteredOn` (lists/duty_entries) makes the choices of the setup screen and fills the boxes of the
//    main form, or refuses the row. Then comes one click (engine/sizing_driver.h).
// 4. `answer` writes the row back, filled in with the choices that it left out, and with what the main form shows now
//    (lists/answer_columns).
// 5. With `--summaries`, the page of each sized row becomes a PDF file (lists/summary_files).
//
// All rows are sized on the data file as it is when the list is opened. The screens do the same: "Size a List..." by
// lists/list_run, "Size Copied Rows" by lists/copied_rows.

/// A list of duties as CSV, which is read and sized row by row. Its header has the names on the screens. A missing or
/// empty field takes the default of the screens, and the answer says so. Values of boxes that the main form hides for a
/// row are ignored. A text that is no number refuses its row. An answer can be read as a list: what was filled in is
/// worked out anew, and so are the results.
class DutyList
{
public:
    /// Finds how the list is written, then reads its header. For this, `list` is read twice: it must be seekable. It
    /// must outlive this object. Throws CsvProblem when the list or its header cannot be read, std::runtime_error when
    /// the data file cannot.
    DutyList(std::istream& list, std::string dataFile, const CsvKnown& known = {});
    DutyList(const DutyList&) = delete; // the reader and the store refer to it

    std::size_t rowCount() const { return format_.rows; }

    /// The label of the tables that the rows are sized on.
    const std::optional<TablesLabel>& tables() const { return tables_; }

    /// Whether the data file was replaced or changed since the list was opened.
    bool isDataFileReplaced() const { return store_.isReplaced(); }

    /// The context in which the engine and the report work on a sizing of this list.
    SizingContext context(FreshSizing& sizing) { return sizing.context(numbers_, store_); }

    /// What a row has for a tag number; "" when it has none or does not fit the header.
    std::string tagNumber(const SizedDuty& duty) const;

    /// The next row, sized; nullopt at the end.
    std::optional<SizedDuty> next();

    /// The header of the answer: the columns of the list, of the choices that it lacks, and of the results.
    std::string answerHeader() const;

    /// One row of the answer in the format of the list: the fields of the list as they came, what it left out filled
    /// in, then the captions of the main form.
    std::string answer(const SizedDuty& duty) const;

    /// The same without the columns of the list.
    std::string addedHeader() const;
    std::string added(const SizedDuty& duty) const;

    /// Whether the list has most of the answer's columns.
    bool isAnswer() const { return header_.isAnswer(); }

    /// The columns that a row needs and the header lacks: "Pump Rate", "Pressure"; by API-2000 "Tank Volume".
    std::vector<std::string> lacking() const;

    /// What the user is told at the end, one line each: the defaults that were taken for the rows so far, and the
    /// columns that are the user's own.
    std::vector<std::string> notes() const;

private:
    ListHeader readHeader();
    void expectDataFile();
    void expectNoUnits(const CsvRow& row) const;
    std::string misfit(CsvRow& row) const;
    bool hasOneText(const std::vector<std::string>& fields) const;
    void emptyWhatWasFilledIn(std::vector<std::string>& fields) const;
    void sizeRow(SizedDuty& duty);
    void expectUnits(const SizedDuty& duty) const;
    void noteTaken(const Entries& entries, const FreshSizing& sizing);
    void noteOtherGravity(const Entries& entries, std::size_t line);
    std::vector<std::string> answerNames() const;
    std::vector<std::string> answerFields(const SizedDuty& duty) const;
    std::string line(std::vector<std::string> fields, std::size_t from) const;

    CsvFormat format_;
    NumberText numbers_; ///< before the store, which refers to it as long as it lives
    CapacityStore store_;
    CsvReader reader_;
    ListHeader header_;
    std::optional<CsvRow> first_; ///< the row below the header, until it is sized
    std::size_t filledInAt_;      ///< places of these two columns; `ListHeader::nowhere` when there is none
    std::size_t commentsAt_;
    std::optional<TablesLabel> tables_;
    std::string tablesText_; ///< what the answer says of them
    std::map<std::size_t, std::map<std::string, std::size_t, std::less<>>>
        taken_;                                           ///< defaults by column and text: for how many rows
    std::size_t otherGravities_ = 0;                      ///< rows whose listed gas has another gravity
    std::size_t firstOtherGravity_ = ListHeader::nowhere; ///< the line of the first
};
