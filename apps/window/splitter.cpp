#include "splitter.h"

#include <windowsx.h>

#include "commands.h"
#include "system/guard.h"
#include "system/screen.h"

namespace {

constexpr const wchar_t* kSplitterClass = L"Qv8EffectSplitter";
constexpr int kKeyStep = 16; // 96ths of an inch

} // namespace

Splitter::Splitter(HWND parent, SplitterOwner& owner) : owner_(owner) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_SIZEWE);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = kSplitterClass;
    RegisterClassExW(&description);
    CreateWindowExW(0, kSplitterClass, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 0, 0, parent,
                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_SPLITTER)), description.hInstance, this);
}

QV8_REALIGN LRESULT CALLBACK Splitter::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const splitter = static_cast<Splitter*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        splitter->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(splitter));
    }
    auto* const splitter = reinterpret_cast<Splitter*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (splitter == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return Guarded(window, [&] { return splitter->Handle(message, wParam, lParam); });
}

LRESULT Splitter::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_LBUTTONDOWN:
        grabbedAt_ = GET_X_LPARAM(lParam);
        SetCapture(window_);
        return 0;
    case WM_MOUSEMOVE:
        if (GetCapture() == window_ && GET_X_LPARAM(lParam) != grabbedAt_) {
            owner_.SplitterMoved(GET_X_LPARAM(lParam) - grabbedAt_);
        }
        return 0;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_KEYDOWN:
        if (wParam == VK_LEFT || wParam == VK_RIGHT) {
            owner_.SplitterMoved(Dots(window_)(wParam == VK_LEFT ? -kKeyStep : kKeyStep));
        }
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window_, nullptr, TRUE);
        return 0;
    case WM_PAINT:
        Paint();
        return 0;
    default:
        return DefWindowProcW(window_, message, wParam, lParam);
    }
}

void Splitter::Paint() const {
    PAINTSTRUCT painting;
    const HDC device = BeginPaint(window_, &painting);
    RECT client;
    GetClientRect(window_, &client);
    RECT line{client.right / 2 - 1, client.top, client.right / 2 + 1, client.bottom};
    DrawEdge(device, &line, EDGE_ETCHED, BF_LEFT);
    if (GetFocus() == window_) {
        DrawFocusRect(device, &client);
    }
    EndPaint(window_, &painting);
}
