#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Paths and their texts: these are UTF-8 everywhere, whatever the system's own narrow texts are.

inline std::filesystem::path pathOf(std::string_view text)
{
    return std::u8string(text.begin(), text.end());
}

inline std::string textOf(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}
