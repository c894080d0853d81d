#include "image/clipboard.h"

#include <cstring>
#include <utility>

#include "frame/progress.h"
#include "frame/status.h"

namespace qv8 {
namespace {

// The clipboard, closed again at the end. Windows of the host may be asked for the data or told of the change, and call
// the library: the status is set after that. Whether it could be opened is not asked: where it could not, no call in
// between gets anything from it or puts anything on it, and closing it leaves another's alone.
struct OpenedClipboard {
    explicit OpenedClipboard(HWND window) {
        OpenClipboard(window);
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        CloseClipboard();
    }
};

// Runs use(row) for every row and reports each out of `height`, so that the last report is one short of the end.
template <class Use>
bool ForEachRowOutOfHeight(int height, const Progress& progress, Use use) {
    for (int row = 0; row < height; ++row) {
        use(row);
        if (!progress.Report(row, height)) {
            return false;
        }
    }
    return true;
}

// Bytes of a header, which may be longer than 40 bytes, and of its colour table, without masks. 0 for a header that is
// shorter, in which none of the fields would be where we read them.
std::uint64_t HeaderAndTableBytes(const BITMAPINFOHEADER& header) {
    const int colours = DibNumColors(&header);
    if (header.biSize < kHeaderBytes || colours < 0) {
        return 0;
    }
    return std::uint64_t{header.biSize} + static_cast<std::uint64_t>(colours) * sizeof(RGBQUAD);
}

// --- To the clipboard ------------------------------------------------------------------------------------------------

// Where the rows begin in a picture of ours. One that came from the clipboard with a longer header has them behind all
// of it. 0 when the block does not hold them.
std::size_t OffsetOfRows(const Picture& picture) {
    const BITMAPINFOHEADER& header = *picture.view.header;
    const auto behind40 = static_cast<std::uint64_t>(picture.view.pixels - reinterpret_cast<const BYTE*>(&header));
    const std::uint64_t offset = behind40 + header.biSize - kHeaderBytes;
    const std::uint32_t needed = DibBytes(offset, header.biBitCount, header.biWidth, header.biHeight);
    return needed != 0 && needed <= GlobalSize(picture.lock.get_deleter().block) ? static_cast<std::size_t>(offset) : 0;
}

// The picture without its masks, which the clipboard is not given.
GlobalBlock CopyForClipboard(const Picture& source, const Progress& progress) {
    const DibView& view = source.view;
    const std::uint64_t headerBytes = HeaderAndTableBytes(*view.header);
    const std::size_t rows = headerBytes != 0 ? OffsetOfRows(source) : 0;
    if (headerBytes == 0 || headerBytes > rows) {
        return Fail(QV8_STATUS_PICTURE);
    }
    LockedBlock copy =
        AllocatePicture(DibBytes(headerBytes, view.bitCount, view.width, view.height), InitialPixels::kUnwritten);
    if (!copy) {
        return nullptr;
    }
    const auto* const from = static_cast<const BYTE*>(source.lock.get());
    auto* const to = copy.As<BYTE>();
    std::memcpy(to, from, static_cast<std::size_t>(headerBytes));
    const bool done = ForEachRowOutOfHeight(view.height, progress, [&](int row) {
        const std::size_t offset = static_cast<std::size_t>(row) * view.stride;
        std::memcpy(to + headerBytes + offset, from + rows + offset, view.stride);
    });
    return GlobalBlock(done ? copy.Release() : nullptr);
}

// The clipboard owns the block from then on, unless it did not take it.
bool GiveToClipboard(HWND window, GlobalBlock block) {
    const OpenedClipboard opened(window);
    EmptyClipboard();
    if (SetClipboardData(CF_DIB, block.get()) == nullptr) {
        return false;
    }
    static_cast<void>(block.release());
    return true;
}

// --- From the clipboard ----------------------------------------------------------------------------------------------

// A packed bitmap of another program's making.
struct ForeignDib {
    BITMAPINFOHEADER header = {}; // its first 40 bytes, the height made positive
    std::size_t headerBytes = 0;  // of all that stands in front of the rows
    std::size_t stride = 0;
    std::uint32_t bytes = 0;
    bool isTopDown = false;
};

// Where masks follow a 40-byte header they are counted here, so that it does not matter whether the companion does.
// Longer headers contain them.
std::uint64_t BytesBeforeRows(const BITMAPINFOHEADER& header) {
    const bool hasMasks = header.biSize == kHeaderBytes && HasMasks(header);
    const std::uint64_t bytes = HeaderAndTableBytes(header);
    return bytes != 0 && hasMasks ? bytes + kMaskBytes : bytes;
}

// Nothing is believed of what lies on the clipboard. False for what cannot be a picture.
bool Understand(const void* data, std::size_t blockBytes, ForeignDib& dib) {
    if (blockBytes < kHeaderBytes) {
        return false;
    }
    BITMAPINFOHEADER& header = dib.header;
    std::memcpy(&header, data, kHeaderBytes);
    if (LayoutOfDepth(header.biBitCount) == nullptr ||
        (header.biCompression != BI_RGB && header.biCompression != BI_BITFIELDS)) {
        return false;
    }
    dib.isTopDown = header.biHeight < 0;
    if (dib.isTopDown) { // in unsigned arithmetic: the least height stays negative and is refused below
        header.biHeight = static_cast<LONG>(0U - static_cast<DWORD>(header.biHeight));
    }
    const std::uint64_t headerBytes = BytesBeforeRows(header);
    dib.bytes = headerBytes != 0 ? DibBytes(headerBytes, header.biBitCount, header.biWidth, header.biHeight) : 0;
    if (dib.bytes == 0 || dib.bytes > blockBytes) {
        return false;
    }
    dib.headerBytes = static_cast<std::size_t>(headerBytes);
    dib.stride = static_cast<std::size_t>(DibRowBytes(header.biBitCount, header.biWidth));
    return true;
}

void CopyForeign(const ForeignDib& dib, const BYTE* from, BYTE* to) {
    std::memcpy(to, from, dib.headerBytes);
    std::memcpy(to, &dib.header, kHeaderBytes);
    const auto height = static_cast<std::size_t>(dib.header.biHeight);
    for (std::size_t row = 0; row != height; ++row) {
        const std::size_t source = dib.isTopDown ? height - 1 - row : row;
        std::memcpy(to + dib.headerBytes + row * dib.stride, from + dib.headerBytes + source * dib.stride, dib.stride);
    }
}

// A copy of what the opened clipboard holds.
struct ClipboardCopy {
    LockedBlock picture;
    int height = 0;
    int status = QV8_STATUS_PICTURE;
};

ClipboardCopy CopyOfClipboard() {
    ClipboardCopy copy;
    HGLOBAL data = GetClipboardData(CF_DIB);
    const GlobalLockScope lock = data != nullptr ? LockBlock(data) : GlobalLockScope();
    ForeignDib dib;
    if (!lock || !Understand(lock.get(), GlobalSize(data), dib)) {
        return copy;
    }
    copy.picture = AllocatePicture(dib.bytes, InitialPixels::kUnwritten);
    copy.status = copy.picture ? QV8_STATUS_SUCCESS : QV8_STATUS_MEMORY;
    if (copy.picture) {
        CopyForeign(dib, static_cast<const BYTE*>(lock.get()), copy.picture.As<BYTE>());
        copy.height = dib.header.biHeight;
    }
    return copy;
}

} // namespace

BOOL SetToClipboard(HWND window, HGLOBAL image, const Progress& progress) {
    SetErrorStatus(QV8_STATUS_SUCCESS);
    Picture source;
    if (!LockPicture(image, source)) {
        SetErrorStatus(QV8_STATUS_PICTURE); // one that cannot be locked, too
        return FALSE;
    }
    GlobalBlock copy = CheckPicture(source) ? CopyForClipboard(source, progress) : GlobalBlock();
    if (!copy) {
        return FALSE;
    }
    source.lock.reset(); // emptying the clipboard frees the picture if that is where it came from
    if (!progress.caller.Call([&] { return GiveToClipboard(window, std::move(copy)); })) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return FALSE;
    }
    return TRUE;
}

