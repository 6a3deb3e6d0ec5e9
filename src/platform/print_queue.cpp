// Talks with the print scheduler for the desktop program, which would freeze with a scheduler that does not answer:
//
//   print_queue count          says how many printers there are
//   print_queue print TITLE    says the paper of the default printer (the first where none is), its width, height and
//                              left, top, right and bottom margin in 1/100 mm; "none" when the printer tells none. Then
//                              prints what it reads: a line with the number of bytes, and so many bytes of PDF. Says
//                              the name of the queue that has taken them.
//
// Exit status 1, with the reason on standard error, when the printing system fails.

#include "platform/print_queue.h"

#include <cups/cups.h>
#include <unistd.h>

#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace
{

std::string lastReason()
{
    const char* const reason = cupsLastErrorString();
    return reason != nullptr ? reason : "unknown failure";
}

/// That nothing was found only says that there is no printer.
void expectSuccess()
{
    if (cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE && cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND)
        throw std::runtime_error(lastReason());
}

struct Closer
{
    void operator()(http_t* scheduler) const { httpClose(scheduler); }
    void operator()(cups_dinfo_t* info) const { cupsFreeDestInfo(info); }
};
using Scheduler = std::unique_ptr<http_t, Closer>;

/// The installed printers with the options that the user keeps for them.
class Queues
{
public:
    explicit Queues(http_t* scheduler) : count_(cupsGetDests2(scheduler, &all_)) { expectSuccess(); }
    Queues(const Queues&) = delete;
    ~Queues() { cupsFreeDests(count_, all_); }

    int count() const { return count_; }

    cups_dest_t& chosen() const
    {
        if (count_ == 0)
            throw std::runtime_error("there is no printer");
        cups_dest_t* const standard = cupsGetDest(nullptr, nullptr, count_, all_);
        return standard != nullptr ? *standard : all_[0];
    }

private:
    cups_dest_t* all_ = nullptr; // first: it is filled while they are counted
    int count_;
};

/// The paper that the user keeps for the printer, by a name of the printer's driver or of the standard; or none.
const pwg_media_t* keptPaper(const cups_dest_t& printer)
{
    for (const char* const option : {"PageSize", "media"})
        if (const char* const name = cupsGetOption(option, printer.num_options, printer.options))
            for (const auto find : {pwgMediaForPPD, pwgMediaForPWG, pwgMediaForLegacy})
                if (const pwg_media_t* const paper = find(name))
                    return paper;
    return nullptr;
}

cups_size_t paperOf(http_t* scheduler, cups_dest_t& printer, cups_dinfo_t* info)
{
    cups_size_t size = {};
    const pwg_media_t* const kept = keptPaper(printer);
    if (kept != nullptr && cupsGetDestMediaBySize(scheduler, &printer, info, kept->width, kept->length,
                                                  CUPS_MEDIA_FLAGS_DEFAULT, &size) != 0)
        return size;
    // cupsGetDestMediaDefault() would say Letter of every printer that takes it.
    ipp_t* const paper = ippGetCollection(cupsFindDestDefault(scheduler, &printer, info, "media-col"), 0);
    const auto length = [paper](const char* name) {
        return ippGetInteger(ippFindAttribute(paper, name, IPP_TAG_INTEGER), 0);
    };
    size.width = length("media-size/x-dimension");
    size.length = length("media-size/y-dimension");
    size.left = length("media-left-margin");
    size.top = length("media-top-margin");
    size.right = length("media-right-margin");
    size.bottom = length("media-bottom-margin");
    return size;
}

void tellPaper(http_t* scheduler, cups_dest_t& printer)
{
    const std::unique_ptr<cups_dinfo_t, Closer> info(cupsCopyDestInfo(scheduler, &printer));
    const cups_size_t size = info ? paperOf(scheduler, printer, info.get()) : cups_size_t{};
    if (size.width > 0) {
        // printf() and not a stream: hardening-check wants to see one function that the C library guards.
        std::printf("%d %d %d %d %d %d\n", size.width, size.length, size.left, size.top, size.right, size.bottom);
        std::fflush(stdout);
    } else
        std::cout << "none" << std::endl;
}

std::string readPage()
{
    std::size_t size = 0;
    std::string page;
    if (std::cin >> size && std::cin.get() == '\n') {
        page.resize(size);
        std::cin.read(page.data(), static_cast<std::streamsize>(size));
    }
    if (page.empty() || !std::cin)
        throw std::runtime_error("the page has not come whole");
    return page;
}

void printPage(http_t* scheduler, const cups_dest_t& printer, const char* title, const std::string& page)
{
    const int job = cupsCreateJob(scheduler, printer.name, title, printer.num_options, printer.options);
    if (job == 0)
        throw std::runtime_error(lastReason());
    const bool isSent =
        cupsStartDocument(scheduler, printer.name, job, title, CUPS_FORMAT_AUTO, 1) == HTTP_STATUS_CONTINUE &&
        cupsWriteRequestData(scheduler, page.data(), page.size()) == HTTP_STATUS_CONTINUE &&
        cupsFinishDocument(scheduler, printer.name) <= IPP_STATUS_OK_EVENTS_COMPLETE;
    if (!isSent) {
        const std::string reason = lastReason();
        cupsCancelJob2(scheduler, printer.name, job, 0);
        throw std::runtime_error(reason);
    }
}

void run(int count, char* arguments[])
{
    const std::string task = count > 1 ? arguments[1] : "";
    if (!(task == "count" && count == 2) && !(task == "print" && count == 3))
        throw std::runtime_error("usage: print_queue count | print_queue print TITLE");
    // Never a question for a password on a terminal that nobody sees.
    cupsSetPasswordCB2([](const char*, http_t*, const char*, const char*, void*) -> const char* { return nullptr; },
                       nullptr);
    const Scheduler scheduler(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                                           static_cast<int>(printPatience) * 1000, nullptr));
    if (!scheduler && task == "count") { // without a scheduler there is no printer
        std::cout << 0 << std::endl;
        return;
    }
    const Queues queues(scheduler.get());
    if (task == "count") {
        std::cout << queues.count() << std::endl;
        return;
    }
    cups_dest_t& printer = queues.chosen();
    tellPaper(scheduler.get(), printer);
    printPage(scheduler.get(), printer, arguments[2], readPage());
    std::cout << printer.name << std::endl;
}

} // namespace

int main(int count, char* arguments[])
{
    alarm(printPatience + 1); // ends this program even when the desktop program is gone
    try {
        run(count, arguments);
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "print_queue: " << failure.what() << '\n';
        return 1;
    }
}
