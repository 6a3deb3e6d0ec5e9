#pragma once

#include <sys/resource.h>

#include <csignal>

/// As long as it lives, every write fails that would make a file longer than `bytes`, as on a disk that is full: what
/// fits is written first.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &limitBefore);
        const rlimit limit{bytes, limitBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &limitBefore);
        std::signal(SIGXFSZ, signalBefore);
    }

private:
    rlimit limitBefore = {};
    void (*signalBefore)(int) = std::signal(SIGXFSZ, SIG_IGN);
};
