// The input is what another program has put on the clipboard.
#include <cstddef>
#include <span>

#include "qv8com.h"
#include "qv8effect.h"
#include "support/clipboard.h"

namespace {

// The bytes of what the clipboard gives, after the checks that hold for anything.
test::Bytes Fetch() {
    const test::Block picture(QV8GetFromClipBrd(nullptr, 1, 0, 0, 0));
    const int status = GetErrorStatus();
    if (picture == nullptr) {
        EXPECT_TRUE(status == QV8_STATUS_PICTURE || status == QV8_STATUS_MEMORY) << status;
        return {};
    }
    EXPECT_EQ(status, QV8_STATUS_SUCCESS);
    test::Picture read{test::ReadBlock(picture.get())};
    const BITMAPINFOHEADER header = read.Header();
    EXPECT_TRUE(header.biWidth > 0 && header.biHeight > 0 && header.biSize >= sizeof header);
    const std::size_t rows = read.RowBytes() * static_cast<std::size_t>(read.Height());
    const std::size_t masks = header.biSize == sizeof header ? read.PixelOffset() - 4 * read.ColourCount() - 40 : 0;
    EXPECT_EQ(read.bytes.size(), header.biSize + 4 * read.ColourCount() + masks + rows);
    // Nothing is promised of a picture with a longer header, but that it harms nothing.
    const test::Block grey(QV8SetGray(picture.get(), 1, 0, 0, 0));
    return std::move(read.bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    test::PutOnClipboard(test::Bytes(bytes, bytes + size));
    const test::Bytes first = Fetch();
    EXPECT_TRUE(Fetch() == first);
    return 0;
}
