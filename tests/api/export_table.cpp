#include "api/export_table.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "qv8com.h"
#include "support/clipboard.h"

namespace test {
namespace {

int HostileNumber(Random& random, int low, int high) {
    static constexpr LONG kEnds[] = {0,       0x7FFFFFFF, -0x7FFFFFFF - 1, 0x100,      0x8000,
                                     0x10000, -36000,     0xFFFFFF,        0x1FFFFFFF, 0x40000000};
    switch (random.Between(0, 3)) {
    case 0: {
        const auto end = static_cast<std::uint32_t>(kEnds[random.Between(0, 9)]);
        return static_cast<int>(end + static_cast<std::uint32_t>(random.Between(-2, 2)));
    }
    case 1:
        return static_cast<int>(random.Next());
    default:
        return random.Between(low, high);
    }
}

int Whole(double value) {
    return static_cast<int>(value);
}

// For calls that bring none along.
HGLOBAL ThePattern() {
    static const Block pattern = [] {
        Random random(90);
        return MakeBlock(RandomMask(37, 11, random).bytes);
    }();
    return pattern.get();
}

// Draws parameters one after another, some of which belong together.
struct Drawing {
    const Call& call;
    Parameters& from;
    Arguments& into;
    int slack = -1; // how far places are from their typical ones; beyond all sides where that is more than 9

