#include "files/system.h"
#include "tables/build_command.h"

#include <exception>
#include <iostream>

int main(int argc, char* argv[])
{
    holdStandardStreams();
    try {
        return buildCapacities({argv + 1, argv + argc}, std::cout, std::cerr);
    } catch (const std::exception& failure) { // no memory, most likely
        std::cerr << "build_capacities: " << failure.what() << "; nothing is written\n";
        return 1;
    }
}
