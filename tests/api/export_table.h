// One row per export. The tests that hold for every export run over this table: failures and cancelling, refused
// pictures, areas, threads, hostile calls, and the checksums that make all builds and targets give the same bytes.
//
// To add an export: write its row in exports.cpp, run the tests, look at checksums.actual.txt and copy it over
// data/checksums.txt.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "qv8effect.h"
#include "support/area.h"
#include "support/hooks.h"
#include "support/picture.h"

namespace test {

struct Sides {
    int width, height;
};

// What a call is made with besides the effect's own parameters.
struct Call {
    ImageSet target = {nullptr, nullptr};
    HGLOBAL second = nullptr;  // for effects that take two pictures
    HGLOBAL pattern = nullptr; // of 1 bit, to mark a picture with
    int bits = 24;             // of the picture, for parameters that go by it
    Sides size = {9, 5};       // of the picture and of the second one, for places in them
    Sides secondSize = {9, 5};
    Colour colours[2] = {}; // of a pixel of the picture and of the second one
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

// Numbers for an effect's own parameters: typical ones, random ones in the given range, both ends included, or hostile
// ones, which keep to no range and have null pointers among them.
class Parameters {
public:
    Parameters() = default;
    explicit Parameters(Random& random, bool hostile = false) : random_(&random), hostile_(hostile) {}

    int Number(int typical, int low, int high);
    bool Chance(int percent) { // never in typical calls
        return random_ != nullptr && random_->Chance(percent);
    }
    // One of the values; the first is the typical one.
    LONG OneOf(std::span<const LONG> values);
    template <class Object>
    const Object* Pointer(const Object* object) {
        return hostile_ && random_->Chance(10) ? nullptr : object;
    }
    // The text, or in hostile calls characters of all kinds.
    std::string Text(const char* typical, int longest);
    bool IsHostile() const {
        return hostile_;
    }
    QV8BOOL Flag(QV8BOOL typical) {
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

// What one parameter of an export stands for, or a few that always go together. The first ones come with the call.
enum class Role {
    kTarget,
    kImage,
    kSecond,
    kPasted, // a pair of the second picture and the target's mask
    kPattern,
    kStored, // where a result is to be stored
    kWindow,
    kBits,     // of the picture
    kArea,     // five parameters
    kProgress, // four
    kNumber,
    kByte,  // a DWORD of which the low byte counts
    kLevel, // with the ends of its type
    kFlag,
    kReal,
    kOneOf,
    kByteOf,
    kAngle,
    kDepth,    // to convert to
    kColour,   // three parameters: red, green and blue, often of a pixel of the picture
    kClear,    // three pointers to such ones, or null
    kWeights,  // of the custom filter
    kAcross,   // a column of the picture
    kDown,     // a row
    kAcrossIn, // of the second picture
    kDownIn,
    kText,
};

struct Parameter {
    Role role;
    double typical, low, high;
    std::vector<LONG> values; // to choose from
    const char* text = nullptr;

    Parameter(Role ofRole, double typicalValue = 0, double least = 0, double most = 0) // a role says all of many
        : role(ofRole), typical(typicalValue), low(least), high(most) {}
};

// One parameter as it is passed.
struct Value {
    std::int64_t number = 0;
    double real = 0;
    const void* pointer = nullptr;
};

// All of them, and what those that are pointers point to.
struct Arguments {
    std::vector<Value> values;
    ImageSet stored = {};
    ImageSet pasted = {};
    LONG weights[81] = {};
    BYTE clear[3] = {};
    std::string texts[2];
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
    kFromClipboard = 16, // what it works on is put on the clipboard before
    kAlike = 32,         // its two pictures have one size
    kMakesPairs = 64,    // a result always has its mask
    kLeavesPair = 128,   // without a dialog nothing is stored
};

struct Export {
    const char* name;
    Result (*call)(const Arguments& arguments);
    std::vector<Parameter> parameters;
    unsigned accepts; // kAccept bits
    AreaUse areaUse = AreaUse::kNone;
    unsigned traits = 0;
    int zeroHandleStatus = QV8_STATUS_PICTURE;   // kUntouched: stays what it was; success: the export takes no picture
    int unknownDepthStatus = QV8_STATUS_PICTURE; // for a picture of a depth that does not exist
    int badPictureStatus = QV8_STATUS_PICTURE;   // for damaged pictures and layouts that are not accepted

    bool Is(unsigned trait) const {
        return (traits & trait) != 0;
    }
    bool Takes(Role role) const;
    bool TakesSecond() const { // a second picture, refused with the same statuses
        return Takes(Role::kSecond) || Takes(Role::kPasted);
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
std::span<const Export> ExportsAndTexts();

constexpr int kOk = QV8_STATUS_SUCCESS;
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

// The arguments of a call; null pointers to the export's own storage point into `arguments`.
void DrawArguments(const Export& row, const Call& call, Parameters parameters, Arguments& arguments);
// Puts numbers in place of the effect's own ones, in order; pointers stay.
void SetOwnNumbers(const Export& row, std::span<const double> numbers, Arguments& arguments);
const Export& ExportNamed(const std::string& name);
// Calls the export with status kUntouched before.
Outcome CallExport(const Export& row, const Call& call, Parameters parameters = {});
Outcome CallExport(const Export& row, const Call& call, Arguments& arguments);
// As CallExport under watch, with all that is left behind checked: nothing but the result, and no lock.
Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure = {},
                    const Parameters& parameters = {});
Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure, Arguments& arguments);

} // namespace test
