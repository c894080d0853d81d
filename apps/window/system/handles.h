// Owners of what the system draws with and counts.
#ifndef QV8_WINDOW_SYSTEM_HANDLES_H
#define QV8_WINDOW_SYSTEM_HANDLES_H

#include <utility>

#include <qv8platform.h>

// A font, brush, pen, bitmap or region.
template <class Handle>
class GdiObject {
public:
    GdiObject() = default;
    explicit GdiObject(Handle handle) : handle_(handle) {}
    GdiObject(GdiObject&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    GdiObject& operator=(GdiObject&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~GdiObject() {
        if (handle_ != nullptr) {
            DeleteObject(handle_);
        }
    }

    Handle Get() const {
        return handle_;
    }

private:
    Handle handle_ = nullptr;
};

// Chosen into a device until the end of its life.
class Chosen {
public:
    Chosen(HDC device, HGDIOBJ object) : device_(device), before_(SelectObject(device, object)) {}
    Chosen(const Chosen&) = delete;
    Chosen& operator=(const Chosen&) = delete;
    ~Chosen() {
        SelectObject(device_, before_);
    }

private:
    HDC device_;
    HGDIOBJ before_;
};

class WindowDevice {
public:
    explicit WindowDevice(HWND window) : window_(window), device_(GetDC(window)) {}
    WindowDevice(const WindowDevice&) = delete;
    WindowDevice& operator=(const WindowDevice&) = delete;
    ~WindowDevice() {
        ReleaseDC(window_, device_);
    }
    HDC Get() const {
        return device_;
    }

private:
    HWND window_;
    HDC device_;
};

// A bitmap to draw on before it comes onto the screen.
class Surface {
public:
    // Takes another size only when it has to; what was on it is gone then.
    void Prepare(HDC like, int width, int height) {
        if (device_ == nullptr || width != width_ || height != height_) {
            Free();
            device_ = CreateCompatibleDC(like);
            bitmap_ = CreateCompatibleBitmap(like, width > 0 ? width : 1, height > 0 ? height : 1);
            before_ = SelectObject(device_, bitmap_);
            width_ = width;
            height_ = height;
        }
    }
    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface() {
        Free();
    }
    HDC Device() const {
        return device_;
    }

private:
    void Free() {
        if (device_ != nullptr) {
            SelectObject(device_, before_);
            DeleteObject(bitmap_);
            DeleteDC(device_);
        }
    }

    HDC device_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

class MenuHandle {
public:
    explicit MenuHandle(HMENU menu) : menu_(menu) {}
    MenuHandle(const MenuHandle&) = delete;
    MenuHandle& operator=(const MenuHandle&) = delete;
    ~MenuHandle() {
        DestroyMenu(menu_);
    }
    HMENU Get() const {
        return menu_;
    }

private:
    HMENU menu_;
};

#endif
