#include "image.h"

#include <optional>
#include <string>

#include <pybind11/stl.h>

#include "call.h"
#include "pictures/codec.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"

namespace {

std::string FileName(const py::object& name) {
    return py::module_::import("os").attr("fsencode")(name).cast<std::string>();
}

ImagePointer AsImage(LoadedPicture loaded) {
    return std::make_shared<Image>(Image{std::move(loaded.picture), loaded.format, std::move(loaded.metadata)});
}

ReadOptions UpTo(std::optional<std::uint64_t> maxPixels) {
    ReadOptions options;
    options.maxPixels = maxPixels.value_or(options.maxPixels);
    return options;
}

ImagePointer Read(const py::object& name, std::optional<std::uint64_t> maxPixels) {
    const std::string file = FileName(name);
    const py::gil_scoped_release released;
    return AsImage(LoadPicture(file, UpTo(maxPixels)));
}

ImagePointer Decode(const py::bytes& bytes, std::optional<std::uint64_t> maxPixels) {
    const auto view = static_cast<std::string_view>(bytes);
    const py::gil_scoped_release released;
    return AsImage(DecodePicture({reinterpret_cast<const BYTE*>(view.data()), view.size()}, "bytes", UpTo(maxPixels)));
}

// What is to be written of a picture: that of an Image with all that goes with it, or an array.
class Written {
public:
    explicit Written(const py::object& object) : given_(Given::AsPicture(object, "image")) {
        if (given_.AsImage() != nullptr) {
            metadata = given_.AsImage()->metadata;
        }
        metadata.alpha = given_.HasAlpha();
    }
    const Picture& Get() {
        given_.Convert();
        return given_.Get();
    }

    Metadata metadata;

private:
    Given given_;
};

WriteOptions HowToWrite(ImageFormat format, int quality, bool strip, bool lossless, bool sync) {
    if (quality < 1 || quality > 100) {
        throw py::value_error("quality: " + std::to_string(quality) + " is not a whole number from 1 to 100");
    }
    WriteOptions options;
    options.format = format;
    options.quality = quality;
    options.strip = strip;
    options.lossless = lossless;
    options.sync = sync;
    return options;
}

void Write(const py::object& name, const py::object& image, const std::optional<std::string>& format, int quality,
           bool strip, bool lossless, bool sync) {
    const std::string file = FileName(name);
    Written written(image);
    const WriteOptions options =
        HowToWrite(format ? FormatForWord(*format) : FormatForName(file), quality, strip, lossless, sync);
    const py::gil_scoped_release released;
    PreparePicture(written.Get(), written.metadata, file, options)->Commit();
}

py::bytes Encode(const py::object& image, const std::string& format, int quality, bool strip, bool lossless) {
    Written written(image);
    const WriteOptions options = HowToWrite(FormatForWord(format), quality, strip, lossless, false);
    std::vector<BYTE> bytes;
    {
        const py::gil_scoped_release released;
        bytes = EncodePicture(written.Get(), written.metadata, options, "bytes");
    }
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

ImagePointer FromObject(const py::object& object) {
    Given given = Given::AsPicture(object, "image");
    if (given.AsImage() != nullptr) {
        return object.cast<ImagePointer>();
    }
    auto image = std::make_shared<Image>();
    const py::gil_scoped_release released;
    given.Convert();
    image->picture = given.Take();
    image->metadata.alpha = given.HasAlpha();
    return image;
}

py::array ArrayOf(const Image& image) {
    std::optional<ArrayPixels> pixels;
    {
        const py::gil_scoped_release released;
        pixels.emplace(CopyOf(image.picture), image.metadata.alpha);
    }
    return pixels->Release();
}

// What other packages ask for pixels by. The strides are told in any case: Pillow takes tobytes() then.
py::dict ArrayInterface(const Image& image) {
    const py::array array = py::module_::import("numpy").attr("ascontiguousarray")(ArrayOf(image));
    py::dict interface;
    interface["version"] = 3;
    interface["typestr"] = "|u1";
    interface["shape"] = array.attr("shape");
    interface["strides"] = array.attr("strides");
    interface["data"] = array;
    return interface;
}

// A file without loss and without what goes along with the picture.
py::tuple GetState(const ImagePointer& image) {
    WriteOptions options;
    options.strip = true;
    const std::vector<BYTE> bytes = EncodePicture(image->picture, {}, options, "bytes");
    return py::make_tuple(py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size()), image->metadata.alpha);
}

ImagePointer SetState(const py::tuple& state) {
    const ImagePointer decoded = Decode(state[0].cast<py::bytes>(), std::uint64_t{1} << 31);
    const auto image = std::const_pointer_cast<Image>(decoded);
    image->metadata.alpha = state[1].cast<bool>();
    return image;
}

py::tuple SizeOf(const Image& image) {
    const LockedPicture locked(image.picture);
    return py::make_tuple(locked.Width(), locked.Height());
}

int DepthOf(const Image& image) {
    return LockedPicture(image.picture).Header().biBitCount;
}

std::string Described(const Image& image) {
    const LockedPicture locked(image.picture);
    return "<qv8.Image of " + std::to_string(locked.Width()) + " x " + std::to_string(locked.Height()) + " pixels of " +
           std::to_string(DepthOf(image)) + " bits>";
}

} // namespace

