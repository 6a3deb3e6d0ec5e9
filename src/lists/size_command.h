#pragma once

#include "lists/summary_files.h"
#include "lists/verification.h"

#include <functional>
#include <string>
#include <vector>

/// What `size_valves` takes from the system it runs on.
struct SizeCommandSystem
{
    std::string dataFile; ///< of the valve tables
    SummaryFiles::MakePdf makePdf;
    std::string today; ///< in the user's short form
    std::function<Verification()> verify = nullptr;
};

/// The whole command `size_valves`, `arguments` without the program name: reads a list of duties, writes it back with
/// its sizings; or verifies the program. Gives the exit status: 0 all are sized or agree, 1 some are not or lack their
/// summary, 2 not finished.
int sizeValves(const std::vector<std::string>& arguments, const SizeCommandSystem& system);
