#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

class DutyList;
class SummaryForm;
struct SizedDuty;

/// Writes the printed summaries of sized duties as PDF files into one directory.
class SummaryFiles
{
public:
    using MakePdf = std::function<std::string(const SummaryForm& page)>;

    /// `makePdf` gives the file's bytes; `today` is the date in the user's short form. Files that are there are
    /// overwritten only with `overwrite`. Creates the directory; throws std::runtime_error when it cannot.
    SummaryFiles(std::filesystem::path directory, MakePdf makePdf, std::string today, bool overwrite);

    /// Prints the summary of a sized duty of `list` into a file of its own, named by the tag number or, without one, by
    /// the line. Gives what went wrong; "" when nothing did.
    std::string write(DutyList& list, const SizedDuty& duty);

private:
    void save(const SummaryForm& page, const std::filesystem::path& path) const;
    std::filesystem::path nextPath(const std::string& tagNumber, std::size_t line);

    std::filesystem::path directory_;
    MakePdf makePdf_;
    std::string today_;
    bool overwrite_;
    /// By the hash of each name of this run, for there may be many: the last number it was tried with.
    std::unordered_map<std::size_t, std::size_t> taken_;
};
