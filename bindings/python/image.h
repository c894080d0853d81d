// Pictures that stay as the library has them between calls.
#ifndef QV8_PYTHON_IMAGE_H
#define QV8_PYTHON_IMAGE_H

#include <memory>

#include <pybind11/pybind11.h>

#include "pictures/formats.h"

// Never changed once it is made, so that threads may share it.
struct Image {
    Picture picture;
    ImageFormat format = ImageFormat::kBmp; // of the file that it comes from
    Metadata metadata;
};

using ImagePointer = std::shared_ptr<const Image>;

// The class in Python, reading and writing.
void AddImage(pybind11::module_& module);

#endif