HGLOBAL GetFromClipboard(HWND window, const Progress& progress) {
    SetErrorStatus(QV8_STATUS_SUCCESS);
    // All of it is copied before the first report: whoever receives that may empty the clipboard, which frees the data.
    ClipboardCopy copy = progress.caller.Call([&] {
        OpenClipboard(window);
        return CopyOfClipboard();
    });
    if (copy.picture && !ForEachRowOutOfHeight(copy.height, progress, [](int) {})) {
        copy = {{}, 0, QV8_STATUS_CANCELLED};
    }
    progress.caller.Call([] { return CloseClipboard(); });
    SetErrorStatus(copy.status);
    return copy.picture.Release();
}

BOOL HasClipboardData(HWND window) {
    SetErrorStatus(QV8_STATUS_SUCCESS);
    OpenClipboard(window);
    const bool hasData = GetClipboardData(CF_DIB) != nullptr;
    CloseClipboard();
    SetErrorStatus(QV8_STATUS_SUCCESS);
    return hasData ? TRUE : FALSE;
}

BOOL ClearClipboard(HWND window) {
    SetErrorStatus(QV8_STATUS_SUCCESS);
    OpenClipboard(window);
    EmptyClipboard();
    const BOOL closed = CloseClipboard();
    SetErrorStatus(QV8_STATUS_SUCCESS);
    return closed;
}

} // namespace qv8
