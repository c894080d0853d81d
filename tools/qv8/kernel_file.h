// Kernels of the custom filter: a few with a name, and any other from a text file.
#ifndef QV8_TOOL_KERNEL_FILE_H
#define QV8_TOOL_KERNEL_FILE_H

#include <array>
#include <string>

#include <qv8effect.h>

// 9 x 9 weights, the row above first.
struct Kernel {
    std::array<LONG, 81> weights{};
    DWORD divisor = 1;
    DWORD offset = 0;
};

// The kernel of that name, or the one in the file of that name. Throws a Failure that says what is wrong with it.
Kernel LoadKernel(const std::string& name);

// Weights from text: as many words in each line, as lines, 1, 3, 5, 7 or 9 of them, put in the middle. "divisor N" and
// "offset N" on lines of their own; "#" begins a comment. Without a divisor it is the sum of the weights where that is
// in 1..255, else 1. Returns what is wrong with the text, or nothing.
std::string ParseKernel(const std::string& text, Kernel& kernel);

#endif
