// Pictures of the window, for documents: made where QV8_SCREENSHOTS names a folder.
#include "driver.h"

#include <commctrl.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "pictures/image_file.h"

namespace {

// What the screen shows in the place of a window.
Picture Grab(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = place.right - place.left;
    header.biHeight = place.bottom - place.top;
    header.biPlanes = 1;
    header.biBitCount = 24;
    const auto rows = static_cast<std::size_t>(RowBytes(24, static_cast<std::uint64_t>(header.biWidth))) *
                      static_cast<std::size_t>(header.biHeight);
    Picture picture(GlobalAlloc(GHND, sizeof header + rows));
    auto* const bytes = static_cast<BYTE*>(GlobalLock(picture.Handle()));
    std::memcpy(bytes, &header, sizeof header);
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, header.biWidth, header.biHeight);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, header.biWidth, header.biHeight, screen, place.left, place.top, SRCCOPY);
    SelectObject(memory, before);
    BITMAPINFO info{};
    info.bmiHeader = header;
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(header.biHeight), bytes + sizeof header, &info, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    GlobalUnlock(picture.Handle());
    return picture;
}

class Screenshots : public WindowDriver {
protected:
    void SetUp() override {
        if (std::getenv("QV8_SCREENSHOTS") == nullptr) {
            GTEST_SKIP() << "QV8_SCREENSHOTS names no folder";
        }
        Start(L"\"" + std::filesystem::path(QV8_SAMPLE).wstring() + L"\"");
        const UINT dots = GetDeviceCaps(GetDC(nullptr), LOGPIXELSX) == 96 ? 2 : 3;
        SetWindowPos(window_->Window(), nullptr, 10, 10, static_cast<int>(480 * dots), static_cast<int>(330 * dots),
                     SWP_NOZORDER);
        ASSERT_TRUE(window_->Command(ID_VIEW_FIT));
    }

    static void Store(const Picture& picture, const std::string& name) {
        SavePicture(picture, std::getenv("QV8_SCREENSHOTS") + ("/window-" + name + ".png"), ImageFormat::kPng, 90);
    }

    void Take(const char* name) const {
        ASSERT_TRUE(window_->WaitUntilIdle());
        Sleep(300); // until all of it is painted
        Store(Grab(window_->Window()), name);
    }

    // A gesture in hundredths of the canvas.
    void GestureInCanvas(const std::string& gesture) const {
        RECT client{};
        GetClientRect(window_->Control(IDC_CANVAS), &client);
        Gesture(gesture, {0, 0}, client.right / 100.0, client.bottom / 100.0);
    }
};

TEST_F(Screenshots, OfTheMainWindowAndAPreview) {
    ChooseEffect("emboss");
    Take("main");
    ChooseEffect("ycc-gamma");
    window_->Type(window_->Part(0, IDC_PART_EDIT), L"-0.9");
    ASSERT_TRUE(window_->Command(ID_VIEW_DIVIDER));
    Take("divider");
}

TEST_F(Screenshots, OfAnArea) {
    ASSERT_TRUE(window_->Command(ID_SELECT_ELLIPSE));
    GestureInCanvas("p30,25 m70,80 r70,80");
    ChooseEffect("mosaic");
    window_->Type(window_->Part(0, IDC_PART_EDIT), L"12");
    window_->Type(window_->Part(1, IDC_PART_EDIT), L"12");
    Take("ellipse");
}

TEST_F(Screenshots, OfAPanorama) {
    Qv8({"select-image", "--polygon", "0,0 399,0 399,479 0,479", QV8_SAMPLE, Name("left.png")});
    Qv8({"select-image", "--polygon", "240,0 639,0 639,479 240,479", QV8_SAMPLE, Name("right.png")});
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("right.png")));
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("left.png")));
    ChooseEffect("panorama");
    ASSERT_TRUE(window_->Choose(window_->Part(0, IDC_PART_CHOICE), L"right.png"));
    ASSERT_TRUE(window_->WaitUntilIdle());
    GestureInCanvas("p35,30 r35,30 p60,30 r60,30 p37,70 r37,70");
    Take("panorama");
}

TEST_F(Screenshots, OfTheProgress) {
    Qv8({"resize", "--width", "8000", "--height", "6000", QV8_SAMPLE, Name("large.bmp")});
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("large.bmp")));
    ChooseEffect("convert-color"); // which takes longest
    window_->Choose(window_->Part(0, IDC_PART_CHOICE), L"8");
    SendMessageW(window_->Part(2, IDC_PART_FLAG), BM_CLICK, 0, 0);
    ASSERT_TRUE(window_->WaitUntilIdle());
    PostMessageW(window_->Window(), WM_COMMAND, ID_EFFECT_APPLY, 0);
    ASSERT_TRUE(Application::WaitFor([this] { return window_->Dialog() != nullptr; }));
    RECT dialog{};
    GetWindowRect(window_->Dialog(), &dialog);
    const HDC screen = GetDC(nullptr);
    const COLORREF painted = GetSysColor(COLOR_BTNFACE);
    Application::WaitFor([&] { return GetPixel(screen, dialog.left + 12, dialog.bottom - 12) == painted; }, 3000);
    Sleep(60); // the button too
    ReleaseDC(nullptr, screen);
    Store(Grab(window_->Window()), "progress");
    ASSERT_NE(window_->Dialog(), nullptr) << "it was too short to be seen";
    ASSERT_TRUE(window_->WaitUntilIdle(60000));
}

} // namespace
