#include "files/system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace
{

volatile std::sig_atomic_t interrupted = 0;

} // namespace

void holdStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // gets the lowest free number: this one
}

void prepareConsole()
{
    struct sigaction interruption = {}; // without SA_RESTART: a write that waits for a full pipe ends
    interruption.sa_handler = [](int) { interrupted = 1; };
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(number, &interruption, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool isInterrupted()
{
    return interrupted != 0;
}

std::string whyUnreadable(const std::filesystem::path& file)
{
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        return std::strerror(errno);
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "not a regular file";
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::strerror(errno);
    close(descriptor);
    return "";
}
