// Stands between the library and what it calls, from outside: counts what is taken and given back, notes what is
// reported, and makes a chosen call fail. The shipped files know nothing of it.
//
// Elsewhere than on Windows this program defines the functions itself; its symbols come before those of the shared
// objects, and it passes the calls on. On Windows the import table of Qv8Effect.dll is changed while it is loaded.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "qv8platform.h"

namespace test::hooks {

// What can be made to fail, and how often each was called.
enum class Kind {
    kNothing,
    kAllocation,
    kLock,
    kProgress, // fails by asking to cancel
    kDialog,
    kGetContext,
    kCreateContext,
    kCreateBitmap,
    kSelect,
    kSetBits,
    kGetBits,
    kPolygon,
    kEllipse,
    kMoveTo,
    kLineTo,
    kCreateBrush,
    kFloodFill,
    kOpenClipboard,
    kEmptyClipboard,
    kSetClipboard,
    kGetClipboard,
    kCloseClipboard, // closes it, but tells of failure
    kCreateFont,
    kTextColours,
    kMeasureText,
    kDrawText,
    kCount
};

// The call of `kind` that fails, counted from 1; `andAfter`: those after it too.
struct Failure {
    Kind kind = Kind::kNothing;
    int call = 0;
    bool andAfter = false;
};

struct ProgressCall {
    int current, last, fromPercent, toPercent;
    DWORD owner;
};

struct Report {
    std::array<int, static_cast<std::size_t>(Kind::kCount)> calls = {};
    bool failed = false;         // the failure came to pass
    std::vector<HGLOBAL> blocks; // allocated and not freed
    int locks = 0;               // taken and not released
    int drawingObjects = 0;      // contexts, bitmaps and the like taken and not given back
    int clipboardOpens = 0;      // times the clipboard was opened and not closed
    std::string misuse;          // things given back that were not taken, and the like; empty when all is well
    std::vector<ProgressCall> progress;
    std::vector<std::array<DWORD_PTR, 3>> dialogs; // arguments of each dialog opened
    int dialogsClosed = 0;

    int Calls(Kind kind) const {
        return calls[static_cast<std::size_t>(kind)];
    }
};

// Runs `call` under watch. Dialogs are not really opened meanwhile, and progress without an owner is not passed on.
Report Watch(const Failure& failure, const std::function<void()>& call);

// From now on watched calls get no block of more than these bytes.
void LimitBlocks(SIZE_T bytes);

// Runs `act` in the middle of a watched call as if nobody watched: what a test does there itself.
void Aside(const std::function<void()>& act);

} // namespace test::hooks
