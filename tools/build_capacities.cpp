#include "capacity_database.h"

#include <iostream>

int main(int argc, char* argv[])
{
    return buildCapacities({argv + 1, argv + argc}, std::cerr);
}
