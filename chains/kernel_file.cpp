#include "chains/kernel_file.h"

#include <vector>

#include "catalogue/text.h"
#include "pictures/failure.h"
#include "pictures/input_file.h"

namespace {

constexpr std::size_t kLargestKernel = 1 << 16; // with room for comments

} // namespace

catalogue::Kernel LoadKernel(const std::string& name) {
    catalogue::Kernel kernel;
    const std::vector<BYTE> text = ReadWholeFile(name, kLargestKernel, [](const std::vector<BYTE>&) {});
    const std::string mistake = catalogue::ParseKernel(std::string(text.begin(), text.end()), kernel);
    if (!mistake.empty()) {
        throw Failure(kExitInput, name + ": " + mistake);
    }
    return kernel;
}
