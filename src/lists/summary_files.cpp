#include "lists/summary_files.h"

#include "files/csv_reader.h"
#include "files/replacement_file.h"
#include "files/system.h"
#include "lists/duty_list.h"
#include "report/file_name.h"
#include "report/print_command.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace
{

constexpr const char* ending = ".pdf";

/// A hash of a name, the same for upper and lower case: some systems take such names for the same.
std::size_t hashOf(std::string name)
{
    std::ranges::transform(name, name.begin(), lowerCase);
    return std::hash<std::string>()(name);
}

/// A hash of what a page says, as the last line of its file. Readers of PDF ignore this line. The date of the page is
/// left out, so that a run that goes on the next day finds its summaries.
std::string markOf(const SummaryForm& page, const std::optional<TablesLabel>& tables)
{
    std::uint64_t hash = 14695981039346656037U; // FNV-1a of 64 bits
    const auto add = [&](std::string_view text) {
        for (const char c : std::string(text) + '\n')
            hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    };
    add(tables ? describe(*tables) : "");
    for (const SummaryForm::Shown& shown : page.rows())
        if (&shown != &page.shown("lblReportDate"))
            add(shown.visible ? shown.text : "");
    std::ostringstream mark;
    mark << "%says " << std::hex << hash << '\n';
    return mark.str();
}

bool endsIn(const fs::path& path, const std::string& mark)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(mark.size()), std::ios::end);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == mark;
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

/// The first name for a tag number that this run has not used. Upper and lower case are alike.
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

void SummaryFiles::save(const SummaryForm& page, const std::optional<TablesLabel>& tables, const fs::path& path)
{
    const std::string mark = markOf(page, tables);
    std::error_code unknown; // opening the file says why
    const fs::file_status there = fs::symlink_status(path, unknown);
    if (fs::is_regular_file(there) && !overwrite_ && endsIn(path, mark)) {
        ++left_;
        return;
    }
    if (fs::exists(there) && !overwrite_)
        throw std::runtime_error("it exists already");
    if (fs::exists(there) && !fs::is_regular_file(there))
        throw std::runtime_error("not a regular file");
    ReplacementFile file(path, ordinaryMode());
    file.write(makePdf_(page, tables) + mark);
    if (overwrite_)
        file.putInPlace();
    else
        file.putInFreePlace(); // another run may have written one meanwhile
}

std::string SummaryFiles::write(DutyList& list, const SizedDuty& duty)
{
    // A row that is not sized uses up its name, too: so the names are the same in every run.
    const fs::path path = nextPath(list.tagNumber(duty), duty.row.line);
    if (duty.status != SizedDuty::Status::sized) {
        std::error_code unknown;
        if (!fs::exists(path, unknown))
            return "";
        ++outdated_;
        return textOf(path) + " is there and not of this run";
    }
    FreshSizing printed = *duty.sizing; // a copy: a failure clears the screen
    printed.messages.texts.clear();
    try {
        if (const auto page = summaryOfSizing(list.context(printed), today_))
            save(*page, list.tables(), path);
        if (printed.messages.texts.empty()) {
            ++inPlace_;
            return "";
        }
        ++notWritten_;
        return printed.messages.texts.front();
    } catch (const std::exception& reason) {
        ++notWritten_;
        return "the summary " + textOf(path) + " is not written: " + reason.what();
    }
}

std::vector<std::string> SummaryFiles::faults() const
{
    std::vector<std::string> lines;
    if (notWritten_ > 0)
        lines.push_back(std::to_string(notWritten_) + " summaries are not written, see Messages");
    if (outdated_ > 0)
        lines.push_back(std::to_string(outdated_) +
                        " summaries of an earlier run stay beside rows that are not sized now, see Messages");
    return lines;
}
