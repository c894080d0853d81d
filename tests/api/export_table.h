// One row per export. The tests that hold for every export run over this table: failures and cancelling, refused
// pictures, areas, threads, and the checksums that make both builds give the same bytes.
//
// To add an export: write its row in the rows_*.cpp of its family, run the tests, look at checksums.actual.txt and copy
// it over data/checksums.txt.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "qv8effect.h"
#include "support/area.h"
#include "support/hooks.h"
#include "support/picture.h"

namespace test {

// What a call is made with besides the effect's own parameters.
struct Call {
    ImageSet target = {nullptr, nullptr};
    HGLOBAL second = nullptr; // for effects that take two pictures
    int bits = 24;            // of the picture, for parameters that go by it
    Area area;
    DWORD progressOwner = 1; // nobody's
    DWORD_PTR dialog[3] = {0, 0, 0};
    bool omitTarget = false; // a null pointer in place of the pair

    const ImageSet* Target() const {
        return omitTarget ? nullptr : &target;
    }
};

struct Result {
    HGLOBAL image = nullptr;
    HGLOBAL mask = nullptr;
    bool succeeded = false; // as the export's own result tells
};

// The effect's own parameters: typical ones, random ones in the given range, both ends included, or hostile ones, which
// keep to no range and have null pointers among them.
class Parameters {
public:
    Parameters() = default;
    explicit Parameters(Random& random, bool hostile = false) : random_(&random), hostile_(hostile) {}

    int Number(int typical, int low, int high);
    // One of the values; the first is the typical one.
    template <class Value, std::size_t kCount>
    Value OneOf(const Value (&values)[kCount]) {
        const Value value = values[Index(kCount)];
        return hostile_ && random_->Chance(20) ? static_cast<Value>(Number(0, 0, 0)) : value;
    }
    // A place in a list; the first is the typical one.
    std::size_t Index(std::size_t count) {
        return random_ != nullptr ? static_cast<std::size_t>(random_->Between(0, static_cast<int>(count) - 1)) : 0;
    }
    template <class Object>
    Object* Pointer(Object* object) {
        return hostile_ && random_->Chance(10) ? nullptr : object;
    }
    // Characters of all kinds, in hostile calls only.
    std::string Text(int longest);
    bool IsHostile() const {
        return hostile_;
    }
    BOOL Flag(BOOL typical) {
        return Number(typical, 0, 1) != 0 ? Number(1, 1, 300) : 0;
    }
    // One of 2^20 + 1 equally spaced numbers.
    double Real(double typical, double low, double high);
    // A number from the range, or now and then one of the far ends of its type.
    LONG Wild(LONG typical, LONG low, LONG high);

private:
    Random* random_ = nullptr;
    bool hostile_ = false;
};

enum class AreaUse {
    kNone,
    kTrueColour, // at 16, 24 and 32 bits; not even looked at in pictures with indices
    kAlways,
    kShapes,      // but no mask: type 0 is a bad parameter
    kDrawnShapes, // the same, and the whole picture is drawn as a polygon
    kMaskAlong,   // no area, but a mask that is changed as the picture is, or of the second picture
};

// What sets an export apart from most.
enum : unsigned {
    kOnClipboard = 1, // works on the clipboard, which all threads share; its last report is one step short of the end
    kUnframed = 2,    // no progress, no dialog, and status 0 whatever happens
    kDrawsText = 4,   // which has a status of its own when the system does not do it
    kKeepsStatus = 8, // in one case of bad parameters the status stays what it was
};

struct Export {
    const char* name;
    unsigned accepts; // kAccept bits
    AreaUse areaUse;
    int zeroHandleStatus;   // kUntouched: stays what it was; success: the export takes no picture
    int unknownDepthStatus; // for a picture of a depth that does not exist
    Result (*call)(const Call& call, Parameters& parameters);
    bool takesSecond = false;                  // a second picture, refused with the same statuses
    int badPictureStatus = QV8_STATUS_PICTURE; // for damaged pictures and layouts that are not accepted
    unsigned traits = 0;

    bool Is(unsigned trait) const {
        return (traits & trait) != 0;
    }
    // The status of a picture that cannot be locked.
    int LockStatus() const {
        return Is(kOnClipboard) ? QV8_STATUS_PICTURE : QV8_STATUS_MEMORY;
    }
    bool TakesPicture() const {
        return zeroHandleStatus != QV8_STATUS_SUCCESS;
    }
    bool Accepts(const Layout& layout) const {
        return (layout.acceptedBy & accepts) != 0;
    }
    bool TakesMasks() const {
        return areaUse != AreaUse::kShapes && areaUse != AreaUse::kDrawnShapes;
    }
    bool UsesAreaOf(const Layout& layout) const {
        return areaUse == AreaUse::kTrueColour ? layout.bits > 8
                                               : areaUse != AreaUse::kNone && areaUse != AreaUse::kMaskAlong;
    }
    // Whether calls with an area of this form are calls of their own.
    bool UsesForm(const Layout& layout, AreaForm form) const {
        return form == AreaForm::kWhole || (form == AreaForm::kMask && areaUse == AreaUse::kMaskAlong) ||
               (UsesAreaOf(layout) && (form != AreaForm::kMask || TakesMasks()));
    }
    // The area type that says what is drawn for an area of the given type.
    DWORD DrawnAs(DWORD areaType) const {
        return areaUse == AreaUse::kDrawnShapes && areaType == QV8_AREA_WHOLE ? DWORD{QV8_AREA_POLYGON} : areaType;
    }
};

std::span<const Export> Exports();
// With rows that draw texts, which no two systems do alike.
std::vector<Export> ExportsAndTexts();

// Calls an export whose arguments are target, area, its own parameters, owner and dialog.
template <class Function, class... OwnParameters>
auto CallWithArea(Function* function, const Call& call, OwnParameters... parameters) {
    const Area& area = call.area;
    return function(call.Target(), area.type, area.Points(), area.Count(), area.Rect(), area.inside, parameters...,
                    call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]);
}

constexpr int kUntouched = 77; // no status: what the tests set before each call

// A picture and an area of it, ready for calls.
struct Scene {
    Source picture;
    Source mask;
    Source second; // of the same size; 24 bits like the picture, else any layout
    Area area;

    Call AsCall() const;
    // Neither the picture nor the mask was changed or left locked.
    bool Untouched() const;
};
Scene RandomScene(const Layout& layout, AreaForm form, int width, int height, Random& random);

struct Outcome {
    Block image;
    Block mask;
    bool succeeded = false;
    int status = kUntouched;
    hooks::Report report; // of a watched call; its blocks are those left behind, without the result
};

// Calls the export with status kUntouched before.
Outcome CallExport(const Export& row, const Call& call, Parameters parameters = {});
// As CallExport under watch, with all that is left behind checked: nothing but the result, and no lock.
Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure = {},
                    const Parameters& parameters = {});

} // namespace test
