// What goes to standard error.
#ifndef QV8_APP_MESSAGE_H
#define QV8_APP_MESSAGE_H

#include <string>

// The text as one line for a terminal or a log: names of files and options are repeated in messages, and may hold line
// ends, control characters and thousands of other ones. A long text keeps its two ends.
std::string OneLine(const std::string& text);

#endif
