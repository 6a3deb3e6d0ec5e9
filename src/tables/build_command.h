#pragma once

#include <iosfwd>
#include <string>
#include <vector>

/// The whole command `build_capacities`; `arguments` are without the program's name. Help and
/// version go to `out`, findings and a closing line to `messages`. Gives the exit status: 0 done; 1
/// refused or not written; 2 wrong arguments.
int buildCapacities(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages);