void AddImage(py::module_& module) {
    using namespace py::literals;
    py::class_<Image, std::shared_ptr<Image>>(
        module, "Image",
        "A picture that stays as the effects want it, at any depth: a chain of effects converts nothing in between.\n\n"
        "Made from anything that an effect takes, by read() or by an effect that was given one. It never changes.\n"
        "numpy.asarray(image) and PIL.Image.fromarray(image) copy its pixels.")
        .def(py::init([](const py::object& image) { return std::const_pointer_cast<Image>(FromObject(image)); }),
             "image"_a)
        .def_property_readonly("size", &SizeOf, "Width and height.")
        .def_property_readonly("depth", &DepthOf, "Bits of a pixel: 1, 4, 8, 16, 24 or 32.")
        .def_property_readonly(
            "alpha", [](const Image& image) { return image.metadata.alpha; }, "Whether the fourth bytes are alpha.")
        .def("array", &ArrayOf, "The pixels: H x W for grey levels, else H x W x 3, with alpha H x W x 4.")
        .def(
            "tobytes", [](const Image& image) { return ArrayOf(image).attr("tobytes")(); },
            "The pixels of array() one behind the other.")
        .def_property_readonly("__array_interface__", &ArrayInterface)
        .def("__repr__", &Described)
        .def(py::pickle(&GetState,
                        [](const py::tuple& state) { return std::const_pointer_cast<Image>(SetState(state)); }));
    module.def(
        "read", &Read, "name"_a, py::kw_only(), "max_pixels"_a = py::none(),
        "Reads a picture file: BMP, PNG, JPEG, TIFF or WebP, told by its content. It stands upright, and what goes\n"
        "along with it (profile, EXIF, resolution) is written again by write().");
    module.def("decode", &Decode, "data"_a, py::kw_only(), "max_pixels"_a = py::none(),
               "Reads a picture from the bytes of a file.");
    module.def(
        "write", &Write, "name"_a, "image"_a, py::kw_only(), "format"_a = py::none(), "quality"_a = 90,
        "strip"_a = false, "lossless"_a = false, "sync"_a = true,
        "Writes a picture file, whole or not at all, over one that is there. The format is that of the ending of\n"
        "the name unless given; quality is that of JPEG and WebP; strip leaves out what goes along with it.");
    module.def("encode", &Encode, "image"_a, "format"_a, py::kw_only(), "quality"_a = 90, "strip"_a = false,
               "lossless"_a = false, "The bytes of a picture file.");
}
