#pragma once

#include <filesystem>
#include <string>

/// A new directory that goes with its object.
struct TemporaryDirectory
{
    std::filesystem::path path;

    TemporaryDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "sizing-test-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(path); }
};
