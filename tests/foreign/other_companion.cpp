// Another companion library: the eight functions that Qv8Effect.dll calls, in the simplest way. Its dialog is always
// there, and nobody cancels.
#include <cstring>

#include "companion_record.h"

namespace {

CompanionRecord& Record() {
    static auto* const record =
        reinterpret_cast<CompanionRecord*>(GetProcAddress(GetModuleHandleA(nullptr), kRecordName));
    return *record;
}

BITMAPINFOHEADER HeaderOf(const void* picture) {
    BITMAPINFOHEADER header;
    std::memcpy(&header, picture, sizeof header);
    return header;
}

DWORD FirstMask(const void* picture) {
    DWORD mask = 0;
    std::memcpy(&mask, static_cast<const BYTE*>(picture) + 40, sizeof mask);
    return mask;
}

// Counts a call whose arguments do not begin on a multiple of 16, where our compiler puts them once the stack is
// aligned.
template <class Argument>
void NoteStack(const Argument* first) {
    asm volatile("" : "+r"(first)); // keeps the argument where the caller left it
    Record().misaligned += reinterpret_cast<DWORD_PTR>(first) % 16 != 0 ? 1 : 0;
}

} // namespace

// Callers may have aligned the stack to 4 bytes only.
#define COMPANION_FUNCTION __attribute__((force_align_arg_pointer)) __stdcall

extern "C" {

int COMPANION_FUNCTION PercentDlgOpen(DWORD_PTR first, DWORD_PTR second, DWORD_PTR third) {
    CompanionRecord& record = Record();
    ++record.dialogsOpened;
    NoteStack(&first);
    record.dialogArguments[0] = first;
    record.dialogArguments[1] = second;
    record.dialogArguments[2] = third;
    return 1;
}

int COMPANION_FUNCTION PercentProgress(int current, int, int, int, DWORD progressOwner) {
    CompanionRecord& record = Record();
    ++record.reports;
    record.foreignOwners += progressOwner != record.expectedOwner ? 1 : 0;
    NoteStack(&current);
    return 1;
}

void COMPANION_FUNCTION PercentDlgClose() {
    ++Record().dialogsClosed;
}

void COMPANION_FUNCTION SetErrorStatus(int code) {
    Record().status = code;
    NoteStack(&code);
}

int COMPANION_FUNCTION DibNumColors(const void* picture) {
    const BITMAPINFOHEADER header = HeaderOf(picture);
    const int full = header.biBitCount <= 8 ? 1 << header.biBitCount : 0;
    return header.biClrUsed != 0 ? static_cast<int>(header.biClrUsed) : full;
}

int COMPANION_FUNCTION GetDibPalSize(const void* picture) {
    const BITMAPINFOHEADER header = HeaderOf(picture);
    const bool hasMasks = header.biCompression == BI_BITFIELDS && header.biBitCount >= 16;
    return 4 * DibNumColors(picture) + (hasMasks ? 12 : 0);
}

int COMPANION_FUNCTION GetBmp16Info(const void* picture) {
    if (HeaderOf(picture).biCompression != BI_BITFIELDS) {
        return 1;
    }
    return FirstMask(picture) == 0xF800 ? 2 : 3;
}

int COMPANION_FUNCTION GetBmp32Info(const void*) {
    return 1;
}

} // extern "C"
