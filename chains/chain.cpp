#include "chains/chain.h"

#include <utility>

#include "chains/alpha.h"
#include "chains/kernel_file.h"
#include "chains/mask.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/quantise.h"

namespace {

bool IsMarking(catalogue::Kind kind) {
    return kind == catalogue::Kind::kMask || kind == catalogue::Kind::kPattern;
}

// The name of the picture that the masks of an effect belong to, when that is not the effect's first.
const Setting* OwnerOfMask(const Step& step) {
    for (const Setting& setting : step.settings) {
        if (setting.parameter->kind == catalogue::Kind::kMaskedPicture) {
            return &setting;
        }
    }
    return nullptr;
}

bool AreExchanged(const Step& step) {
    catalogue::Area area;
    catalogue::MakeArea(*step.effect, step.AreaValues(), area);
    return area.inside == 0;
}

} // namespace

ReadyChain::ReadyChain(const Chain& chain, std::uint64_t maxPixels) {
    for (const Step& step : chain) {
        steps_.push_back(Prepare(step, maxPixels));
    }
}

ReadyChain::ReadyStep ReadyChain::Prepare(const Step& step, std::uint64_t maxPixels) {
    ReadyStep ready{step.effect, {}, {}, {}, nullptr, step.ChosenColours(), false};
    Step filled = step;
    for (Setting& setting : filled.settings) {
        if (setting.file.empty()) {
            continue;
        }
        if (setting.parameter->kind == catalogue::Kind::kKernel) {
            setting.value = LoadKernel(setting.file);
            continue;
        }
        Picture picture = LoadPicture(setting.file, maxPixels).picture;
        if (IsMarking(setting.parameter->kind)) {
            picture = AsMask(std::move(picture), setting.file);
        }
        if (setting.parameter->kind == catalogue::Kind::kMask && AreExchanged(step)) {
            InvertMask(picture);
        }
        setting.value = picture.Handle();
        ready.pictures.push_back(std::move(picture));
        if (setting.parameter->kind == catalogue::Kind::kMask) {
            ready.mask = ready.pictures.back().Handle();
            ready.maskName = setting.file;
        }
    }
    if (const Setting* const owner = OwnerOfMask(filled); owner != nullptr && ready.mask != nullptr) {
        CheckMaskSize(ready.mask, ready.maskName, std::get<HGLOBAL>(owner->value), owner->file);
        ready.mask = nullptr;
    }
    ready.dither = step.Dithers();
    ready.request.values = filled.OwnValues();
    catalogue::MakeArea(*step.effect, filled.AreaValues(), ready.request.area);
    ready.request.maxPixels = maxPixels;
    return ready;
}

ChainResult ReadyChain::ApplyStep(const ReadyStep& step, const Subject& subject, DWORD progressOwner,
                                  const ApplyMode& mode) {
    if (step.colours != 0) {
        return ChooseColours(step, subject);
    }
    auto* const image = subject.image != nullptr ? subject.image->Handle() : nullptr;
    if (step.mask != nullptr) {
        CheckMaskSize(step.mask, step.maskName, image, subject.name);
    }
    catalogue::Request request = step.request;
    request.image = image;
    request.progressOwner = progressOwner;
    request.callsTwin = mode.callsTwins;
    const catalogue::Outcome outcome = catalogue::Run(*step.effect, request);
    ChainResult result{Picture(outcome.result.pictures.hImage), Picture(outcome.result.pictures.hMask), false, {}};
    const bool unneeded = mode.lenient && step.effect->refusalMeansUnneeded && outcome.status == QV8_STATUS_PARAMETER;
    if (outcome.failed == catalogue::Failed::kNot || unneeded) {
        return result;
    }
    if (outcome.status == QV8_STATUS_CANCELLED) {
        throw EffectFailure(kExitCancelled, outcome.words, outcome.status);
    }
    throw EffectFailure(outcome.failed == catalogue::Failed::kValues ? kExitUsage : kExitEffectFailed,
                        subject.name + ": " + step.effect->name + ": " + outcome.words, outcome.status);
}

ChainResult ReadyChain::ChooseColours(const ReadyStep& step, const Subject& subject) {
    try {
        return {Quantise(*subject.image, step.colours, step.dither), {}, false, {}};
    } catch (const Failure& failure) {
        throw Failure(failure.Code(), subject.name + ": " + step.effect->name + ": " + failure.what());
    }
}

// Effects that move pixels clear the fourth bytes: alpha goes the same way as a picture of its own then.
void ReadyChain::KeepAlpha(const ReadyStep& step, const Subject& subject, DWORD progressOwner, ChainResult& result) {
    if (!subject.alpha || !HasAlpha(*subject.image) || HasAlpha(result.image)) {
        return;
    }
    if (LockedPicture(result.image).Header().biBitCount != 32) {
        result.alpha = false;
        if (step.effect->family != catalogue::Family::kDepth) { // which was asked for
            result.notes.push_back(std::string(step.effect->name) + ": transparency is lost");
        }
        return;
    }
    const Picture alpha = AlphaOf(*subject.image);
    if (step.effect->family != catalogue::Family::kGeometry && AreOfOneSize(alpha, result.image)) {
        return SetAlpha(result.image, alpha);
    }
    Subject plane{&alpha, subject.name, false};
    const ChainResult moved = ApplyStep(step, plane, progressOwner, {.report = {}, .lenient = true});
    if (moved.image && AreOfOneSize(moved.image, result.image)) {
        SetAlpha(result.image, moved.image);
    }
}

ChainResult ReadyChain::Apply(const Subject& subject, const ApplyMode& mode) const {
    Progress progress(mode.report);
    ChainResult result;
    result.alpha = subject.alpha;
    Subject current = subject;
    for (std::size_t i = 0; i != steps_.size(); ++i) {
        progress.BeginStep(i, steps_.size());
        ChainResult next = ApplyStep(steps_[i], current, progress.Owner(), mode);
        if (!next.image) {
            continue;
        }
        next.alpha = current.alpha;
        next.notes = std::move(result.notes);
        KeepAlpha(steps_[i], current, progress.Owner(), next);
        result = std::move(next);
        current = {&result.image, subject.name, result.alpha};
    }
    return result;
}
