#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An option of a command.
struct KnownOption
{
    const char* name;     ///< without "--"
    bool hasText = false; ///< a text follows it
    char letter = '\0';   ///< its short form
};

/// The arguments of a command, without the program's name.
struct Arguments
{
    std::map<std::string, std::string, std::less<>> options; ///< their texts, by name; of two, the last
    std::vector<std::string> operands;

    bool has(std::string_view option) const { return options.contains(option); }
};

/// Reads arguments as getopt_long does: options may follow operands and may be abbreviated. nullopt
/// for an unknown option or a missing text, which is reported on standard error.
std::optional<Arguments> readArguments(std::string program, std::vector<std::string> arguments,
                                       std::initializer_list<KnownOption> known);
