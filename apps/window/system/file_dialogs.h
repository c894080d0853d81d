// The system's own dialogs that ask for files.
#ifndef QV8_WINDOW_SYSTEM_FILE_DIALOGS_H
#define QV8_WINDOW_SYSTEM_FILE_DIALOGS_H

#include <string>
#include <vector>

#include <qv8platform.h>

// `filter` is a text of the string table, words between bars. None when the person chose none.
std::vector<std::wstring> AskForFilesToOpen(HWND owner, UINT filter, bool several);

// One name, with the ending of the chosen kind of file where none was typed; empty when none was chosen. A file that is
// there is asked about.
std::wstring AskForFileToSave(HWND owner, UINT filter, const std::wstring& suggested);

#endif
