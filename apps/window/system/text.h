// Texts: of the string table, and between the encodings of the system and of the parts that know files and effects.
#ifndef QV8_WINDOW_SYSTEM_TEXT_H
#define QV8_WINDOW_SYSTEM_TEXT_H

#include <initializer_list>
#include <string>

#include <qv8platform.h>

std::wstring Wide(const std::string& utf8);
std::string Utf8(const std::wstring& text);

// A text of the string table, %1 to %9 being exchanged for the words.
std::wstring Text(UINT id, std::initializer_list<std::wstring> words = {});

std::wstring TextOfWindow(HWND window);

// The last part of a path.
std::wstring NameOf(const std::wstring& path);

#endif
