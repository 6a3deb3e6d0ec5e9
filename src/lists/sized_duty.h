#pragma once

#include "engine/fresh_sizing.h"
#include "files/csv_reader.h"

#include <optional>
#include <string>

/// A row of the list, sized as one press of "&Select Valve Size" sizes it.
struct SizedDuty
{
    enum class Status
    {
        sized,
        refused, ///< by a message in the comments, or because the row cannot be entered on the screens
        failed,  ///< with a message box, or because the data file cannot be read
    };

    CsvRow row;                        ///< as the list has it; what an earlier answer filled in is empty again
    std::optional<FreshSizing> sizing; ///< nullopt: the row cannot be entered
    Status status = Status::refused;
    std::string reason;  ///< why it cannot be entered
    std::string summary; ///< what is to be told of its summary
};
