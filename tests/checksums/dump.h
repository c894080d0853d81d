#pragma once

#include <string>

namespace test {

// Writes every case to a file of its entry's name: what each parameter is, and what came of the call. False when a file
// could not be written.
bool DumpCases(const std::string& directory);

} // namespace test
