// The files that were open last.
#ifndef QV8_WINDOW_RECENT_FILES_H
#define QV8_WINDOW_RECENT_FILES_H

#include <algorithm>
#include <string>
#include <vector>

// Puts the name in front of the others, of which so many stay that there are no more than `most`.
inline void AddRecent(std::vector<std::wstring>& names, const std::wstring& name, std::size_t most) {
    names.erase(std::remove(names.begin(), names.end(), name), names.end());
    names.insert(names.begin(), name);
    names.resize(std::min(names.size(), most));
}

#endif
