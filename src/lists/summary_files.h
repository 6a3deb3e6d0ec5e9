#pragma once

#include "capacity/tables_label.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class DutyList;
class SummaryForm;
struct SizedDuty;

/// Writes the printed summaries of sized duties as PDF files into one directory.
class SummaryFiles
{
public:
    /// Gives the bytes of a PDF, which name the tables that the page was sized on.
    using MakePdf = std::function<std::string(const SummaryForm& page, const std::optional<TablesLabel>& tables)>;

    /// `today` is the date in the user's short form. Files that are there are overwritten only with `overwrite`.
    /// Creates the directory; throws std::runtime_error when it cannot.
    SummaryFiles(std::filesystem::path directory, MakePdf makePdf, std::string today, bool overwrite);

    /// Prints the summary of a sized duty of `list` into a file of its own, named by the tag number or, without one, by
    /// the line. A summary of an earlier run that says the same is left as it is. For a duty that is not sized, nothing
    /// is written or deleted. Gives what the user must know; "" when there is nothing.
    std::string write(DutyList& list, const SizedDuty& duty);

    /// How many were left because they are there and say the same.
    std::size_t left() const { return left_; }

    /// How many sized duties have theirs, written now or left, and how many do not.
    std::size_t inPlace() const { return inPlace_; }
    std::size_t notWritten() const { return notWritten_; }

    /// What the user is told at the end, a line each: how many are not written, and how many files are there for duties
    /// that are not sized.
    std::vector<std::string> faults() const;

private:
    void save(const SummaryForm& page, const std::optional<TablesLabel>& tables, const std::filesystem::path& path);
    std::filesystem::path nextPath(const std::string& tagNumber, std::size_t line);

    std::filesystem::path directory_;
    MakePdf makePdf_;
    std::string today_;
    bool overwrite_;
    std::size_t left_ = 0;
    std::size_t inPlace_ = 0;
    std::size_t notWritten_ = 0;
    std::size_t outdated_ = 0;
    /// By the hash of each name of this run: the last number behind this name. Hashes need less memory than names.
    std::unordered_map<std::size_t, std::size_t> taken_;
};
