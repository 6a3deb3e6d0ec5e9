#include "lists/list_run.h"

#include "files/system.h"
#include "lists/words.h"

#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace
{

/// Runs `action`. The message of a failure begins with the name of `file`.
template <typename Action>
auto about(const fs::path& file, const Action& action)
{
    try {
        return action();
    } catch (const std::runtime_error& failure) {
        throw std::runtime_error(textOf(file) + ": " + failure.what());
    }
}

/// The same while the list is read: the message names the line, too.
template <typename Action>
auto reading(const fs::path& list, const Action& action)
{
    try {
        return action();
    } catch (const CsvProblem& problem) {
        throw std::runtime_error(textOf(list) + ':' + std::to_string(problem.line) + ": " + problem.what());
    }
}

} // namespace

ListRun::ListRun(const ListFiles& files, const std::string& dataFile, const SummaryFiles::MakePdf& makePdf,
                 const std::string& today)
    : files_(files), makesDirectory_(files.summaries && !fs::exists(*files.summaries)),
      in_(files.list, std::ios::in | std::ios::binary)
{
    if (const std::string reason = whyUnreadable(files_.list); !reason.empty())
        throw std::runtime_error(textOf(files_.list) + ": " + reason);
    std::error_code isNew;
    if (fs::equivalent(files_.list, files_.answer, isNew))
        throw std::runtime_error(textOf(files_.answer) + ": this is the list; its answer needs a name of its own");
    reading(files_.list, [&] { list_.emplace(in_, dataFile); });
    if (!files_.replacesAnswer && fs::exists(files_.answer, isNew))
        throw std::runtime_error(textOf(files_.answer) + ": it exists already");
    about(files_.answer, [&] {
        answer_.emplace(files_.answer, ordinaryMode());
        answer_->write(list_->answerHeader());
    });
    if (files_.summaries)
        summaries_.emplace(*files_.summaries, makePdf, today, false);
}

ListRun::~ListRun()
{
    std::error_code hasSummaries;
    if (makesDirectory_)
        fs::remove(*files_.summaries, hasSummaries);
}

bool ListRun::next()
{
    std::optional<SizedDuty> duty = reading(files_.list, [&] { return list_->next(); });
    if (!duty) {
        about(files_.answer, [&] { files_.replacesAnswer ? answer_->putInPlace() : answer_->putInFreePlace(); });
        return false;
    }
    if (summaries_)
        duty->summary = summaries_->write(*list_, *duty);
    about(files_.answer, [&] { answer_->write(list_->answer(*duty)); });
    ++counts_[static_cast<std::size_t>(duty->status)];
    return true;
}

std::string ListRun::outcome() const
{
    const auto [sized, refused, failed] = counts_;
    std::string text = std::to_string(done()) + (done() == 1 ? " row: " : " rows: ") + std::to_string(sized) +
                       " sized, " + std::to_string(refused) + " refused, " + std::to_string(failed) +
                       " failed. The answer is " + textOf(files_.answer) + '.';
    text += sentences(list_->notes());
    if (summaries_ && summaries_->left() > 0)
        text += ' ' + std::to_string(summaries_->left()) + " summaries were there and say the same.";
    for (const std::string& fault : summaries_ ? summaries_->faults() : std::vector<std::string>())
        text += ' ' + fault + '.';
    if (list_->isDataFileReplaced())
        text += " The data file was changed meanwhile; all rows are sized on the earlier one.";
    return text;
}

std::string ListRun::outcomeOfCancel() const
{
    std::string text =
        "Cancelled after " + std::to_string(done()) + " of " + std::to_string(rowCount()) + " rows; no answer is kept.";
    if (summaries_ && summaries_->inPlace() > 0)
        text += ' ' + std::to_string(summaries_->inPlace()) + " summaries stay in " + textOf(*files_.summaries) + '.';
    return text;
}
