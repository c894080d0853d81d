// The rows of the table of exports. Each row: the function, its parameters with their typical values and ranges, the
// layouts that it accepts, and what sets it apart.
#include <utility>

#include "api/export_table.h"

namespace test {
namespace {

// --- Calling with any parameters -------------------------------------------------------------------------------------

template <class Type>
Type As(const Value& value) {
    if constexpr (std::is_pointer_v<Type>) {
        return static_cast<Type>(const_cast<void*>(value.pointer));
    } else if constexpr (std::is_floating_point_v<Type>) {
        return value.real;
    } else {
        return static_cast<Type>(value.number);
    }
}

Result ToResult(HGLOBAL image, const Arguments& /*arguments*/) {
    return {image, nullptr, image != nullptr};
}

Result ToResult(const ImageSet& set, const Arguments& /*arguments*/) {
    return {set.hImage, set.hMask, set.hImage != nullptr};
}

// What was stored, where there was a place for it.
Result ToResult(QV8BOOL succeeded, const Arguments& arguments) {
    for (const Value& value : arguments.values) {
        if (value.pointer == &arguments.stored) {
            return {arguments.stored.hImage, arguments.stored.hMask, succeeded != FALSE};
        }
    }
    return {nullptr, nullptr, succeeded != FALSE};
}

template <class Returned, class... Types, std::size_t... kIndices>
Result Apply(Returned(QV8API* function)(Types...), const Arguments& arguments, std::index_sequence<kIndices...>) {
    return ToResult(function(As<Types>(arguments.values[kIndices])...), arguments);
}

template <class Returned, class... Types>
Result Invoke(Returned(QV8API* function)(Types...), const Arguments& arguments) {
    EXPECT_EQ(sizeof...(Types), arguments.values.size());
    return Apply(function, arguments, std::index_sequence_for<Types...>());
}

#define QV8_EXPORT_ROW(function) #function, [](const Arguments& arguments) { return Invoke(function, arguments); }

// --- Parameters ------------------------------------------------------------------------------------------------------

using enum Role;

Parameter Number(int typical, int low, int high) {
    return {kNumber, double(typical), double(low), double(high)};
}
Parameter Byte(int typical, int low, int high) {
    return {kByte, double(typical), double(low), double(high)};
}
Parameter OneOf(std::vector<LONG> values, Role role = kOneOf) {
    Parameter parameter = role;
    parameter.values = std::move(values);
    return parameter;
}
Parameter ByteOf(std::vector<LONG> values) {
    return OneOf(std::move(values), kByteOf);
}
Parameter Level(int typical, int low, int high) {
    return {kLevel, double(typical), double(low), double(high)};
}
Parameter Flag(int typical) {
    return {kFlag, double(typical)};
}
Parameter Real(double typical, double low, double high) {
    return {kReal, typical, low, high};
}
Parameter Colour(int typical, int picture) { // 0 the picture, 1 the second one
    return {kColour, double(typical), 0, double(picture)};
}
Parameter Text(int which, const char* text, int longest) {
    Parameter parameter(kText, which, 0, longest);
    parameter.text = text;
    return parameter;
}

const Parameter kSmooth = Flag(1);

// --- The rows --------------------------------------------------------------------------------------------------------

constexpr unsigned kGreyOrTrueColour = kAccept8Grey | kAccept16 | kAccept24 | kAccept32;
constexpr unsigned kAny = kAcceptAll | kAcceptOdd;
constexpr int kNoPicture = QV8_STATUS_SUCCESS;

using enum AreaUse;

// clang-format off
const Export kExports[] = {
    {QV8_EXPORT_ROW(QV8RGBGamma), {kTarget, kArea, Real(-0.5, -4, 4), Real(0.5, -1, 1), Real(1, -40, 40), kProgress},
     kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8RGBLevel), {kTarget, kArea, Level(20, -270, 270), Level(-30, -100, 100), Level(40, -20, 20),
     kProgress}, kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8RGBRev), {kTarget, kArea, Flag(1), Flag(0), Flag(2), kProgress}, kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8YCCGamma), {kTarget, kArea, Real(-0.5, -4, 4), Real(0.5, -1, 1), Real(1, -40, 40), kProgress},
     kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8YCCLevel), {kTarget, kArea, Level(20, -270, 270), Level(-30, -100, 100), Level(40, -20, 20),
     kProgress}, kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8YCCRev), {kTarget, kArea, Flag(1), Flag(0), Flag(2), kProgress}, kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8Chroma), {kTarget, kArea, Level(40, -110, 1010), kProgress}, kAcceptAll, kTrueColour},
    {QV8_EXPORT_ROW(QV8SetGray), {kImage, kProgress}, kAcceptAll},
    {QV8_EXPORT_ROW(QV8ConvertColor), {kImage, kDepth, Flag(0), Flag(0), Byte(128, 0, 255), kProgress}, kAcceptAll,
     kNone, kKeepsStatus, kUntouched, QV8_STATUS_PARAMETER},
    {QV8_EXPORT_ROW(QV8CustomFilter), {kTarget, kArea, kWeights, Byte(81, 1, 255), Byte(0, 0, 255), Flag(1), Flag(1),
     Flag(1), kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8Sharp), {kTarget, kArea, Byte(30, 0, 130), kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8Emboss), {kTarget, kArea, Byte(1, 0, 7), Byte(3, 0, 7), Byte(128, 0, 255), kProgress},
     kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8Shade), {kTarget, kArea, Byte(2, 0, 22), kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8RemoveNoise), {kTarget, kArea, Byte(0, 0, 2), ByteOf({200, 0, 20, 90, 150, 230, 254, 255}),
     kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8AntiAlias), {kTarget, kArea, kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8Mosaic), {kTarget, kArea, Level(3, 0, 20), OneOf({2, -1, 0, 1, 3, 4, 7, 9, 16, 20, 300, 600,
     700}), kProgress}, kAcceptAll, kAlways},
    {QV8_EXPORT_ROW(QV8Outline), {kTarget, kArea, Byte(0, 0, 3), Byte(2, 0, 3), ByteOf({1, 0, 2, 3, 5, 99, 100, 101,
     255}), kProgress}, kGreyOrTrueColour, kAlways},
    {QV8_EXPORT_ROW(QV8SelectImage), {kImage, kArea, Colour(90, 0), kProgress}, kAcceptAll, kDrawnShapes, kMakesPairs},
    {QV8_EXPORT_ROW(QV8SelectImageEx), {kImage, kStored, kArea, Colour(90, 0), kProgress}, kAcceptAll, kDrawnShapes,
     kMakesPairs},
    {QV8_EXPORT_ROW(QV8AutoSelectImage), {kImage, kArea, Colour(90, 0), Byte(0, 0, 2), ByteOf({60, 0, 1, 2, 20, 100,
     255}), kProgress}, kAcceptAll, kShapes, kMakesPairs},
    {QV8_EXPORT_ROW(QV8AutoSelectImageEx), {kImage, kStored, kArea, Colour(90, 0), Byte(0, 0, 2), ByteOf({60, 0, 1, 2,
     20, 100, 255}), kProgress}, kAcceptAll, kShapes, kMakesPairs},
    // Larger than the pictures of the generic tests unless random.
    {QV8_EXPORT_ROW(QV8Resize), {kTarget, Number(25, 1, 60), Number(16, 1, 60), kSmooth, kProgress}, kAcceptAll,
     kMaskAlong},
    {QV8_EXPORT_ROW(QV8ResizeEx), {kTarget, kStored, Number(25, 1, 60), Number(16, 1, 60), kSmooth, kProgress},
     kAcceptAll, kMaskAlong, kLeavesPair},
    {QV8_EXPORT_ROW(QV8Rotation), {kTarget, kAngle, Flag(1), Flag(1), kSmooth, Colour(130, 0), Flag(0), kProgress},
     kAcceptAll, kMaskAlong},
    {QV8_EXPORT_ROW(QV8RotationEx), {kTarget, kStored, kAngle, Flag(1), Flag(1), kSmooth, Colour(130, 0), Flag(0),
     kProgress}, kAcceptAll, kMaskAlong, kLeavesPair},
    // The topmost row is row 1, so that the last report, which names rows from the top of the picture, is the end.
    {QV8_EXPORT_ROW(QV8Affine), {kImage, {kAcross, 0.4}, {kDown, 1}, {kAcross, 0}, {kDown, 0.25}, {kAcross, 1}, {kDown,
     0.25}, {kAcross, 1}, {kDown, 1}, kProgress}, kAcceptAll, kNone, kKeepsStatus},
    // Points of the base stay close together, so that no result of the scaling is large.
    {QV8_EXPORT_ROW(QV8Panorama), {kImage, kSecond, ByteOf({1, 2, 0, 3}), Number(1, -3, 20), Number(1, -3, 20),
     Number(6, -3, 20), Number(3, -3, 20), {kAcrossIn, 0.2}, {kDownIn, 0.25}, {kAcrossIn, 0.6}, {kDownIn, 0.75},
     kClear, kProgress}, kAccept24},
    {QV8_EXPORT_ROW(QV8PasteImage), {kImage, kPasted, kAngle, Flag(1), Flag(1), ByteOf({200, 0, 255, 1, 254, 128}),
     kClear, {kAcross, 0.5}, {kDown, 0.5}, Flag(0), kProgress}, kAcceptAll, kMaskAlong},
    {QV8_EXPORT_ROW(QV8Layer), {kImage, kSecond, ByteOf({128, 0, 255, 1, 254, 200}), Colour(200, 1), Colour(200, 0),
     Number(4, -40, 40), Number(-3, -20, 20), Flag(0), kProgress}, kAcceptAll, kNone, 0, QV8_STATUS_PICTURE,
     QV8_STATUS_DEPTH, QV8_STATUS_DEPTH},
    {QV8_EXPORT_ROW(QV8CreateImage), {Number(9, -1, 70), Number(5, -1, 20), kBits, Colour(120, 0), kProgress},
     kAcceptAll, kNone, 0, kNoPicture, QV8_STATUS_DEPTH},
    {QV8_EXPORT_ROW(QV8CopyImage), {kImage, kProgress}, kAny},
    {QV8_EXPORT_ROW(QV8SetToClipBrd), {kWindow, kImage, kProgress}, kAny, kNone, kOnClipboard},
    {QV8_EXPORT_ROW(QV8GetFromClipBrd), {kWindow, kProgress}, kAny, kNone, kOnClipboard | kFromClipboard, kNoPicture},
    {QV8_EXPORT_ROW(QV8IsClipBrdData), {kWindow}, kAny, kNone, kOnClipboard | kUnframed | kFromClipboard, kNoPicture,
     kNoPicture},
    {QV8_EXPORT_ROW(QV8ClearClipBrd), {kWindow}, kAny, kNone, kOnClipboard | kUnframed | kFromClipboard, kNoPicture,
     kNoPicture},
    // With a pattern: texts look different on every system, and have rows of their own.
    {QV8_EXPORT_ROW(QV8SetSecretImage), {kImage, kPattern, Text(0, nullptr, 0), Text(1, nullptr, 0), Number(0, 0, 0),
     Number(0, 0, 0), Number(0, 0, 0), Number(0, 0, 0), Number(0, 0, 0), Number(0, 0, 0), Number(0, 0, 0), Level(30,
     -300, 300), Level(2, -40, 40), Level(-1, -14, 20), Number(0, 0, 0), Number(0, 0, 0), kProgress}, kAccept24},
    {QV8_EXPORT_ROW(QV8CheckSecretImage), {kImage, kSecond, Level(10, -260, 260), kProgress}, kAccept24, kNone, kAlike},
    // On a line, and in columns.
    {QV8_EXPORT_ROW(QV8SetSecretImage), {kImage, kWindow, Text(0, "I.", 130), Text(1, "", 34), Number(4, 0, 12),
     Number(0, 0, 1), Number(0, 0, 1), Number(1, 0, 1), Number(1, 0, 1), Number(0, 0, 2), OneOf({0, 90, 180, 270}),
     Number(9, -3, 30), Number(0, -3, 9), Number(0, -3, 5), Number(8, -3, 9), Number(4, -3, 5), kProgress}, kAccept24,
     kNone, kDrawsText},
    {QV8_EXPORT_ROW(QV8SetSecretImage), {kImage, kWindow, Text(0, "I\n.", 130), Text(1, "", 34), Number(4, 0, 12),
     Number(0, 0, 1), Number(0, 0, 1), Number(1, 0, 1), Number(1, 0, 1), Number(2, 0, 2), OneOf({0, 90, 180, 270}),
     Number(9, -3, 30), Number(0, -3, 9), Number(0, -3, 5), Number(8, -3, 9), Number(4, -3, 5), kProgress}, kAccept24,
     kNone, kDrawsText},
};
// clang-format on

constexpr std::size_t kTextRows = 2;

} // namespace

std::span<const Export> Exports() {
    return std::span(kExports).first(std::size(kExports) - kTextRows);
}

std::span<const Export> ExportsAndTexts() {
    return kExports;
}

} // namespace test
