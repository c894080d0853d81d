// A program as others write them: it loads Qv8Effect.dll at run time, next to a companion of its own, and keeps its
// stack aligned to 4 bytes only. It declares the exports for itself, from their published arguments.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "companion_record.h"
#include "misaligned_call.h"

extern "C" {
__declspec(dllexport) CompanionRecord companionRecord = {};
}

namespace {

int failures = 0;

void Check(bool condition, const std::string& what) {
    if (!condition) {
        ++failures;
        std::printf("FAILED: %s\n", what.c_str());
    }
}

// Every export of the finished library with its 32-bit argument slots, and whether it has a progress dialog.
struct Export {
    const char* name;
    int slots;
    bool hasDialog = true;
};

constexpr Export kExports[] = {
    {"QV8RGBGamma", 16},
    {"QV8RGBLevel", 13},
    {"QV8RGBRev", 13},
    {"QV8YCCGamma", 16},
    {"QV8YCCLevel", 13},
    {"QV8YCCRev", 13},
    {"QV8Chroma", 11},
    {"QV8SetGray", 5},
    {"QV8ConvertColor", 9},
    {"QV8CustomFilter", 16},
    {"QV8Sharp", 11},
    {"QV8Emboss", 13},
    {"QV8Shade", 11},
    {"QV8RemoveNoise", 12},
    {"QV8AntiAlias", 10},
    {"QV8Mosaic", 12},
    {"QV8Outline", 13},
    {"QV8SelectImage", 13},
    {"QV8SelectImageEx", 14},
    {"QV8AutoSelectImage", 15},
    {"QV8AutoSelectImageEx", 16},
    {"QV8Resize", 8},
    {"QV8ResizeEx", 9},
    {"QV8Rotation", 13},
    {"QV8RotationEx", 14},
    {"QV8Affine", 13},
    {"QV8Panorama", 18},
    {"QV8PasteImage", 16},
    {"QV8Layer", 16},
    {"QV8CreateImage", 10},
    {"QV8CopyImage", 5},
    {"QV8SetToClipBrd", 6},
    {"QV8GetFromClipBrd", 5},
    {"QV8IsClipBrdData", 1, false},
    {"QV8ClearClipBrd", 1, false},
    {"QV8SetSecretImage", 20},
    {"QV8CheckSecretImage", 7},
};

HMODULE library = nullptr;

CallOutcome Call(const char* name, const std::vector<DWORD>& arguments, int phase) {
    CallOutcome outcome = {};
    CallMisaligned(GetProcAddress(library, name), arguments.data(), static_cast<int>(arguments.size()), phase,
                   &outcome);
    return outcome;
}

// Zeros for all other arguments make no sense to any export, and none of them may mind.
void CheckStackAndDialog(const Export& row) {
    for (const DWORD owner : {DWORD{0}, DWORD{0x12345678}}) {
        for (int phase = 0; phase != 16; phase += 4) {
            std::vector<DWORD> arguments(static_cast<std::size_t>(row.slots));
            if (row.hasDialog) {
                DWORD* const last = &arguments.back();
                last[-3] = owner;
                last[-2] = 0xA1;
                last[-1] = 0xA2;
                last[0] = 0xA3;
            }
            companionRecord = {};
            companionRecord.expectedOwner = owner;
            const CallOutcome outcome = Call(row.name, arguments, phase);
            if (outcome.eax != 0 && outcome.eax != 1) {
                GlobalFree(reinterpret_cast<HGLOBAL>(outcome.eax));
            }
            const std::string context = std::string(row.name) + " at phase " + std::to_string(phase);
            const int dialogs = row.hasDialog && owner == 0 ? 1 : 0;
            Check(outcome.bytesRemoved == row.slots * 4, context + ": removed " + std::to_string(outcome.bytesRemoved));
            Check(companionRecord.dialogsOpened == dialogs, context + ": dialogs opened");
            Check(companionRecord.dialogsClosed == dialogs, context + ": dialogs closed");
            Check(companionRecord.foreignOwners == 0, context + ": owner");
            const DWORD_PTR* const passed = companionRecord.dialogArguments;
            Check(dialogs == 0 || (passed[0] == 0xA1 && passed[1] == 0xA2 && passed[2] == 0xA3),
                  context + ": dialog arguments");
        }
    }
}

void CheckAllExports() {
    int present = 0;
    for (const Export& row : kExports) {
        if (GetProcAddress(library, row.name) != nullptr) {
            ++present;
            CheckStackAndDialog(row);
        }
    }
    std::printf("%d of %d exports are there\n", present, static_cast<int>(sizeof kExports / sizeof *kExports));
    Check(present > 0, "no export at all");
}

// A 24-bit picture of 3 x 3 pixels; each pixel holds blue 10, green 20, red 30.
constexpr int kSide = 3;
constexpr int kStride = 12;

struct SmallPicture {
    BITMAPINFOHEADER header;
    BYTE rows[kSide * kStride];
};

HGLOBAL MakePicture() {
    const HGLOBAL block = GlobalAlloc(GHND, sizeof(SmallPicture));
    auto* const picture = static_cast<SmallPicture*>(GlobalLock(block));
    picture->header = {sizeof(BITMAPINFOHEADER), kSide, kSide, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    for (int i = 0; i != kSide * kStride; ++i) {
        picture->rows[i] = i % kStride < 3 * kSide ? static_cast<BYTE>(10 + i % kStride % 3 * 10) : 0;
    }
    GlobalUnlock(block);
    return block;
}

// Bytes of the pixel in the centre, and of the one at the lower left.
struct PixelCase {
    const char* name;
    std::vector<DWORD> parameters;
    DWORD areaType;
    bool hasArea;
    std::vector<BYTE> centre;
    std::vector<BYTE> corner;
};

std::vector<DWORD> Doubles(const std::vector<double>& values) {
    std::vector<DWORD> slots(values.size() * 2);
    std::memcpy(slots.data(), values.data(), slots.size() * sizeof(DWORD));
    return slots;
}

// The curve of -1 is the square root: 255 sqrt(v / 255) is 50.5, 71.4 and 87.5, to which 0.5 is added.
const PixelCase kPixels[] = {
    {"QV8RGBLevel", {1, 2, 3}, 1, true, {13, 22, 31}, {13, 22, 31}},
    {"QV8RGBLevel", {1, 2, 3}, 2, true, {13, 22, 31}, {10, 20, 30}},
    {"QV8RGBRev", {1, 0, 1}, 3, true, {245, 20, 225}, {10, 20, 30}},
    {"QV8RGBGamma", Doubles({-1, -1, -1}), 1, true, {50, 71, 87}, {50, 71, 87}},
    {"QV8ConvertColor", {32, 0, 0, 0}, 0, false, {10, 20, 30, 0}, {10, 20, 30, 0}},
};

void CheckPixel(const PixelCase& row, int phase) {
    struct {
        HGLOBAL image, mask;
    } const target = {MakePicture(), nullptr};
    const POINT points[] = {{1, 0}, {2, 1}, {1, 1}};
    const RECT rect = {0, 0, 2, 2};
    std::vector<DWORD> arguments;
    if (row.hasArea) {
        arguments = {reinterpret_cast<DWORD>(&target), row.areaType,
                     reinterpret_cast<DWORD>(points),  3,
                     reinterpret_cast<DWORD>(&rect),   1};
    } else {
        arguments = {reinterpret_cast<DWORD>(target.image)};
    }
    arguments.insert(arguments.end(), row.parameters.begin(), row.parameters.end());
    arguments.insert(arguments.end(), {0x89ABCDEF, 0, 0, 0});
    companionRecord = {};
    companionRecord.expectedOwner = 0x89ABCDEF;
    companionRecord.status = -1;
    const HGLOBAL result = reinterpret_cast<HGLOBAL>(Call(row.name, arguments, phase).eax);

    const std::string context = std::string(row.name) + " on a picture at phase " + std::to_string(phase);
    const auto* const bytes = static_cast<const BYTE*>(GlobalLock(result));
    Check(bytes != nullptr && companionRecord.status == 0, context + ": no result");
    Check(companionRecord.reports > 0 && companionRecord.foreignOwners == 0, context + ": progress");
    if (bytes != nullptr) {
        const auto size = static_cast<int>(row.centre.size());
        const BYTE* const rows = bytes + sizeof(BITMAPINFOHEADER);
        Check(std::memcmp(rows + kStride + size, row.centre.data(), row.centre.size()) == 0, context + ": centre");
        Check(std::memcmp(rows, row.corner.data(), row.corner.size()) == 0, context + ": corner");
    }
    GlobalUnlock(result);
    GlobalFree(result);
    GlobalFree(target.image);
}

} // namespace

int main() {
    library = LoadLibraryA("Qv8Effect.dll");
    if (library == nullptr) {
        std::printf("FAILED: Qv8Effect.dll does not load\n");
        return 1;
    }
    CheckAllExports();
    for (const PixelCase& row : kPixels) {
        for (int phase = 0; phase != 16; phase += 4) {
            CheckPixel(row, phase);
        }
    }
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
