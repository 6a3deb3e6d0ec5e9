#pragma once

#include <iosfwd>
#include <string>
#include <vector>

/// The whole command `build_capacities`, `arguments` without the program name. What is asked for goes to `out`,
/// findings and a closing line to `messages`. Gives the exit status: 0 done, nothing in the way; 1 refused or not
/// written; 2 wrong arguments.
int buildCapacities(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages);
