#pragma once

#include <filesystem>
#include <random>
#include <string>

/// A new directory that goes with its object.
struct TemporaryDirectory
{
    std::filesystem::path path;

    TemporaryDirectory()
    {
        std::random_device random;
        do
            path = std::filesystem::temp_directory_path() / ("sizing-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path));
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(path); }
};
