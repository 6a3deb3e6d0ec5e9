#pragma once

#include <string>

/// What came of the rows of a list that were copied in a spreadsheet.
struct CopiedRows
{
    std::string added;   ///< the columns to paste beside the list, header and one line a row; "" when nothing was sized
    std::string outcome; ///< one or more sentences for the user
};

/// Sizes the rows of `copied`, UTF-8 as spreadsheets put them on the clipboard: a header, then a line a row, cells
/// separated by tabs. Empty rows stay empty, so that the new columns fit beside the list. Numbers are read and written
/// with the decimal mark of the rows, or with `decimalMark` when no number has one. Never throws.
CopiedRows sizeCopiedRows(const std::string& copied, const std::string& dataFile, char decimalMark);
