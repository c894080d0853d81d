// The clipboard as another program uses it: through the platform's own calls.
#pragma once

#include <functional>

#include "support/picture.h"

namespace test {

// Whether the platform takes threads that open the clipboard without a window for one user, so that one may free what
// another reads. They have to take turns then.
#ifdef _WIN32
constexpr bool kThreadsAreOneUser = true;
#else
constexpr bool kThreadsAreOneUser = false;
#endif

// Puts a block with these bytes on the clipboard, in place of what it holds.
void PutOnClipboard(const Bytes& bytes);
// What the clipboard holds as CF_DIB; empty when there is none.
Bytes ClipboardContent();
// Whether somebody else, with a window and a thread of his own, can open the clipboard.
bool ClipboardIsClosed();

// Opens the clipboard on a thread and for a window of its own, calls `act` on the calling thread, and closes it.
void WhileAnotherHasTheClipboard(const std::function<void()>& act);

} // namespace test
