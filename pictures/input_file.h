// Files that are read as a whole.
#ifndef QV8_PICTURES_INPUT_FILE_H
#define QV8_PICTURES_INPUT_FILE_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <qv8platform.h>

#include "pictures/failure.h"

Failure ReadFailure(const std::string& name, const std::string& reason);

// Reads a file, a pipe or a device, or standard input where the name is "-". Of more than `mostBytes` bytes nothing is
// kept. `checkStart` is given the first bytes and throws when they are not worth reading on: a device may have no end.
// Throws a Failure with kExitInput that names the file.
std::vector<BYTE> ReadWholeFile(const std::string& name, std::size_t mostBytes,
                                const std::function<void(const std::vector<BYTE>&)>& checkStart);

#endif
