// Kernels of the custom filter in text files.
#ifndef QV8_CHAINS_KERNEL_FILE_H
#define QV8_CHAINS_KERNEL_FILE_H

#include <string>

#include "catalogue/value.h"

// The kernel in the file of that name. Throws a Failure that says what is wrong with it.
catalogue::Kernel LoadKernel(const std::string& name);

#endif
