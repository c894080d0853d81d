#include "support/hooks.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <set>

#include "qv8com.h"
#include "support/drawing.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

// The functions stood before, each with the kind of its failure and what it returns then, and with what is made of its
// result. Of those in the second list the last argument is given back; the third has replacements written out below.
#define QV8_CALLS(CALL)                                                                                                \
    CALL(kGetContext, HDC, GetDC, (HWND window), (window), nullptr, Taken)                                             \
    CALL(kCreateContext, HDC, CreateCompatibleDC, (HDC context), (context), nullptr, Taken)                            \
    CALL(kCreateBitmap, HBITMAP, CreateCompatibleBitmap, (HDC context, int width, int height),                         \
         (context, width, height), nullptr, Taken)                                                                     \
    CALL(kSelect, HGDIOBJ, SelectObject, (HDC context, HGDIOBJ object), (context, object), nullptr, Same)              \
    CALL(                                                                                                              \
        kSetBits, int, SetDIBits,                                                                                      \
        (HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits, const BITMAPINFO* info, UINT usage), \
        (context, bitmap, startRow, rows, bits, info, usage), 0, Same)                                                 \
    CALL(kGetBits, int, GetDIBits,                                                                                     \
         (HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info, UINT usage),            \
         (context, bitmap, startRow, rows, bits, info, usage), 0, Same)                                                \
    CALL(kPolygon, BOOL, Polygon, (HDC context, const POINT* points, int count), (context, points, count), 0, Same)    \
    CALL(kEllipse, BOOL, Ellipse, (HDC context, int left, int top, int right, int bottom),                             \
         (context, left, top, right, bottom), 0, Same)                                                                 \
    CALL(kMoveTo, BOOL, MoveToEx, (HDC context, int x, int y, POINT* previous), (context, x, y, previous), 0, Same)    \
    CALL(kLineTo, BOOL, LineTo, (HDC context, int x, int y), (context, x, y), 0, Same)                                 \
    CALL(kCreateBrush, HBRUSH, CreateSolidBrush, (COLORREF colour), (colour), nullptr, Taken)                          \
    CALL(kFloodFill, BOOL, ExtFloodFill, (HDC context, int x, int y, COLORREF colour, UINT mode),                      \
         (context, x, y, colour, mode), 0, Same)                                                                       \
    CALL(kOpenClipboard, BOOL, OpenClipboard, (HWND window), (window), 0, ClipboardOpened)                             \
    CALL(kEmptyClipboard, BOOL, EmptyClipboard, (), (), 0, Same)                                                       \
    CALL(kGetClipboard, HGLOBAL, GetClipboardData, (UINT format), (format), nullptr, Same)                             \
    CALL(kCreateFont, HFONT, CreateFontIndirectA, (const LOGFONTA* description), (description), nullptr, Taken)        \
    CALL(kTextColours, COLORREF, SetTextColor, (HDC context, COLORREF colour), (context, colour), CLR_INVALID, Same)   \
    CALL(kTextColours, COLORREF, SetBkColor, (HDC context, COLORREF colour), (context, colour), CLR_INVALID, Same)     \
    CALL(kTextColours, int, SetBkMode, (HDC context, int mode), (context, mode), 0, Same)                              \
    CALL(kMeasureText, BOOL, GetTextExtentPoint32A, (HDC context, LPCSTR text, int bytes, SIZE* extent),               \
         (context, text, bytes, extent), 0, Same)                                                                      \
    CALL(kDrawText, int, DrawTextA, (HDC context, LPCSTR text, int bytes, RECT* rect, UINT format),                    \
         (context, text, bytes, rect, format), 0, Same)
#define QV8_RETURNS(RETURN)                                                                                            \
    RETURN(int, ReleaseDC, (HWND window, HDC object), (window, object))                                                \
    RETURN(BOOL, DeleteDC, (HDC object), (object))                                                                     \
    RETURN(BOOL, DeleteObject, (HGDIOBJ object), (object))
#define QV8_OTHERS(OTHER)                                                                                              \
    OTHER(GlobalAlloc)                                                                                                 \
    OTHER(GlobalLock)                                                                                                  \
    OTHER(GlobalUnlock)                                                                                                \
    OTHER(GlobalFree)                                                                                                  \
    OTHER(PercentDlgOpen)                                                                                              \
    OTHER(PercentProgress)                                                                                             \
    OTHER(PercentDlgClose)                                                                                             \
    OTHER(SetClipboardData)                                                                                            \
    OTHER(CloseClipboard)

