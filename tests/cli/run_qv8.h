// Whole command lines, carried out in the process of the test.
#ifndef QV8_TEST_CLI_RUN_QV8_H
#define QV8_TEST_CLI_RUN_QV8_H

#include <sstream>
#include <string>
#include <vector>

#include "command_line.h"

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

inline Outcome RunQv8(const std::vector<std::string>& words) {
    std::ostringstream out;
    std::ostringstream err;
    const int code = RunCommandLine(words, out, err);
    return {code, out.str(), err.str()};
}

inline bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

#endif
