#include "lists/results.h"

#include "files/system.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace
{

/// Writes without a buffer. A buffer would be written when the program ends, and after an interruption that might wait
/// for a full pipe.
void writeOut(std::string_view text)
{
    while (!text.empty()) {
        constexpr std::size_t most = 1 << 20; // bytes at a time
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), static_cast<unsigned>(std::min(text.size(), most)));
        if (written < 0 && (errno != EINTR || isInterrupted()))
            throw std::runtime_error(std::strerror(errno));
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
}

} // namespace

template <typename Action>
void Results::attempt(const Action& action)
{
    try {
        action();
    } catch (const std::runtime_error& failure) {
        throw Stopped(isInterrupted() ? std::string("interrupted; ") + afterStop() : name_ + ": " + failure.what());
    }
}

Results::Results(const std::string& name) : name_(name == "-" ? "standard output" : name)
{
    if (name != "-")
        attempt([&] { file_.emplace(pathOf(name), ordinaryMode()); });
}

bool Results::goToTerminal() const
{
    return !file_ && isatty(STDOUT_FILENO) != 0;
}

void Results::write(std::string_view text)
{
    attempt([&] {
        if (file_)
            file_->write(text);
        else
            writeOut(text);
    });
}

void Results::finish()
{
    if (file_)
        attempt([&] { file_->putInPlace(); });
}
