#include "model/picture_levels.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "catalogue/run.h"
#include "pictures/failure.h"

namespace {

constexpr LONG kSmallestSide = 128;

} // namespace

Picture Resized(const Picture& picture, LONG width, LONG height, const Report& report) {
    const Progress progress(report);
    catalogue::Request request;
    request.image = picture.Handle();
    request.values = {width, height, LONG{1}};
    request.progressOwner = progress.Owner();
    const catalogue::Outcome outcome = catalogue::Run(*catalogue::FindEffect("resize"), request);
    if (outcome.failed != catalogue::Failed::kNot) {
        throw Failure(kExitEffectFailed, outcome.words);
    }
    return Picture(outcome.result.pictures.hImage);
}

Picture PartOf(const Picture& picture, RECT& part) {
    const LockedPicture from(picture);
    const unsigned bits = from.Header().biBitCount;
    part.left -= bits < 8 ? part.left % 8 : 0;
    const auto width = static_cast<std::size_t>(part.right - part.left);
    const auto height = static_cast<std::size_t>(part.bottom - part.top);
    const auto stride = static_cast<std::size_t>(RowBytes(bits, width));
    Picture result(GlobalAlloc(GHND, from.PixelOffset() + stride * height));
    if (!result) {
        throw std::bad_alloc();
    }
    const LockedPicture to(result);
    std::memcpy(to.Bytes(), from.Bytes(), from.PixelOffset());
    to.Header().biWidth = static_cast<LONG>(width);
    to.Header().biHeight = static_cast<LONG>(height);
    to.Header().biSizeImage = 0;
    const std::size_t first = static_cast<std::size_t>(part.left) * bits / 8;
    for (std::size_t y = 0; y != height; ++y) {
        std::memcpy(to.RowFromTop(y), from.RowFromTop(static_cast<std::size_t>(part.top) + y) + first,
                    (width * bits + 7) / 8);
    }
    return result;
}

PictureLevels::PictureLevels(SharedPicture whole) {
    levels_.push_back({std::move(whole), 1});
}

void PictureLevels::MakeSmaller(const Report& report) {
    const LockedPicture whole(*Whole());
    try {
        for (;;) {
            const Picture& last = *levels_.back().picture;
            const double scale = levels_.back().scale / 2;
            const auto width = static_cast<LONG>(static_cast<double>(whole.Width()) * scale);
            const auto height = static_cast<LONG>(static_cast<double>(whole.Height()) * scale);
            if (std::max(width, height) < kSmallestSide || std::min(width, height) < 1) {
                break;
            }
            levels_.push_back({std::make_shared<const Picture>(Resized(last, width, height, report)), scale});
        }
        isComplete_ = true;
    } catch (const Failure&) { // it is shown from what there is
    } catch (const std::bad_alloc&) {
    }
}

const Level& PictureLevels::AtLeast(double scale) const {
    const auto isTooSmall = [scale](const Level& level) { return level.scale < scale; };
    const auto end = std::find_if(levels_.begin() + 1, levels_.end(), isTooSmall);
    return *(end - 1);
}
