// What Python gives an effect, and what it gets back.
#ifndef QV8_PYTHON_CALL_H
#define QV8_PYTHON_CALL_H

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include <pybind11/pybind11.h>

#include "arrays.h"
#include "chains/chain.h"
#include "image.h"

// A picture that Python gave, an array or an Image. With the interpreter it is looked at, without it is converted.
class Given {
public:
    // Throws a type or value error that begins with `name`.
    static Given AsPicture(py::handle object, const char* name);
    static Given AsMask(py::handle object, const char* name, bool inverted);

    // Makes the picture where there is none yet. Needs no interpreter.
    void Convert();

    HGLOBAL Handle() const {
        return Get().Handle();
    }
    const Picture& Get() const {
        return made_ ? made_ : image_->picture;
    }
    // The picture that was made of an array.
    Picture Take() {
        return std::move(made_);
    }
    const Image* AsImage() const {
        return image_.get();
    }
    // The array that it is, or null.
    const ArrayView* AsArray() const {
        return image_ ? nullptr : &view_;
    }
    // Whether the fourth bytes are alpha.
    bool HasAlpha() const {
        return image_ ? image_->metadata.alpha : view_.channels == 4;
    }

private:
    py::object kept_; // what the view looks into
    ArrayView view_;
    bool isMask_ = false;
    bool inverted_ = false;
    ImagePointer image_;
    Picture made_;
};

// Passes progress on to a function of Python, which cancels by returning False or raising, and looks for Ctrl-C.
class Watch {
public:
    explicit Watch(py::object progress) : progress_(std::move(progress)) {}

    Report AsReport() {
        return [this](int percent) { return GoesOn(percent); };
    }

    // Runs `work` without the interpreter. Throws what the function of Python raised, where that ended the work.
    template <class Work>
    auto Run(Work work) {
        try {
            const py::gil_scoped_release released;
            return work();
        } catch (...) {
            if (raised_) {
                throw py::error_already_set(*std::exchange(raised_, std::nullopt));
            }
            throw;
        }
    }

private:
    bool GoesOn(int percent);
    bool Ask(int percent);

    py::object progress_;
    int told_ = -1;
    std::chrono::steady_clock::time_point looked_ = std::chrono::steady_clock::now();
    std::optional<py::error_already_set> raised_;
};

// Calls an effect. `values` are in the order of its parameters, None being the default; `area` is None or has the
// attributes that areas.py gives it.
py::object Apply(const std::string& name, const py::object& image, const py::sequence& values, const py::object& area,
                 const py::object& progress);

// The same for whatever chain.
py::object ApplyChain(const ReadyChain& chain, const py::object& image, const py::object& progress, bool lenient);

#endif
