#include "summary_files.h"

#include "csv_reader.h"
#include "fresh_sizing.h"
#include "replacement_file.h"
#include "report/file_name.h"
#include "report/print_command.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

SummaryFiles::SummaryFiles(fs::path directory, MakePdf makePdf, std::string today, bool overwrite)
    : directory_(std::move(directory)), makePdf_(std::move(makePdf)), today_(std::move(today)), overwrite_(overwrite)
{
    fs::create_directories(directory_);
}

/// The first name for a tag number that this run has not taken, upper and lower case alike.
fs::path SummaryFiles::nextPath(const std::string& tagNumber, std::size_t line)
{
    std::string name = fileNameOf(tagNumber);
    if (name.empty())
        name = "line " + std::to_string(line);
    for (std::size_t number = 1;; ++number) {
        const std::string numbered = number == 1 ? name : name + " (" + std::to_string(number) + ')';
        std::string folded = numbered;
        std::ranges::transform(folded, folded.begin(), lowerCase);
        if (taken_.insert(std::hash<std::string>()(folded)).second)
            return directory_ / (numbered + ".pdf");
    }
}

void SummaryFiles::save(const SummaryForm& page, const fs::path& path) const
{
    const fs::file_status there = fs::symlink_status(path);
    if (fs::exists(there) && !overwrite_)
        throw std::runtime_error("it exists already");
    if (fs::exists(there) && !fs::is_regular_file(there))
        throw std::runtime_error("not a regular file");
    ReplacementFile file(path);
    file.write(makePdf_(page));
    file.putInPlace();
}

std::string SummaryFiles::write(FreshSizing& sizing, std::size_t line, const NumberText& numbers)
{
    const fs::path path = nextPath(sizing.state.CustTagNo, line);
    try {
        RecordedMessages messages;
        if (const auto page = summaryOfSizing({sizing.state, sizing.screen, messages, numbers, today_}))
            save(*page, path);
        return messages.texts.empty() ? "" : messages.texts.front();
    } catch (const std::exception& reason) {
        return "the summary " + path.string() + " is not written: " + reason.what();
    }
}
