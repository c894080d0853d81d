// What the window keeps in the registry for its next start.
#ifndef QV8_WINDOW_SYSTEM_SETTINGS_H
#define QV8_WINDOW_SYSTEM_SETTINGS_H

#include <string>
#include <vector>

#include <qv8platform.h>

struct Settings {
    WINDOWPLACEMENT place{}; // of the main window; its length is 0 when none is kept
    DWORD panelWidth = 306;  // of the effects beside the picture, in 96ths of an inch
    DWORD megabytes = 512;   // of what undo keeps
    bool preview = true;
    bool divider = false;
    std::vector<std::wstring> recent; // files, the newest first
};

Settings LoadSettings();
void SaveSettings(const Settings& settings);

#endif
