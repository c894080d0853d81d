#include "call.h"

#include <algorithm>
#include <list>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "catalogue/picture_header.h"
#include "catalogue/text.h"
#include "chains/file_run.h"
#include "chains/mask.h"
#include "pictures/failure.h"

namespace {

constexpr auto kBetweenLooks = std::chrono::milliseconds(100);

// Numbers and lists as they are written on command lines: (1, 2) is "1,2", ((1, 2), (3, 4)) is "1,2 3,4".
std::string TextOf(py::handle value) {
    if (py::isinstance<py::str>(value)) {
        return value.cast<std::string>();
    }
    if (py::isinstance<py::bool_>(value)) {
        return value.cast<bool>() ? "1" : "0";
    }
    if (PyIndex_Check(value.ptr()) != 0) {
        return py::str(py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()))).cast<std::string>();
    }
    if (PyFloat_Check(value.ptr())) {
        return py::repr(py::float_(value.cast<double>())).cast<std::string>();
    }
    std::string text;
    for (const py::handle& item : py::iter(value)) {
        const std::string word = TextOf(item);
        text += (text.empty() ? "" : word.find(',') != std::string::npos ? " " : ",") + word;
    }
    return text;
}

// A kernel is a name or a file, rows of weights, or these with divisor and offset as qv8.Kernel.
std::string KernelText(py::handle value) {
    std::string text;
    if (py::hasattr(value, "weights")) {
        for (const char* const number : {"divisor", "offset"}) {
            if (const py::object given = value.attr(number); !given.is_none()) {
                text += std::string(number) + " " + TextOf(given) + "\n";
            }
        }
        return text + KernelText(value.attr("weights"));
    }
    for (const py::handle& row : py::iter(value)) {
        for (const py::handle& weight : py::iter(row)) {
            text += TextOf(weight) + " ";
        }
        text += "\n";
    }
    return text;
}

bool IsFileName(py::handle value) {
    return py::isinstance<py::str>(value) || py::hasattr(value, "__fspath__");
}

// A step of a chain as it is filled in by Python, and the pictures that it needs.
class Filling {
public:
    explicit Filling(const std::string& name) : step_(EffectNamed(name)) {}

    void SetValues(const py::sequence& values) {
        for (std::size_t i = 0; i != values.size(); ++i) {
            const py::object value = values[i];
            if (!value.is_none()) {
                SetValue(step_.settings.at(i), value);
            }
        }
    }
    void SetArea(py::handle area);

    // What becomes of rectangles, now that the size of the picture is known, and of pictures. Needs no interpreter.
    void Complete(HGLOBAL image);

    const Step& AsStep() const {
        return step_;
    }

private:
    [[noreturn]] void Fail(const std::string& mistake) const {
        throw py::value_error(std::string(step_.effect->name) + ": " + mistake);
    }
    void SetText(Setting& setting, const std::string& text) {
        if (const std::string mistake = Set(setting, text); !mistake.empty()) {
            Fail(std::string(setting.parameter->name) + ": " + mistake);
        }
    }
    void SetValue(Setting& setting, py::handle value);
    void SetPicture(Setting& setting, py::handle value, bool inverted);
    void MarkPixel(const BITMAPINFOHEADER& header, LONG x, LONG y);

    struct Needed {
        Setting* setting;
        Given given;
    };

    Step step_;
    std::list<Needed> pictures_;
    std::optional<RECT> rectangle_;
    Picture marked_;
};

void Filling::SetPicture(Setting& setting, py::handle value, bool inverted) {
    using enum catalogue::Kind;
    const bool isMask = setting.parameter->kind == kMask || setting.parameter->kind == kPattern;
    const char* const name = setting.parameter->name;
    pictures_.push_back({&setting, isMask ? Given::AsMask(value, name, inverted) : Given::AsPicture(value, name)});
}

void Filling::SetValue(Setting& setting, py::handle value) {
    const bool isKernel = setting.parameter->kind == catalogue::Kind::kKernel;
    if (catalogue::MayNameFile(*setting.parameter)) {
        if (IsFileName(value)) {
            return SetText(setting, py::str(py::module_::import("os").attr("fspath")(value)).cast<std::string>());
        }
        if (!isKernel) {
            return SetPicture(setting, value, false);
        }
        catalogue::Kernel kernel;
        if (const std::string mistake = catalogue::ParseKernel(KernelText(value), kernel); !mistake.empty()) {
            Fail(std::string(setting.parameter->name) + ": " + mistake);
        }
        setting.value = kernel;
        return;
    }
    SetText(setting, TextOf(value));
}