// Replacements stand under names of their own on Windows, put into the import table by InstallHooks, and under the
// functions' own names elsewhere.
#ifdef _WIN32
#define QV8_HOOK(name) Hooked##name
#define QV8_HOOK_API __stdcall
#define QV8_REAL(name) reinterpret_cast<decltype(&name)>(RealOf(#name))
#else
#define QV8_HOOK(name) name
#define QV8_HOOK_API
#define QV8_REAL(name)                                                                                                 \
    [] {                                                                                                               \
        static const auto next = reinterpret_cast<decltype(&name)>(NextDefinition("qv8_" #name));                      \
        return next;                                                                                                   \
    }()
#endif

namespace test::hooks {
namespace {

struct State {
    Report report;
    Failure failure;
    std::set<HGLOBAL> blocks;
    std::map<HGLOBAL, int> locks;
    std::set<const void*> drawingObjects;
};

// Watched calls run on one thread; others may pass through the replacements while nothing is watched.
std::atomic<State*> watching = nullptr;
std::atomic<SIZE_T> largestBlock = ~SIZE_T{0};

#ifndef _WIN32
// The functions of the platform have a name of their own in its shared object, those of the companion have not.
void* NextDefinition(const char* platformName) {
    void* const found = dlsym(RTLD_NEXT, platformName);
    return found != nullptr ? found : dlsym(RTLD_NEXT, platformName + 4);
}
#endif

#ifdef _WIN32
// What stood in the import table before.
std::map<std::string, std::uintptr_t>& RealFunctions() {
    static std::map<std::string, std::uintptr_t> functions;
    return functions;
}

std::uintptr_t RealOf(const char* name) {
    return RealFunctions()[name];
}
#endif

// Counts a call and tells whether it is to fail.
bool Fails(Kind kind) {
    State* const state = watching;
    if (state == nullptr) {
        return false;
    }
    const int call = ++state->report.calls[static_cast<std::size_t>(kind)];
    const Failure& failure = state->failure;
    if (kind != failure.kind || (failure.andAfter ? call < failure.call : call != failure.call)) {
        return false;
    }
    return state->report.failed = true;
}

void Misuse(State& state, const char* what) {
    state.report.misuse += what;
    state.report.misuse += "; ";
}

template <class Object>
Object Taken(Object object) {
    State* const state = watching;
    if (state != nullptr && object != nullptr) {
        state->drawingObjects.insert(object);
    }
    return object;
}

void GivenBack(const void* object, bool accepted) {
    State* const state = watching;
    if (state != nullptr && (state->drawingObjects.erase(object) == 0 || !accepted)) {
        Misuse(*state, "a context, bitmap, brush or font given back that was not taken or is in use");
    }
}

template <class Result>
Result Same(Result result) {
    return result;
}

// Closing fails while it is not open here, so every close that succeeds has its opening.
BOOL CountClipboard(BOOL succeeded, int change) {
    State* const state = watching;
    if (state != nullptr && succeeded != 0) {
        state->report.clipboardOpens += change;
    }
    return succeeded;
}

BOOL ClipboardOpened(BOOL succeeded) {
    return CountClipboard(succeeded, 1);
}

} // namespace
} // namespace test::hooks

using namespace test::hooks;

extern "C" {

HGLOBAL QV8_HOOK_API QV8_HOOK(GlobalAlloc)(UINT flags, SIZE_T bytes) {
    if (Fails(Kind::kAllocation) || (watching != nullptr && bytes > largestBlock)) {
        return nullptr;
    }
    const HGLOBAL block = QV8_REAL(GlobalAlloc)(flags, bytes);
    State* const state = watching;
    if (state != nullptr && block != nullptr) {
        state->blocks.insert(block);
    }
    return block;
}

void* QV8_HOOK_API QV8_HOOK(GlobalLock)(HGLOBAL block) {
    if (Fails(Kind::kLock)) {
        return nullptr;
    }
    void* const address = QV8_REAL(GlobalLock)(block);
    State* const state = watching;
    if (state != nullptr && address != nullptr) {
        ++state->locks[block];
    }
    return address;
}

BOOL QV8_HOOK_API QV8_HOOK(GlobalUnlock)(HGLOBAL block) {
    State* const state = watching;
    if (state != nullptr && --state->locks[block] < 0) {
        Misuse(*state, "a block unlocked that was not locked");
    }
    return QV8_REAL(GlobalUnlock)(block);
}

HGLOBAL QV8_HOOK_API QV8_HOOK(GlobalFree)(HGLOBAL block) {
    State* const state = watching;
    if (state != nullptr) {
        if (state->blocks.erase(block) == 0) {
            Misuse(*state, "a block freed that was not allocated");
        }
        if (state->locks[block] != 0) {
            Misuse(*state, "a block freed while locked");
        }
        state->locks.erase(block);
    }
    return QV8_REAL(GlobalFree)(block);
}

int QV8_HOOK_API QV8_HOOK(PercentDlgOpen)(DWORD_PTR first, DWORD_PTR second, DWORD_PTR third) {
    State* const state = watching;
    if (state == nullptr) {
        return QV8_REAL(PercentDlgOpen)(first, second, third);
    }
    if (Fails(Kind::kDialog)) {
        return 0;
    }
    state->report.dialogs.push_back({first, second, third});
    return 1;
}

int QV8_HOOK_API QV8_HOOK(PercentProgress)(int current, int last, int fromPercent, int toPercent, DWORD owner) {
    State* const state = watching;
    if (state != nullptr) {
        state->report.progress.push_back({current, last, fromPercent, toPercent, owner});
        if (Fails(Kind::kProgress)) {
            return 0;
        }
        if (owner == 0) {
            return 1;
        }
    }
    return QV8_REAL(PercentProgress)(current, last, fromPercent, toPercent, owner);
}

void QV8_HOOK_API QV8_HOOK(PercentDlgClose)(void) {
    State* const state = watching;
    if (state == nullptr) {
        QV8_REAL(PercentDlgClose)();
    } else {
        ++state->report.dialogsClosed;
    }
}

HGLOBAL QV8_HOOK_API QV8_HOOK(SetClipboardData)(UINT format, HGLOBAL data) {
    if (Fails(Kind::kSetClipboard)) {
        return nullptr;
    }
    const HGLOBAL taken = QV8_REAL(SetClipboardData)(format, data);
    State* const state = watching;
    if (state != nullptr && taken != nullptr) { // the clipboard owns it now
        if (state->blocks.erase(data) == 0 || state->locks[data] != 0) {
            Misuse(*state, "a block given to the clipboard that was not allocated or is locked");
        }
    }
    return taken;
}

BOOL QV8_HOOK_API QV8_HOOK(CloseClipboard)(void) {
    const BOOL closed = CountClipboard(QV8_REAL(CloseClipboard)(), -1);
    return Fails(Kind::kCloseClipboard) ? FALSE : closed;
}

#define QV8_DEFINE_CALL(kind, Result, name, parameters, arguments, failure, made)                                      \
    Result QV8_HOOK_API QV8_HOOK(name) parameters {                                                                    \
        return Fails(Kind::kind) ? (failure) : made(QV8_REAL(name) arguments);                                         \
    }
QV8_CALLS(QV8_DEFINE_CALL)

#define QV8_DEFINE_RETURN(Result, name, parameters, arguments)                                                         \
    Result QV8_HOOK_API QV8_HOOK(name) parameters {                                                                    \
        const Result result = QV8_REAL(name) arguments;                                                                \
        GivenBack(object, result != 0);                                                                                \
        return result;                                                                                                 \
    }
QV8_RETURNS(QV8_DEFINE_RETURN)

} // extern "C"

namespace test::hooks {
namespace {

#ifdef _WIN32

template <class Function>
std::uintptr_t AddressOf(Function* function) {
    return reinterpret_cast<std::uintptr_t>(function);
}

// What is called instead of an imported function, or 0 to leave it.
std::uintptr_t ReplacementOf(const std::string& name) {
#define QV8_ENTRY(function) {#function, AddressOf(&Hooked##function)},
#define QV8_CALL_ENTRY(kind, Result, function, ...) QV8_ENTRY(function)
#define QV8_RETURN_ENTRY(Result, function, ...) QV8_ENTRY(function)
    static const std::map<std::string, std::uintptr_t> kReplacements = {
        QV8_CALLS(QV8_CALL_ENTRY) QV8_RETURNS(QV8_RETURN_ENTRY) QV8_OTHERS(QV8_ENTRY)};
    const auto found = kReplacements.find(name);
    return found != kReplacements.end() ? found->second : 0;
}

void Overwrite(std::uintptr_t* slot, std::uintptr_t value) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

// In the library, or where that is inside of the program, in the program.
void InstallHooks() {
    const HMODULE library = GetModuleHandleA("Qv8Effect.dll");
    auto* const base = reinterpret_cast<BYTE*>(library != nullptr ? library : GetModuleHandleA(nullptr));
    const auto* const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dosHeader->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    const auto* imported = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
    for (; imported->Name != 0; ++imported) {
        const auto* names = reinterpret_cast<const std::uintptr_t*>(base + imported->OriginalFirstThunk);
        auto* slots = reinterpret_cast<std::uintptr_t*>(base + imported->FirstThunk);
        for (; *names != 0; ++names, ++slots) {
            const char* const name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + *names)->Name;
            if (const std::uintptr_t replacement = ReplacementOf(name)) {
                RealFunctions()[name] = *slots;
                Overwrite(slots, replacement);
            }
        }
    }
}

#else

void InstallHooks() {}

#endif

} // namespace

Report Watch(const Failure& failure, const std::function<void()>& call) {
    [[maybe_unused]] static const bool installed = (InstallHooks(), true);
    State state;
    state.failure = failure;
    watching = &state;
    call();
    watching = nullptr;
    state.report.blocks.assign(state.blocks.begin(), state.blocks.end());
    for (const auto& [block, count] : state.locks) {
        state.report.locks += std::max(count, 0);
    }
    state.report.drawingObjects = static_cast<int>(state.drawingObjects.size());
    return std::move(state.report);
}

void LimitBlocks(SIZE_T bytes) {
    largestBlock = bytes;
}

void Aside(const std::function<void()>& act) {
    State* const state = watching.exchange(nullptr);
    act();
    watching = state;
}

} // namespace test::hooks
