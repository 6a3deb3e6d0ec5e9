#include "files/arguments.h"

#include <getopt.h>

#include <algorithm>

std::optional<Arguments> readArguments(std::string program, std::vector<std::string> arguments,
                                       std::initializer_list<KnownOption> known)
{
    std::string letters;
    std::vector<option> options;
    for (const KnownOption& one : known) {
        const int number = one.letter != '\0' ? one.letter : 256 + static_cast<int>(options.size());
        options.push_back({one.name, one.hasText ? required_argument : no_argument, nullptr, number});
        if (one.letter != '\0')
            letters += std::string(1, one.letter) + (one.hasText ? ":" : "");
    }
    options.push_back({});
    std::vector<char*> pointers = {program.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    const auto count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);

    Arguments read;
    optind = 0; // from the start again
    for (int found = 0;
         (found = getopt_long(count, pointers.data(), letters.c_str(), options.data(), nullptr)) != -1;) {
        const auto one = std::ranges::find(options, found, &option::val);
        if (one == options.end()) // '?'
            return std::nullopt;
        read.options[one->name] = optarg != nullptr ? optarg : "";
    }
    read.operands.assign(pointers.begin() + optind, pointers.begin() + count);
    return read;
}
