// NumPy arrays as pictures, and pictures as NumPy arrays.
#ifndef QV8_PYTHON_ARRAYS_H
#define QV8_PYTHON_ARRAYS_H

#include <array>
#include <cstddef>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include "pictures/picture.h"

namespace py = pybind11;

// The pixels of an array, whatever its strides: one, three or four bytes each, red first, top row first. Good as long
// as the array.
struct ArrayView {
    const BYTE* first = nullptr;
    std::size_t height = 0;
    std::size_t width = 0;
    std::size_t channels = 1;
    std::array<std::ptrdiff_t, 3> steps{}; // from row to row, from pixel to pixel, from channel to channel
};

// Looks at an array of uint8 of H x W, H x W x 3 or H x W x 4. Throws a type or value error that begins with `name`.
ArrayView ViewOfPicture(const py::array& array, const char* name);

// The same for a mask, an array of bool of H x W.
ArrayView ViewOfMask(const py::array& array, const char* name);

// Of 8 bits with a grey ramp, 24 or 32 bits. Needs no interpreter.
Picture PictureFromView(const ArrayView& view);

// The rows from `y` on, at most `count` of them.
ArrayView RowsOf(const ArrayView& view, std::size_t y, std::size_t count);

// Of 1 bit; `inverted` marks what the array does not. Needs no interpreter.
Picture MaskFromView(const ArrayView& view, bool inverted);

Picture CopyOf(const Picture& picture);

// Pixels in the form of an array, in the block of the picture that they come from wherever they fit there.
class ArrayPixels {
public:
    // Grey levels where the picture has nothing else, alpha where it is 32 bits with `alpha`, or has a fourth byte that
    // is not 0. Throws a Failure when the picture has channel masks that the library does not know. Needs no
    // interpreter.
    ArrayPixels(Picture picture, bool alpha);

    // Of a mask: an array of bool.
    explicit ArrayPixels(Picture mask);

    // Room for pixels of one, three or four bytes.
    ArrayPixels(std::size_t height, std::size_t width, std::size_t channels);

    ArrayPixels(const ArrayPixels&) = delete;
    ArrayPixels& operator=(const ArrayPixels&) = delete;
    ~ArrayPixels();

    // Puts a picture of so many bytes for each pixel into the rows from `y` on.
    void Put(std::size_t y, const Picture& rows);

    // The array, which owns the block from then on.
    py::array Release();

private:
    void TakeOver(Picture picture, std::size_t channels);
    void Shape(Picture block, std::size_t channels);
    void Convert(const Picture& picture, bool alpha);

    Picture block_;
    BYTE* first_ = nullptr;
    const char* type_ = "u1";
    std::vector<std::size_t> shape_;
    std::size_t rowStep_ = 0;
};

#endif
