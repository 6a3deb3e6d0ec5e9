#include "summary_files.h"

#include "fresh_sizing.h"
#include "replacement_file.h"
#include "report/print_command.h"
#include "report/printers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace
{

constexpr std::size_t longestName = 100; // bytes: room for a number and the ending on every system

/// A printer whose paper is a file. Keeps why a page was not written: the print command has one text for all failures.
struct FilePrinter : Printers
{
    const SummaryFiles::MakePdf& makePdf;
    const fs::path& path;
    bool overwrite;
    std::string failure;

    FilePrinter(const SummaryFiles::MakePdf& make, const fs::path& file, bool replaces)
        : makePdf(make), path(file), overwrite(replaces)
    {
    }

    int count() const override { return 1; }

    void print(const SummaryForm& page) override
    {
        try {
            if (fs::exists(fs::symlink_status(path)) && (!overwrite || !fs::is_regular_file(fs::symlink_status(path))))
                throw std::runtime_error("it exists already");
            ReplacementFile file(path);
            file.write(makePdf(page));
            file.putInPlace();
        } catch (const std::exception& reason) {
            failure = "the summary " + path.string() + " is not written: " + reason.what();
        }
    }
};

/// Names of devices on Windows, whatever ending they have.
bool isDevice(std::string name)
{
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
    name = name.substr(0, name.find('.'));
    const bool isNumbered = name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT"));
    return name == "CON" || name == "PRN" || name == "AUX" || name == "NUL" || isNumbered;
}

} // namespace

std::string fileNameOf(std::string_view tagNumber)
{
    std::string name;
    for (const char c : tagNumber.substr(0, longestName)) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isHarmless =
            byte >= 0x80 || std::isalnum(byte) || std::string_view(" -_.+()#").find(c) != std::string_view::npos;
        name += isHarmless ? c : '_';
    }
    // A character of several bytes that the length has cut goes whole.
    if (tagNumber.size() > longestName && (static_cast<unsigned char>(tagNumber[longestName]) & 0xC0) == 0x80) {
        while (!name.empty() && (static_cast<unsigned char>(name.back()) & 0xC0) == 0x80)
            name.pop_back();
        if (!name.empty())
            name.pop_back();
    }
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) // Windows drops these
        name.pop_back();
    if (name.starts_with('.') || name.starts_with('-') || name.starts_with(' ') || isDevice(name))
        name.insert(0, "_");
    return name;
}

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
        std::ranges::transform(folded, folded.begin(), [](unsigned char c) { return std::tolower(c); });
        if (taken_.insert(std::hash<std::string>()(folded)).second)
            return directory_ / (numbered + ".pdf");
    }
}

std::string SummaryFiles::write(FreshSizing& sizing, std::size_t line, const NumberText& numbers)
{
    const fs::path path = nextPath(sizing.state.CustTagNo, line);
    FilePrinter printer(makePdf_, path, overwrite_);
    RecordedMessages messages;
    cmdPrint_Click({sizing.state, sizing.screen, messages, numbers, printer, today_});
    if (!printer.failure.empty())
        return printer.failure;
    return messages.texts.empty() ? "" : messages.texts.front();
}
