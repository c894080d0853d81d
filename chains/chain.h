// Applies a chain of effects to pictures.
#ifndef QV8_CHAINS_CHAIN_H
#define QV8_CHAINS_CHAIN_H

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/run.h"
#include "chains/progress.h"
#include "chains/step.h"
#include "pictures/failure.h"
#include "pictures/picture.h"

// Where a chain starts.
struct Subject {
    const Picture* image = nullptr; // null for an effect without a source
    std::string name;               // in the words of failures
    bool alpha = false;             // the fourth bytes of a 32-bit picture are alpha
};

struct ApplyMode {
    Report report;
    bool lenient = false;    // an effect that has nothing to do is no mistake
    bool callsTwins = false; // the exports that store their results, where there are such
};

// What the library says when an effect fails, as a Failure that knows its status.
class EffectFailure : public Failure {
public:
    EffectFailure(ExitCode code, const std::string& message, int status) : Failure(code, message), status_(status) {}

    int Status() const {
        return status_;
    }

private:
    int status_;
};

struct ChainResult {
    Picture image;
    Picture mask;
    bool alpha = false;
    std::vector<std::string> notes; // what was lost on the way, a sentence each
};

// A chain with all that its steps need besides their picture: further pictures, masks and kernels, read once for any
// number of pictures. Threads may share it.
class ReadyChain {
public:
    // Throws a Failure when a file cannot be used.
    ReadyChain(const Chain& chain, std::uint64_t maxPixels);

    // Throws a Failure when an effect fails. The result has no picture when nothing was to be done.
    ChainResult Apply(const Subject& subject, const ApplyMode& mode) const;

    // Whether it starts from a picture, and does not make one.
    bool TakesPicture() const {
        return steps_.front().effect->TakesPicture();
    }

private:
    struct ReadyStep {
        const catalogue::Effect* effect;
        catalogue::Request request;
        std::vector<Picture> pictures; // what the request names
        std::string maskName;          // of the mask that has to fit the picture; empty when there is none
        HGLOBAL mask = nullptr;
        unsigned colours = 0; // that are chosen for the eye; 0: the export is called
        bool dither = false;  // with them
    };
    static ReadyStep Prepare(const Step& step, std::uint64_t maxPixels);
    static ChainResult ApplyStep(const ReadyStep& step, const Subject& subject, DWORD progressOwner,
                                 const ApplyMode& mode);
    static ChainResult ChooseColours(const ReadyStep& step, const Subject& subject);
    static void KeepAlpha(const ReadyStep& step, const Subject& subject, DWORD progressOwner, ChainResult& result);

    std::vector<ReadyStep> steps_;
};

#endif
