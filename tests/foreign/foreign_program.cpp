// A program as others write them: it loads Qv8Effect.dll at run time, next to a companion of its own, and keeps its
// stack aligned to 4 bytes only. It calls the exports by their names and the number of their arguments.
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

// Every export with its 32-bit arguments. The last four are about progress, unless there is but one.
struct Export {
    const char* name;
    int slots;

    bool HasDialog() const {
        return slots > 1;
    }
};

constexpr Export kExports[] = {
#include "exports.inl"
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
            if (row.HasDialog()) {
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
            const int dialogs = row.HasDialog() && owner == 0 ? 1 : 0;
            Check(outcome.bytesRemoved == row.slots * 4, context + ": removed " + std::to_string(outcome.bytesRemoved));
            Check(companionRecord.dialogsOpened == dialogs, context + ": dialogs opened");
            Check(companionRecord.dialogsClosed == dialogs, context + ": dialogs closed");
            Check(companionRecord.foreignOwners == 0, context + ": owner");
            Check(companionRecord.misaligned == 0, context + ": the stack was not aligned again");
            const DWORD_PTR* const passed = companionRecord.dialogArguments;
            Check(dialogs == 0 || (passed[0] == 0xA1 && passed[1] == 0xA2 && passed[2] == 0xA3),
                  context + ": dialog arguments");
        }
    }
}

void CheckAllExports() {
    for (const Export& row : kExports) {
        const bool isThere = GetProcAddress(library, row.name) != nullptr;
        Check(isThere, std::string(row.name) + " is missing");
        if (isThere) {
            CheckStackAndDialog(row);
        }
    }
}

// A 24-bit picture, large enough for vector code; each pixel holds blue 10, green 20, red 30.
constexpr int kSide = 40;
constexpr int kCentre = kSide / 2;

struct PlainPicture {
    BITMAPINFOHEADER header;
    BYTE pixels[kSide * kSide][3]; // 120 bytes a row need no padding
};

HGLOBAL MakePicture() {
    const HGLOBAL block = GlobalAlloc(GHND, sizeof(PlainPicture));
    auto* const picture = static_cast<PlainPicture*>(GlobalLock(block));
    picture->header = {sizeof(BITMAPINFOHEADER), kSide, kSide, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    for (BYTE(&pixel)[3] : picture->pixels) {
        pixel[0] = 10;
        pixel[1] = 20;
        pixel[2] = 30;
    }
    GlobalUnlock(block);
    return block;
}

enum class First { kTargetAndArea, kImage };

// An export with its own parameters, and the bytes it makes of the pixel in the centre and of the one at the lower
// left.
struct PixelCase {
    const char* name;
    First first;
    DWORD areaType;
    std::vector<DWORD> parameters;
    std::vector<BYTE> centre;
    std::vector<BYTE> corner;
};

std::vector<DWORD> Doubles(const std::vector<double>& values) {
    std::vector<DWORD> slots(values.size() * 2);
    std::memcpy(slots.data(), values.data(), slots.size() * sizeof(DWORD));
    return slots;
}

// The curve of -1 is the square root: 255 sqrt(v / 255) is 50.5, 71.4 and 87.5, to which 0.5 is added. The luminance is
// 0.299 x 30 + 0.587 x 20 + 0.114 x 10 = 21.85.
const PixelCase kPixels[] = {
    {"QV8RGBLevel", First::kTargetAndArea, 1, {1, 2, 3}, {13, 22, 31}, {13, 22, 31}},
    {"QV8RGBLevel", First::kTargetAndArea, 2, {1, 2, 3}, {13, 22, 31}, {10, 20, 30}},
    {"QV8RGBRev", First::kTargetAndArea, 3, {1, 0, 1}, {245, 20, 225}, {10, 20, 30}},
    {"QV8RGBGamma", First::kTargetAndArea, 1, Doubles({-1, -1, -1}), {50, 71, 87}, {50, 71, 87}},
    {"QV8YCCLevel", First::kTargetAndArea, 3, {1000, 0, 0}, {255, 255, 255}, {10, 20, 30}},
    {"QV8Chroma", First::kTargetAndArea, 2, {static_cast<DWORD>(-100)}, {21, 21, 21}, {10, 20, 30}},
    {"QV8SetGray", First::kImage, 0, {}, {21, 21, 21}, {21, 21, 21}},
    {"QV8ConvertColor", First::kImage, 0, {32, 0, 0, 0}, {10, 20, 30, 0}, {10, 20, 30, 0}},
    {"QV8CopyImage", First::kImage, 0, {}, {10, 20, 30}, {10, 20, 30}},
};

// The slots of a call: what it begins with, the parameters, a progress owner and no dialog.
std::vector<DWORD> Slots(const PixelCase& row, const HGLOBAL (&target)[2], DWORD owner) {
    static const POINT kTriangle[] = {{15, 15}, {30, 15}, {20, 30}};
    static const RECT kRound = {10, 10, 30, 30};
    std::vector<DWORD> slots = {reinterpret_cast<DWORD>(target[0])};
    if (row.first == First::kTargetAndArea) {
        slots = {reinterpret_cast<DWORD>(target),    row.areaType,
                 reinterpret_cast<DWORD>(kTriangle), 3,
                 reinterpret_cast<DWORD>(&kRound),   1};
    }
    slots.insert(slots.end(), row.parameters.begin(), row.parameters.end());
    slots.insert(slots.end(), {owner, 0, 0, 0});
    return slots;
}

void CheckPixels(const PixelCase& row, int phase) {
    const HGLOBAL target[2] = {MakePicture(), nullptr};
    companionRecord = {};
    companionRecord.expectedOwner = 0x89ABCDEF;
    companionRecord.status = -1;
    const std::vector<DWORD> slots = Slots(row, target, companionRecord.expectedOwner);
    const HGLOBAL result = reinterpret_cast<HGLOBAL>(Call(row.name, slots, phase).eax);

    const std::string context = std::string(row.name) + " on a picture at phase " + std::to_string(phase);
    const auto* const bytes = static_cast<const BYTE*>(GlobalLock(result));
    Check(bytes != nullptr && companionRecord.status == 0, context + ": no result");
    Check(companionRecord.reports > 0 && companionRecord.foreignOwners == 0, context + ": progress");
    Check(companionRecord.misaligned == 0, context + ": the stack was not aligned again");
    if (bytes != nullptr) {
        const std::size_t pixelBytes = row.centre.size();
        const BYTE* const pixels = bytes + sizeof(BITMAPINFOHEADER);
        const BYTE* const centre = pixels + (kCentre * kSide + kCentre) * pixelBytes;
        Check(std::memcmp(centre, row.centre.data(), pixelBytes) == 0, context + ": centre");
        Check(std::memcmp(pixels, row.corner.data(), pixelBytes) == 0, context + ": corner");
    }
    GlobalUnlock(result);
    GlobalFree(result);
    GlobalFree(target[0]);
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
            CheckPixels(row, phase);
        }
    }
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
