// The program as a function.
#ifndef QV8_APP_COMMAND_LINE_H
#define QV8_APP_COMMAND_LINE_H

#include <iosfwd>
#include <string>
#include <vector>

// Carries out a command line (without the program's name), all words in UTF-8. Returns the exit code.
int RunCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& err);

#endif
