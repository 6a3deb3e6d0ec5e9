#pragma once

#include "files/replacement_file.h"
#include "lists/duty_list.h"
#include "lists/summary_files.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

/// The files that a list is sized from and into.
struct ListFiles
{
    std::filesystem::path list;
    std::filesystem::path answer;
    bool replacesAnswer = false;                    ///< the user has agreed to it
    std::optional<std::filesystem::path> summaries; ///< a directory; files that are there stay
};

/// Sizes a list row by row into files, as `size_valves` does. The answer is put in place after the last row; a run that
/// is given up leaves none. Each summary is in place at once. Every failure throws std::runtime_error.
class ListRun
{
public:
    ListRun(const ListFiles& files, const std::string& dataFile, const SummaryFiles::MakePdf& makePdf,
            const std::string& today);
    ~ListRun();
    ListRun(const ListRun&) = delete;

    /// Sizes the next row; false when none was left and the answer is in place.
    bool next();

    std::size_t rowCount() const { return list_->rowCount(); }
    std::size_t done() const { return counts_[0] + counts_[1] + counts_[2]; }
    std::size_t notSized() const { return counts_[1] + counts_[2]; }

    /// What it came to, in sentences.
    std::string outcome() const;

    /// The same for a run that is given up now.
    std::string outcomeOfCancel() const;

private:
    const ListFiles files_;
    const bool makesDirectory_; ///< of the summaries
    std::ifstream in_;
    std::optional<DutyList> list_;
    std::optional<ReplacementFile> answer_;
    std::optional<SummaryFiles> summaries_;
    std::array<std::size_t, 3> counts_ = {}; ///< of rows, by status
};