void Filling::SetArea(py::handle area) {
    if (area.is_none()) {
        return;
    }
    const bool isPlain = !py::hasattr(area, "outside"); // an array, as it is
    const std::string kind = isPlain ? "mask" : area.attr("kind").cast<std::string>();
    const py::object value = isPlain ? py::reinterpret_borrow<py::object>(area) : area.attr("value");
    const bool outside = !isPlain && area.attr("outside").cast<bool>();
    Setting* const setting = step_.Find(kind == "rectangle" ? "polygon" : kind);
    Setting* const outsideSetting = step_.Find("outside");
    if (setting == nullptr || outsideSetting == nullptr) {
        Fail("it takes no " + kind + " as its area");
    }
    if (kind == "rectangle") {
        rectangle_ = catalogue::ParseRectangle(TextOf(value));
        if (!rectangle_) {
            Fail("area: a rectangle is (left, top, right, bottom)");
        }
    } else if (kind == "mask" && !IsFileName(value)) {
        SetPicture(*setting, value, outside);
    } else {
        SetValue(*setting, value);
    }
    if (outside) {
        outsideSetting->value = LONG{1};
    }
}

// A rectangle is a polygon whose outline is part of it. One of a single pixel has no outline that could be drawn.
void Filling::Complete(HGLOBAL image) {
    for (auto& [setting, given] : pictures_) {
        given.Convert();
        setting->value = given.Handle();
    }
    if (!rectangle_) {
        return;
    }
    const BITMAPINFOHEADER header = catalogue::HeaderOf(image).value_or(BITMAPINFOHEADER{});
    const LONG left = std::max<LONG>(rectangle_->left, 0);
    const LONG top = std::max<LONG>(rectangle_->top, 0);
    const LONG right = std::min(rectangle_->right, header.biWidth) - 1;
    const LONG bottom = std::min(rectangle_->bottom, header.biHeight) - 1;
    if (left > right || top > bottom) {
        throw Failure(kExitUsage, "area: the rectangle has no pixel of the picture");
    }
    if (left == right && top == bottom) {
        return MarkPixel(header, left, top);
    }
    step_.Find("polygon")->value = std::vector<POINT>{{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

void Filling::MarkPixel(const BITMAPINFOHEADER& header, LONG x, LONG y) {
    Setting* const mask = step_.Find("mask");
    if (mask == nullptr) {
        throw Failure(kExitUsage, std::string(step_.effect->name) + ": a rectangle of one pixel is no area for it");
    }
    const auto width = static_cast<std::size_t>(header.biWidth);
    std::vector<BYTE> marks(width * static_cast<std::size_t>(header.biHeight));
    marks[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] = 1;
    const ArrayView view{marks.data(), static_cast<std::size_t>(header.biHeight), width, 1, {header.biWidth, 1, 0}};
    marked_ = MaskFromView(view, std::holds_alternative<LONG>(step_.Find("outside")->value));
    mask->value = marked_.Handle();
}

// Pixels in the form that was given, ready to be handed over.
struct Answer {
    std::shared_ptr<Image> image;
    std::unique_ptr<ArrayPixels> pixels;

    py::object Release() {
        return pixels ? py::object(pixels->Release()) : py::cast(ImagePointer(std::move(image)));
    }
};

Answer AnswerOf(Picture picture, bool alpha, const Image* like, bool asImage) {
    Answer answer;
    if (!asImage) {
        answer.pixels = std::make_unique<ArrayPixels>(std::move(picture), alpha);
        return answer;
    }
    answer.image = std::make_shared<Image>();
    answer.image->picture = std::move(picture);
    if (like != nullptr) {
        answer.image->format = like->format;
        answer.image->metadata = like->metadata;
    }
    answer.image->metadata.alpha = alpha;
    return answer;
}

// So much of a picture stays in a processor's own cache on its way through an effect, and is less than what the heap
// gets from the system anew for every block.
constexpr std::size_t kBandBytes = 120000;

// Changes a few rows after another: an array is read once and written once then. Needs an effect that looks at single
// pixels, and an array of three or four channels, whose result never has a colour table. Null when there was nothing to
// do.
std::unique_ptr<ArrayPixels> ApplyInBands(const ReadyChain& chain, const ArrayView& view, const ApplyMode& mode) {
    const std::size_t rows = std::max<std::size_t>(1, kBandBytes / (view.width * view.channels));
    std::unique_ptr<ArrayPixels> pixels;
    for (std::size_t y = 0; y < view.height; y += rows) {
        const ArrayView band = RowsOf(view, y, rows);
        const Picture picture = PictureFromView(band);
        const Report report = [&](int percent) {
            const std::size_t hundredths = 100 * y + static_cast<std::size_t>(percent) * band.height;
            return mode.report(static_cast<int>(hundredths / view.height));
        };
        const ChainResult result = chain.Apply({&picture, "image", view.channels == 4}, {report, mode.lenient});
        if (!result.image) {
            return nullptr;
        }
        if (!pixels) {
            const std::size_t channels = LockedPicture(result.image).Header().biBitCount / 8U;
            pixels = std::make_unique<ArrayPixels>(view.height, view.width, channels);
        }
        pixels->Put(y, result.image);
    }
    return pixels;
}

// Runs what `prepare` makes of a picture of Python's, and answers in the form of that picture. An array goes through an
// effect that looks at single pixels in bands; what is prepared must not need the picture then.
template <class Prepare>
py::object Answered(const py::object& image, const py::object& progress, bool takesPicture, bool lenient,
                    bool looksAtSinglePixels, Prepare prepare) {
    std::optional<Given> given;
    if (takesPicture) {
        given = Given::AsPicture(image, "image");
    } else if (!image.is_none()) {
        throw py::type_error("image: the first effect makes its picture");
    }
    const Image* const like = given ? given->AsImage() : nullptr;
    const bool asImage = !given || like != nullptr;
    Watch watch(progress);
    Answer picture;
    Answer mask;
    watch.Run([&] {
        const ApplyMode mode{.report = watch.AsReport(), .lenient = lenient};
        if (looksAtSinglePixels && given->AsArray() != nullptr && given->AsArray()->channels != 1) {
            picture.pixels = ApplyInBands(prepare(Subject()), *given->AsArray(), mode);
            return;
        }
        if (given) {
            given->Convert();
        }
        const Subject subject{given ? &given->Get() : nullptr, "image", given && given->HasAlpha()};
        ChainResult result = prepare(subject).Apply(subject, mode);
        if (result.image) {
            picture = AnswerOf(std::move(result.image), result.alpha, like, asImage);
        }
        if (result.mask && asImage) {
            mask = AnswerOf(std::move(result.mask), false, nullptr, true);
        } else if (result.mask) {
            mask.pixels = std::make_unique<ArrayPixels>(std::move(result.mask));
        }
    });
    if (!picture.image && !picture.pixels) { // there was nothing to do
        return image;
    }
    const bool hasMask = mask.image || mask.pixels;
    return hasMask ? py::make_tuple(picture.Release(), mask.Release()) : picture.Release();
}

} // namespace

Given Given::AsPicture(py::handle object, const char* name) {
    Given given;
    if (py::isinstance<Image>(object)) {
        given.image_ = object.cast<ImagePointer>();
        return given;
    }
    // A palette or inks would pass for grey levels or alpha.
    if (py::hasattr(object, "getbands")) {
        const std::string mode = py::str(object.attr("mode")).cast<std::string>();
        if (mode != "L" && mode != "RGB" && mode != "RGBA") {
            throw py::type_error(std::string(name) + ": a picture of mode " + mode +
                                 R"( has to be converted first, such as by .convert("RGB"))");
        }
    }
    const py::array array = py::array::ensure(object);
    if (!array) {
        throw py::type_error(std::string(name) + ": an array or a qv8.Image is needed");
    }
    given.view_ = ViewOfPicture(array, name);
    given.kept_ = array;
    return given;
}

Given Given::AsMask(py::handle object, const char* name, bool inverted) {
    Given given;
    given.isMask_ = true;
    given.inverted_ = inverted;
    if (py::isinstance<Image>(object)) {
        given.image_ = object.cast<ImagePointer>();
        return given;
    }
    const py::array array = py::array::ensure(object);
    if (!array) {
        throw py::type_error(std::string(name) + ": an array of bool or a qv8.Image is needed");
    }
    given.view_ = ViewOfMask(array, name);
    given.kept_ = array;
    return given;
}

void Given::Convert() {
    if (!image_) {
        made_ = isMask_ ? MaskFromView(view_, inverted_) : PictureFromView(view_);
    } else if (isMask_ && (inverted_ || LockedPicture(image_->picture).Header().biBitCount != 1)) {
        made_ = ::AsMask(CopyOf(image_->picture), "mask");
        if (inverted_) {
            InvertMask(made_);
        }
    }
}

bool Watch::GoesOn(int percent) {
    if (percent == std::exchange(told_, percent)) {
        return true;
    }
    const auto now = std::chrono::steady_clock::now();
    if (progress_.is_none() && now - looked_ < kBetweenLooks) {
        return true;
    }
    looked_ = now;
    const py::gil_scoped_acquire acquired;
    return Ask(percent);
}

bool Watch::Ask(int percent) {
    try {
        if (PyErr_CheckSignals() != 0) {
            throw py::error_already_set();
        }
        return progress_.is_none() || !progress_(percent).is(py::bool_(false));
    } catch (py::error_already_set& error) {
        raised_.emplace(std::move(error));
        return false;
    }
}

py::object Apply(const std::string& name, const py::object& image, const py::sequence& values, const py::object& area,
                 const py::object& progress) {
    Filling filling(name);
    filling.SetValues(values);
    filling.SetArea(area);
    const Step& step = filling.AsStep();
    const bool looksAtSinglePixels = area.is_none() && step.LooksAtSinglePixels();
    return Answered(image, progress, step.effect->TakesPicture(), false, looksAtSinglePixels,
                    [&](const Subject& subject) {
                        filling.Complete(subject.image != nullptr ? subject.image->Handle() : nullptr);
                        if (const std::string mistake = CheckStep(step); !mistake.empty()) {
                            throw Failure(kExitUsage, name + ": " + mistake);
                        }
                        return ReadyChain({step}, FileOptions().maxPixels);
                    });
}

py::object ApplyChain(const ReadyChain& chain, const py::object& image, const py::object& progress, bool lenient) {
    return Answered(image, progress, chain.TakesPicture(), lenient, false,
                    [&](const Subject&) -> const ReadyChain& { return chain; });
}
