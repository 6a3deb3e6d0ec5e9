#pragma once

#include <string>

/// What the program is verified on.
struct VerificationPlace
{
    std::string
        directory;        ///< of the duties with their expected answers, duties.csv, and their tables, verification.mdb
    std::string dataFile; ///< of the site, which the report names
    std::string system;   ///< the operating system
    std::string locale;
    bool decimalComma = false; ///< numbers are entered and shown with a decimal comma
    std::string today;         ///< in the user's short form
};

struct Verification
{
    std::string report;  ///< lines of text, to be printed and signed
    bool agrees = false; ///< all duties agree, and all files could be read
};

/// Sizes every duty of the verification list as "&Select Valve Size" does, and compares what the screen shows with the
/// expected answers. These were worked out without this program.
Verification verifyProgram(const VerificationPlace& place);