    void Number(std::int64_t number) {
        into.values.push_back({number, 0, nullptr});
    }
    void Pointer(const void* pointer) {
        into.values.push_back({0, 0, pointer});
    }
    // With bits above the byte that counts, now and then.
    void Byte(int value) {
        Number(from.Chance(30) ? value | static_cast<int>(from.Number(0x5A00, 0, 0xFFFFFF) << 8) : value);
    }
    void Place(double share, int size) {
        static constexpr LONG kSlacks[] = {2, 9, 10};
        slack = slack < 0 ? static_cast<int>(from.OneOf(kSlacks)) : slack;
        const int typical = static_cast<int>(std::lround(share * (size - 1)));
        const bool anywhere = slack > 9;
        const int low = anywhere ? -3 : typical - slack / 2;
        const int high = anywhere ? size + 2 : typical + slack / 2;
        Number(from.Chance(3) ? from.Wild(typical, low, high) : from.Number(typical, low, high));
    }
    void Colour(const Parameter& parameter, bool asPointers) {
        const test::Colour& own = call.colours[asPointers ? 1 : Whole(parameter.high)];
        const bool isOwn = from.Chance(60);
        const bool isGiven = !asPointers || from.Flag(0) != 0;
        const BYTE channels[] = {own.red, own.green, own.blue};
        for (int c = 0; c != 3; ++c) {
            const int level = from.Number(Whole(parameter.typical), 0, 255);
            into.clear[c] = isOwn ? channels[c] : static_cast<BYTE>(level);
            if (asPointers) {
                Pointer(isGiven ? from.Pointer(&into.clear[c]) : nullptr);
            } else {
                Byte(isOwn ? channels[c] : level);
            }
        }
    }
    // Sparse ones, ones of any size, or ones whose sums of white pixels lie around 2^16.
    void Weights() {
        const int kind = from.Number(0, 0, 3);
        const int most = static_cast<int>((1U << (from.Number(5, 0, 31) & 31)) - 1);
        int left = from.Number(260, 250, 280) & 0x1FF; // a hostile one may be any number
        for (LONG& weight : into.weights) {
            const bool isFar = from.Number(1, 0, 3) == 0;
            if (kind >= 2) {
                const int part = std::min(left, from.Number(2, 0, 12) & 15);
                left -= part;
                weight = kind == 3 && isFar ? -part : part;
            } else if (kind == 1) {
                weight = isFar ? 0 : from.Number(2, -most, most);
            } else {
                weight = isFar ? from.Wild(2, -300, 300) : from.Number(1, -1, 2);
            }
        }
        Pointer(from.Pointer(&into.weights[0]));
    }
    void Draw(const Parameter& parameter);
    void DrawOfCall(Role role);
};

void Drawing::DrawOfCall(Role role) {
    const Area& area = call.area;
    switch (role) {
    case Role::kTarget:
        return Pointer(call.Target());
    case Role::kImage:
        return Pointer(call.target.hImage);
    case Role::kSecond:
        return Pointer(call.second);
    case Role::kPasted:
        into.pasted = {call.second, call.target.hMask};
        return Pointer(from.Pointer(&into.pasted));
    case Role::kPattern:
        return Pointer(call.pattern != nullptr || from.IsHostile() ? call.pattern : ThePattern());
    case Role::kStored:
        into.stored = {&into, &into}; // to be overwritten whatever happens
        return Pointer(from.Pointer(&into.stored));
    case Role::kWindow:
        return Pointer(nullptr);
    case Role::kBits:
        return Number(call.bits);
    case Role::kArea:
        Number(static_cast<std::int64_t>(area.type));
        Pointer(area.Points());
        Number(area.Count());
        Pointer(area.Rect());
        return Number(area.inside);
    default: // progress
        Number(call.progressOwner);
        for (const DWORD_PTR dialog : call.dialog) {
            Number(static_cast<std::int64_t>(dialog));
        }
    }
}

void Drawing::Draw(const Parameter& parameter) {
    static constexpr LONG kAngles[] = {3000, 0, 9000, -9000, 18000, -18000, 27000, -27000, 36100};
    static constexpr LONG kDepths[] = {24, 32, 16, QV8_DEPTH_GREY, 8, 4, 1};
    static constexpr double kNotable[] = {0, 1, -1, -1e300};
    const auto typical = Whole(parameter.typical);
    const auto low = Whole(parameter.low);
    const auto high = Whole(parameter.high);
    switch (parameter.role) {
    case Role::kNumber:
        return Number(from.Number(typical, low, high));
    case Role::kByte:
        return Byte(from.Number(typical, low, high));
    case Role::kLevel:
        return Number(from.Wild(typical, low, high));
    case Role::kFlag:
        return Number(from.Flag(typical));
    case Role::kReal: {
        const double real = from.Real(parameter.typical, parameter.low, parameter.high);
        const bool isNotable = from.Chance(10);
        into.values.push_back({0, isNotable ? kNotable[from.Number(0, 0, 3) & 3] : real, nullptr});
        return;
    }
    case Role::kOneOf:
        return Number(from.OneOf(parameter.values));
    case Role::kByteOf:
        return Byte(from.OneOf(parameter.values));
    case Role::kAngle: {
        const LONG angle = from.OneOf(kAngles);
        return Number(from.Flag(0) != 0 ? from.Wild(angle, -36100, 36100) : angle);
    }
    case Role::kDepth: {
        LONG depth = from.OneOf(kDepths);
        depth = depth == call.bits && !from.Chance(10) ? (call.bits == 24 ? 32 : 24) : depth;
        return Number(from.Chance(20) ? depth | 0x7BCD0000 : depth);
    }
    case Role::kColour:
    case Role::kClear:
        return Colour(parameter, parameter.role == Role::kClear);
    case Role::kWeights:
        return Weights();
    case Role::kAcross:
        return Place(parameter.typical, call.size.width);
    case Role::kDown:
        return Place(parameter.typical, call.size.height);
    case Role::kAcrossIn:
        return Place(parameter.typical, call.secondSize.width);
    case Role::kDownIn:
        return Place(parameter.typical, call.secondSize.height);
    case Role::kText: {
        if (parameter.text == nullptr) {
            return Pointer(nullptr);
        }
        std::string& text = into.texts[typical];
        text = from.Text(parameter.text, Whole(parameter.high));
        return Pointer(from.Pointer(text.c_str()));
    }
    default:
        return DrawOfCall(parameter.role);
    }
}

} // namespace

int Parameters::Number(int typical, int low, int high) {
    if (random_ == nullptr) {
        return typical;
    }
    return hostile_ ? HostileNumber(*random_, low, high) : random_->Between(low, high);
}

LONG Parameters::OneOf(std::span<const LONG> values) {
    if (random_ == nullptr) {
        return values[0];
    }
    const LONG value = values[static_cast<std::size_t>(random_->Between(0, static_cast<int>(values.size()) - 1))];
    return hostile_ && random_->Chance(20) ? Number(0, 0, 0) : value;
}

double Parameters::Real(double typical, double low, double high) {
    if (hostile_ && random_->Chance(50)) {
        const std::uint64_t bits = static_cast<std::uint64_t>(random_->Next()) << 32U | random_->Next();
        return std::bit_cast<double>(random_->Chance(30) ? bits | 0x7FF0000000000000 : bits); // infinite or no number
    }
    return random_ != nullptr ? low + (high - low) * (random_->Between(0, 1 << 20) / 1048576.0) : typical;
}

std::string Parameters::Text(const char* typical, int longest) {
    if (!hostile_) {
        return typical;
    }
    std::string text;
    for (int left = random_->Between(0, longest); left > 0; --left) {
        text += static_cast<char>(random_->Between(0, 255)); // a zero ends it
    }
    return text;
}

LONG Parameters::Wild(LONG typical, LONG low, LONG high) {
    static constexpr LONG kEnds[] = {0x7FFFFFFF, 0x7FFFFF80, -0x7FFFFFFF - 1, -0x7FFFFF80};
    if (Chance(10)) {
        return kEnds[random_->Between(0, 3)];
    }
    return Number(static_cast<int>(typical), static_cast<int>(low), static_cast<int>(high));
}

bool Export::Takes(Role role) const {
    return std::any_of(parameters.begin(), parameters.end(), [role](const Parameter& p) { return p.role == role; });
}

Call Scene::AsCall() const {
    const auto sizeOf = [](const Picture& any) { return Sides{any.Width(), any.Height()}; };
    Call call;
    call.target = {picture.Handle(), area.type == QV8_AREA_MASK ? mask.Handle() : nullptr};
    call.second = second.Handle();
    call.pattern = mask.Handle();
    call.bits = picture.Content().Bits();
    call.size = sizeOf(picture.Content());
    call.secondSize = sizeOf(second.Content());
    call.colours[0] = picture.Content().ColourAt(call.size.width / 2, call.size.height / 2);
    call.colours[1] = second.Content().ColourAt(call.secondSize.width / 2, call.secondSize.height / 2);
    call.area = area;
    return call;
}

bool Scene::Untouched() const {
    const auto pictureUntouched = picture.Untouched();
    const auto maskUntouched = mask.Untouched();
    const auto secondUntouched = second.Untouched();
    EXPECT_TRUE(pictureUntouched);
    EXPECT_TRUE(maskUntouched);
    EXPECT_TRUE(secondUntouched);
    return pictureUntouched && maskUntouched && secondUntouched;
}

Scene RandomScene(const Layout& layout, AreaForm form, int width, int height, Random& random) {
    Picture picture = RandomPicture(layout, width, height, random);
    Picture mask = RandomMask(width, height, random);
    Area area = RandomArea(form, width, height, random);
    const Layout& secondLayout = layout.bits == 24 ? layout : RandomLayout(random);
    Picture second = RandomPicture(secondLayout, width, height, random);
    return {Source(std::move(picture)), Source(std::move(mask)), Source(std::move(second)), std::move(area)};
}

void DrawArguments(const Export& row, const Call& call, Parameters parameters, Arguments& arguments) {
    Drawing drawing = {call, parameters, arguments};
    for (const Parameter& parameter : row.parameters) {
        drawing.Draw(parameter);
    }
}

void SetOwnNumbers(const Export& row, std::span<const double> numbers, Arguments& arguments) {
    std::size_t at = 0;
    std::size_t next = 0;
    for (const Parameter& parameter : row.parameters) {
        const Role role = parameter.role;
        const bool isThree = role == Role::kColour || role == Role::kClear;
        const std::size_t count = role == Role::kArea ? 5 : role == Role::kProgress ? 4 : isThree ? 3 : 1;
        const bool isNumber =
            role > Role::kProgress && role != Role::kClear && role != Role::kWeights && role != Role::kText;
        for (std::size_t i = at; isNumber && i != at + count; ++i) {
            ASSERT_LT(next, numbers.size());
            arguments.values[i].real = numbers[next++];
            arguments.values[i].number = static_cast<std::int64_t>(arguments.values[i].real);
        }
        at += count;
    }
    EXPECT_EQ(next, numbers.size());
}

const Export& ExportNamed(const std::string& name) {
    const auto exports = Exports();
    const auto found =
        std::find_if(exports.begin(), exports.end(), [&](const Export& row) { return row.name == name; });
    EXPECT_NE(found, exports.end()) << name;
    return found != exports.end() ? *found : exports[0];
}

Outcome CallExport(const Export& row, const Call& call, Arguments& arguments) {
    if (row.Is(kFromClipboard)) {
        hooks::Aside([&] {
            PutOnClipboard(call.target.hImage != nullptr ? ReadBlock(call.target.hImage) : BlankPicture(8, 5, 3).bytes);
        });
    }
    SetErrorStatus(kUntouched);
    Result result = row.call(arguments);
    if (row.Is(kLeavesPair) && GetErrorStatus() == QV8_STATUS_DIALOG && result.image != nullptr) {
        EXPECT_TRUE(result.image == &arguments && result.mask == &arguments);
        result.image = result.mask = nullptr;
    }
    EXPECT_TRUE(result.succeeded || (result.image == nullptr && result.mask == nullptr)) << "a result of a failure";
    EXPECT_TRUE(!row.Is(kMakesPairs) || (result.image != nullptr) == (result.mask != nullptr));
    return {Block(result.image), Block(result.mask), result.succeeded, GetErrorStatus(), {}};
}

Outcome CallExport(const Export& row, const Call& call, Parameters parameters) {
    Arguments arguments;
    DrawArguments(row, call, parameters, arguments);
    return CallExport(row, call, arguments);
}

Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure, Arguments& arguments) {
    Outcome outcome;
    hooks::Report report = hooks::Watch(failure, [&] { outcome = CallExport(row, call, arguments); });

    for (const HGLOBAL result : {outcome.image.get(), outcome.mask.get()}) {
        const bool isOurs = result != nullptr && std::erase(report.blocks, result) == 1;
        EXPECT_EQ(isOurs, result != nullptr) << "a result from elsewhere";
    }
    EXPECT_TRUE(report.blocks.empty()) << report.blocks.size() << " blocks left behind";
    EXPECT_EQ(report.locks, 0);
    EXPECT_EQ(report.drawingObjects, 0);
    EXPECT_EQ(report.clipboardOpens, 0);
    EXPECT_EQ(report.misuse, "");
    EXPECT_EQ(static_cast<int>(report.dialogs.size()), report.dialogsClosed);
    EXPECT_EQ(row.Is(kUnframed) || outcome.succeeded, outcome.status == QV8_STATUS_SUCCESS);
    outcome.report = std::move(report);
    return outcome;
}

Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure, const Parameters& parameters) {
    Arguments arguments;
    DrawArguments(row, call, parameters, arguments);
    return WatchExport(row, call, failure, arguments);
}

} // namespace test
