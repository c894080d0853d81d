#include "support/hooks.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <set>

#include "qv8com.h"
#include "support/drawing.h"

#ifdef _WIN32
// Replacements under names of their own, put into the import table by InstallHooks.
#define QV8_HOOK(name) Hooked##name
#define QV8_REAL(name) (&name)
#define QV8_HOOK_API __stdcall
#else
#include <dlfcn.h>
// Replacements under the functions' own names.
#define QV8_HOOK(name) name
#define QV8_REAL(name)                                                                                                 \
    [] {                                                                                                               \
        static const auto next = NextDefinition<decltype(&name)>(#name);                                               \
        return next;                                                                                                   \
    }()
#define QV8_HOOK_API
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
template <class Function>
Function NextDefinition(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
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

// Closing fails while it is not open here, so every close that succeeds has its opening.
bool CountClipboard(BOOL succeeded, int change) {
    State* const state = watching;
    if (state != nullptr && succeeded != 0) {
        state->report.clipboardOpens += change;
    }
    return succeeded != 0;
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

HDC QV8_HOOK_API QV8_HOOK(GetDC)(HWND window) {
    return Fails(Kind::kGetContext) ? nullptr : Taken(QV8_REAL(GetDC)(window));
}

int QV8_HOOK_API QV8_HOOK(ReleaseDC)(HWND window, HDC context) {
    const int result = QV8_REAL(ReleaseDC)(window, context);
    GivenBack(context, result != 0);
    return result;
}

HDC QV8_HOOK_API QV8_HOOK(CreateCompatibleDC)(HDC context) {
    return Fails(Kind::kCreateContext) ? nullptr : Taken(QV8_REAL(CreateCompatibleDC)(context));
}

BOOL QV8_HOOK_API QV8_HOOK(DeleteDC)(HDC context) {
    const BOOL result = QV8_REAL(DeleteDC)(context);
    GivenBack(context, result != 0);
    return result;
}

HBITMAP QV8_HOOK_API QV8_HOOK(CreateCompatibleBitmap)(HDC context, int width, int height) {
    return Fails(Kind::kCreateBitmap) ? nullptr : Taken(QV8_REAL(CreateCompatibleBitmap)(context, width, height));
}

BOOL QV8_HOOK_API QV8_HOOK(DeleteObject)(HGDIOBJ object) {
    const BOOL result = QV8_REAL(DeleteObject)(object);
    GivenBack(object, result != 0);
    return result;
}

HGDIOBJ QV8_HOOK_API QV8_HOOK(SelectObject)(HDC context, HGDIOBJ object) {
    return Fails(Kind::kSelect) ? nullptr : QV8_REAL(SelectObject)(context, object);
}

int QV8_HOOK_API QV8_HOOK(SetDIBits)(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits,
                                     const BITMAPINFO* info, UINT usage) {
    return Fails(Kind::kSetBits) ? 0 : QV8_REAL(SetDIBits)(context, bitmap, startRow, rows, bits, info, usage);
}

int QV8_HOOK_API QV8_HOOK(GetDIBits)(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits,
                                     BITMAPINFO* info, UINT usage) {
    return Fails(Kind::kGetBits) ? 0 : QV8_REAL(GetDIBits)(context, bitmap, startRow, rows, bits, info, usage);
}

BOOL QV8_HOOK_API QV8_HOOK(Polygon)(HDC context, const POINT* points, int count) {
    return Fails(Kind::kPolygon) ? 0 : QV8_REAL(Polygon)(context, points, count);
}

BOOL QV8_HOOK_API QV8_HOOK(Ellipse)(HDC context, int left, int top, int right, int bottom) {
    return Fails(Kind::kEllipse) ? 0 : QV8_REAL(Ellipse)(context, left, top, right, bottom);
}

BOOL QV8_HOOK_API QV8_HOOK(MoveToEx)(HDC context, int x, int y, POINT* previous) {
    return Fails(Kind::kMoveTo) ? FALSE : QV8_REAL(MoveToEx)(context, x, y, previous);
}

BOOL QV8_HOOK_API QV8_HOOK(LineTo)(HDC context, int x, int y) {
    return Fails(Kind::kLineTo) ? FALSE : QV8_REAL(LineTo)(context, x, y);
}

HBRUSH QV8_HOOK_API QV8_HOOK(CreateSolidBrush)(COLORREF colour) {
    return Fails(Kind::kCreateBrush) ? nullptr : Taken(QV8_REAL(CreateSolidBrush)(colour));
}

BOOL QV8_HOOK_API QV8_HOOK(ExtFloodFill)(HDC context, int x, int y, COLORREF colour, UINT mode) {
    return Fails(Kind::kFloodFill) ? FALSE : QV8_REAL(ExtFloodFill)(context, x, y, colour, mode);
}

BOOL QV8_HOOK_API QV8_HOOK(OpenClipboard)(HWND window) {
    return !Fails(Kind::kOpenClipboard) && CountClipboard(QV8_REAL(OpenClipboard)(window), 1);
}

BOOL QV8_HOOK_API QV8_HOOK(EmptyClipboard)(void) {
    return Fails(Kind::kEmptyClipboard) ? FALSE : QV8_REAL(EmptyClipboard)();
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

HGLOBAL QV8_HOOK_API QV8_HOOK(GetClipboardData)(UINT format) {
    return Fails(Kind::kGetClipboard) ? nullptr : QV8_REAL(GetClipboardData)(format);
}

BOOL QV8_HOOK_API QV8_HOOK(CloseClipboard)(void) {
    const bool closed = CountClipboard(QV8_REAL(CloseClipboard)(), -1);
    return !Fails(Kind::kCloseClipboard) && closed;
}

HFONT QV8_HOOK_API QV8_HOOK(CreateFontIndirectA)(const LOGFONTA* description) {
    return Fails(Kind::kCreateFont) ? nullptr : Taken(QV8_REAL(CreateFontIndirectA)(description));
}

COLORREF QV8_HOOK_API QV8_HOOK(SetTextColor)(HDC context, COLORREF colour) {
    return Fails(Kind::kTextColours) ? CLR_INVALID : QV8_REAL(SetTextColor)(context, colour);
}

COLORREF QV8_HOOK_API QV8_HOOK(SetBkColor)(HDC context, COLORREF colour) {
    return Fails(Kind::kTextColours) ? CLR_INVALID : QV8_REAL(SetBkColor)(context, colour);
}

int QV8_HOOK_API QV8_HOOK(SetBkMode)(HDC context, int mode) {
    return Fails(Kind::kTextColours) ? 0 : QV8_REAL(SetBkMode)(context, mode);
}

BOOL QV8_HOOK_API QV8_HOOK(GetTextExtentPoint32A)(HDC context, LPCSTR text, int bytes, SIZE* extent) {
    return Fails(Kind::kMeasureText) ? FALSE : QV8_REAL(GetTextExtentPoint32A)(context, text, bytes, extent);
}

int QV8_HOOK_API QV8_HOOK(DrawTextA)(HDC context, LPCSTR text, int bytes, RECT* rect, UINT format) {
    return Fails(Kind::kDrawText) ? 0 : QV8_REAL(DrawTextA)(context, text, bytes, rect, format);
}

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
#define QV8_ENTRY(function)                                                                                            \
    { #function, AddressOf(&Hooked##function) }
    static const std::map<std::string, std::uintptr_t> kReplacements = {
        QV8_ENTRY(GlobalAlloc),
        QV8_ENTRY(GlobalLock),
        QV8_ENTRY(GlobalUnlock),
        QV8_ENTRY(GlobalFree),
        QV8_ENTRY(PercentDlgOpen),
        QV8_ENTRY(PercentProgress),
        QV8_ENTRY(PercentDlgClose),
        QV8_ENTRY(GetDC),
        QV8_ENTRY(ReleaseDC),
        QV8_ENTRY(CreateCompatibleDC),
        QV8_ENTRY(DeleteDC),
        QV8_ENTRY(CreateCompatibleBitmap),
        QV8_ENTRY(DeleteObject),
        QV8_ENTRY(SelectObject),
        QV8_ENTRY(SetDIBits),
        QV8_ENTRY(GetDIBits),
        QV8_ENTRY(Polygon),
        QV8_ENTRY(Ellipse),
        QV8_ENTRY(MoveToEx),
        QV8_ENTRY(LineTo),
        QV8_ENTRY(CreateSolidBrush),
        QV8_ENTRY(ExtFloodFill),
        QV8_ENTRY(CreateFontIndirectA),
        QV8_ENTRY(SetTextColor),
        QV8_ENTRY(SetBkColor),
        QV8_ENTRY(SetBkMode),
        QV8_ENTRY(GetTextExtentPoint32A),
        QV8_ENTRY(DrawTextA),
        QV8_ENTRY(OpenClipboard),
        QV8_ENTRY(EmptyClipboard),
        QV8_ENTRY(SetClipboardData),
        QV8_ENTRY(GetClipboardData),
        QV8_ENTRY(CloseClipboard),
    };
#undef QV8_ENTRY
    const auto found = kReplacements.find(name);
    return found != kReplacements.end() ? found->second : 0;
}

void Overwrite(std::uintptr_t* slot, std::uintptr_t value) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

void InstallHooks() {
    auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleA("Qv8Effect.dll"));
    const auto* const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dosHeader->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
    for (; library->Name != 0; ++library) {
        const auto* names = reinterpret_cast<const DWORD*>(base + library->OriginalFirstThunk);
        auto* slots = reinterpret_cast<std::uintptr_t*>(base + library->FirstThunk);
        for (; *names != 0; ++names, ++slots) {
            const char* const name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + *names)->Name;
            if (const std::uintptr_t replacement = ReplacementOf(name)) {
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
