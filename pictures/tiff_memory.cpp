#include "pictures/tiff_codec.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>

// What the library calls; nothing may be thrown through it.
struct TiffMemory::Operations {
    static TiffMemory& Of(void* handle) {
        return *static_cast<TiffMemory*>(handle);
    }

    static tmsize_t Read(thandle_t handle, void* to, tmsize_t size) {
        TiffMemory& memory = Of(handle);
        const ByteView whole = memory.written_.empty() ? memory.read_ : ByteView(memory.written_);
        const std::uint64_t from = std::min<std::uint64_t>(memory.place_, whole.size());
        const std::uint64_t count = std::min<std::uint64_t>(static_cast<std::uint64_t>(size), whole.size() - from);
        std::memcpy(to, whole.data() + from, static_cast<std::size_t>(count));
        memory.place_ = from + count;
        return static_cast<tmsize_t>(count);
    }

    static tmsize_t Write(thandle_t handle, void* from, tmsize_t size) {
        TiffMemory& memory = Of(handle);
        const std::uint64_t end = memory.place_ + static_cast<std::uint64_t>(size);
        try {
            memory.written_.resize(static_cast<std::size_t>(std::max<std::uint64_t>(end, memory.written_.size())));
        } catch (...) {
            memory.isShort_ = true;
            return -1;
        }
        std::memcpy(memory.written_.data() + memory.place_, from, static_cast<std::size_t>(size));
        memory.place_ = end;
        return size;
    }

    static toff_t Seek(thandle_t handle, toff_t offset, int whence) {
        TiffMemory& memory = Of(handle);
        const std::uint64_t before = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? memory.place_ : Size(handle);
        memory.place_ = before + offset;
        return memory.place_;
    }

    static toff_t Size(thandle_t handle) {
        return std::max(Of(handle).read_.size(), Of(handle).written_.size());
    }

    static int Close(thandle_t) {
        return 0;
    }

    static int NoteError(TIFF*, void* handle, const char*, const char* format, va_list values) {
        std::array<char, 256> text{};
        std::vsnprintf(text.data(), text.size(), format, values);
        try {
            Of(handle).error_ = text.data();
        } catch (...) {
            Of(handle).isShort_ = true;
        }
        return 1;
    }

    static int IgnoreWarning(TIFF*, void*, const char*, const char*, va_list) {
        return 1;
    }
};

std::unique_ptr<TIFF, decltype(&TIFFClose)> TiffMemory::Open(const char* mode, std::uint64_t largestBlock) {
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                   TIFFOpenOptionsFree);
    if (!options) {
        throw std::bad_alloc();
    }
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(),
                                        static_cast<tmsize_t>(std::min<std::uint64_t>(largestBlock, 0x7FFFFFFF)));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Operations::NoteError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Operations::IgnoreWarning, this);
    std::unique_ptr<TIFF, decltype(&TIFFClose)> file(
        TIFFClientOpenExt("picture", mode, this, Operations::Read, Operations::Write, Operations::Seek,
                          Operations::Close, Operations::Size, nullptr, nullptr, options.get()),
        TIFFClose);
    if (!file) {
        Fail();
    }
    return file;
}

void TiffMemory::Fail() const {
    if (isShort_) {
        throw std::bad_alloc();
    }
    throw Refusal(error_.empty() ? "it is damaged" : error_);
}
