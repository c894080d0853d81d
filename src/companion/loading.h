// What the file needs of the system while it is loaded. Asked on Windows only, where it can fail.
#pragma once

namespace qv8 {

bool StatusIsUsable();
bool ProgressIsUsable();

} // namespace qv8
