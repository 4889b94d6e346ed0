// What a library exports.
#pragma once

#include <set>
#include <string>

// The names in the table of exports of the library at `path`, as the linker has them.
std::multiset<std::string> exportedNames(const std::string& path);
