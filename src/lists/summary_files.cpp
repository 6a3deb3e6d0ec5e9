#include "lists/summary_files.h"

#include "files/csv_reader.h"
#include "files/replacement_file.h"
#include "files/system.h"
#include "lists/duty_list.h"
#include "report/file_name.h"
#include "report/print_command.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace
{

constexpr const char* ending = ".pdf";

/// A name by which those are found that differ in upper and lower case alone, which some systems take for one.
std::size_t hashOf(std::string name)
{
    std::ranges::transform(name, name.begin(), lowerCase);
    return std::hash<std::string>()(name);
}

} // namespace

SummaryFiles::SummaryFiles(fs::path directory, MakePdf makePdf, std::string today, bool overwrite)
    : directory_(std::move(directory)), makePdf_(std::move(makePdf)), today_(std::move(today)), overwrite_(overwrite)
{
    std::error_code failure;
    fs::create_directories(directory_, failure);
    if (failure)
        throw std::runtime_error(textOf(directory_) + ": " + failure.message());
}

/// The first name for a tag number that this run has not taken, upper and lower case alike.
fs::path SummaryFiles::nextPath(const std::string& tagNumber, std::size_t line)
{
    std::string name = fileNameOf(tagNumber);
    if (name.empty())
        name = "line " + std::to_string(line);
    const auto [place, isFree] = taken_.try_emplace(hashOf(name), 1);
    if (isFree)
        return directory_ / pathOf(name + ending);
    std::size_t& number = place->second; // stays where it is when names are added
    for (;;) {
        const std::string numbered = name + " (" + std::to_string(++number) + ')';
        if (taken_.try_emplace(hashOf(numbered), 1).second)
            return directory_ / pathOf(numbered + ending);
    }
}

void SummaryFiles::save(const SummaryForm& page, const fs::path& path) const
{
    std::error_code unknown; // opening the file says why
    const fs::file_status there = fs::symlink_status(path, unknown);
    if (fs::exists(there) && !overwrite_)
        throw std::runtime_error("it exists already");
    if (fs::exists(there) && !fs::is_regular_file(there))
        throw std::runtime_error("not a regular file");
    ReplacementFile file(path, ordinaryMode());
    file.write(makePdf_(page));
    if (overwrite_)
        file.putInPlace();
    else
        file.putInFreePlace(); // another run may have written one meanwhile
}

std::string SummaryFiles::write(DutyList& list, const SizedDuty& duty)
{
    FreshSizing printed = *duty.sizing; // a page that fails clears the screen
    printed.messages.texts.clear();
    const fs::path path = nextPath(printed.state.CustTagNo, duty.row.line);
    try {
        if (const auto page = summaryOfSizing(list.context(printed), today_))
            save(*page, path);
        return printed.messages.texts.empty() ? "" : printed.messages.texts.front();
    } catch (const std::exception& reason) {
        return "the summary " + textOf(path) + " is not written: " + reason.what();
    }
}
