// Does all the talking with the print scheduler for the desktop program: print_queue PROCESS TITLE
// Tells the paper of the default printer (the first one where none is the default), or that there is none, on standard
// output. Then reads the page, a PDF, and hands it over as one job. Exit status 0 when there is no printer and when the
// queue has taken the job. Ends with PROCESS, the desktop program.

#include <cups/cups.h>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

namespace
{

constexpr int connectWait = 60'000; // milliseconds: longer than the desktop program waits

/// Width, height and the margins at left, top, right and foot, in hundredths of a millimetre; 0 where the printer does
/// not say.
void tellPaper(http_t* scheduler, cups_dest_t& printer, cups_dinfo_t* properties)
{
    ipp_t* const paper = ippGetCollection(cupsFindDestDefault(scheduler, &printer, properties, "media-col"), 0);
    for (const char* const length : {"media-size/x-dimension", "media-size/y-dimension", "media-left-margin",
                                     "media-top-margin", "media-right-margin", "media-bottom-margin"})
        std::printf("%d ", ippGetInteger(ippFindAttribute(paper, length, IPP_TAG_INTEGER), 0));
    std::puts("");
    std::fflush(stdout);
}

/// Hands the page over with the options that the user keeps for the printer.
bool submit(http_t* scheduler, cups_dest_t& printer, cups_dinfo_t* properties, const char* title,
            const std::string& page)
{
    int job = 0;
    cupsCreateDestJob(scheduler, &printer, properties, &job, title, printer.num_options, printer.options);
    if (job == 0)
        return false;
    if (cupsStartDestDocument(scheduler, &printer, properties, job, title, CUPS_FORMAT_AUTO, printer.num_options,
                              printer.options, 1) == HTTP_STATUS_CONTINUE &&
        cupsWriteRequestData(scheduler, page.data(), page.size()) == HTTP_STATUS_CONTINUE &&
        cupsFinishDestDocument(scheduler, &printer, properties) <= IPP_STATUS_OK_CONFLICTING)
        return true;
    cupsCancelDestJob(scheduler, &printer, job);
    return false;
}

int talk(http_t* scheduler, int count, cups_dest_t* printers, const char* title)
{
    cups_dest_t* const preferred = cupsGetDest(nullptr, nullptr, count, printers);
    cups_dest_t& printer = preferred != nullptr ? *preferred : printers[0];
    const std::unique_ptr<cups_dinfo_t, decltype(&cupsFreeDestInfo)> properties(cupsCopyDestInfo(scheduler, &printer),
                                                                                cupsFreeDestInfo);
    if (!properties)
        return 1;
    tellPaper(scheduler, printer, properties.get());
    const std::string page{std::istreambuf_iterator<char>(std::cin), {}};
    // A page that ends too soon comes from a desktop program that has ended.
    return page.ends_with("%%EOF\n") && submit(scheduler, printer, properties.get(), title, page) ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3 || prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != std::atoi(argv[1])) // it has ended already
        return 1;
    // No question for a password on a terminal that nobody sees.
    cupsSetPasswordCB2([](const char*, http_t*, const char*, const char*, void*) -> const char* { return nullptr; },
                       nullptr);
    const std::unique_ptr<http_t, decltype(&httpClose)> scheduler(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectWait, nullptr),
        httpClose);
    cups_dest_t* printers = nullptr;
    const int count = scheduler ? cupsGetDests2(scheduler.get(), &printers) : 0;
    if (count > 0) {
        const int status = talk(scheduler.get(), count, printers, argv[2]);
        cupsFreeDests(count, printers);
        return status;
    }
    // A scheduler without printers says that it has not found any.
    if (scheduler && cupsLastError() > IPP_STATUS_OK_CONFLICTING && cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND)
        return 1;
    std::puts("none");
    return 0;
}
