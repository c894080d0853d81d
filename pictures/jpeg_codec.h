// What reading and writing of JPEG files have in common. The library ends a failed operation with a long jump.
#ifndef QV8_PICTURES_JPEG_CODEC_H
#define QV8_PICTURES_JPEG_CODEC_H

#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <new>
#include <string>

#include <jpeglib.h>

#include "pictures/codec.h"

struct JpegErrors {
    jpeg_error_mgr base{};
    std::jmp_buf jump{};
    char message[JMSG_LENGTH_MAX] = "";

    // Fills `base` and returns it. Damage of the pixels, which the library would mend somehow, ends the operation too.
    jpeg_error_mgr* Watch();

    // Does `work`, which must not leave anything behind that has a destructor. Throws a Refusal when it fails.
    template <class Work>
    void Try(Work work) {
        if (setjmp(jump) != 0) { // NOLINT(cert-err52-cpp): the library knows no other way
            Fail();
        }
        work();
    }

private:
    [[noreturn]] void Fail() const;
};

LoadedPicture ReadJpeg(ByteView file, const ReadOptions& options);

#endif
