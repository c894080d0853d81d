// The cases of the table of checksums: calls of every export, with pictures of every layout in areas of every form,
// from the smallest to those beyond what is worked through in one go.
#pragma once

#include <functional>
#include <string>

#include "api/export_table.h"

namespace test {

struct Case {
    std::string key; // export, layout and form: the cases of one entry
    const Export& row;
    const Scene& scene;
    const Call& call;
    Arguments& arguments;
};

// Runs use(case) for each of them, the same on every system.
void ForEachCase(const std::function<void(const Case&)>& use);

} // namespace test
