#include "api/hostile_call.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "api/export_table.h"
#include "support/clipboard.h"

namespace test {
namespace {

// Small as a rule, so that what can be had at all is worked through at once; what counts colours needs more.
constexpr SIZE_T kLargestBlocks[] = {SIZE_T{1} << 20, SIZE_T{1} << 16};

// Hostile texts are alike and take long. With 64 bits Wine has memory for letters of any size, and draws for minutes.
#ifdef _WIN64
constexpr std::size_t kRowsOfTexts = 0;
#else
constexpr std::size_t kRowsOfTexts = 1;
#endif

struct Field {
    std::size_t offset;
    std::size_t bytes;
};

// Fields of the header that say what lies where, and the masks behind it.
constexpr Field kFields[] = {{0, 4},  {4, 4},  {8, 4},  {12, 2}, {14, 2}, {16, 4},
                             {20, 4}, {32, 4}, {40, 4}, {44, 4}, {48, 4}};

void Damage(Bytes& bytes, Random& random) {
    switch (random.Between(0, 7)) {
    case 0:
        bytes.resize(static_cast<std::size_t>(random.Between(0, static_cast<int>(bytes.size()))));
        break;
    case 1:
        bytes.resize(bytes.size() + static_cast<std::size_t>(random.Between(1, 200)));
        break;
    default: {
        const Field field = kFields[random.Between(0, static_cast<int>(std::size(kFields)) - 1)];
        const int value = Parameters(random, true).Number(0, 0, 40);
        if (field.offset + field.bytes <= bytes.size()) {
            std::memcpy(&bytes[field.offset], &value, field.bytes);
        }
    }
    }
}

// Few colours, or many.
void Simplify(Picture& picture, Random& random) {
    const int kept = random.Between(0, 255);
    for (std::size_t i = kept < 128 ? picture.PixelOffset() : picture.bytes.size(); i < picture.bytes.size(); ++i) {
        picture.bytes[i] &= static_cast<BYTE>(kept | kept << 4);
    }
}

Source HostilePicture(const Layout& layout, int width, int height, Random& random) {
    Random content(random.Byte());
    Picture picture = RandomPicture(layout, width, height, content);
    Simplify(picture, random);
    for (int left = random.Between(0, 7) - 4; left > 0; --left) {
        Damage(picture.bytes, random);
    }
    return Source(std::move(picture));
}

const Layout& AnyLayout(Random& random) {
    const auto chosen = static_cast<std::size_t>(random.Between(0, static_cast<int>(Layouts().size()) + 6));
    return chosen < Layouts().size() ? Layouts()[chosen] : LayoutNamed("24");
}

// Mostly the handle of the picture. A handle that is none can be looked up without danger in our own memory only.
HGLOBAL HostileHandle(const Source& source, Random& random) {
    switch (random.Between(0, 20)) {
    case 0:
        return nullptr;
#ifndef _WIN32
    case 1: {
        Block freed = MakeBlock({1, 2, 3});
        const HGLOBAL handle = freed.get();
        freed.reset();
        return handle;
    }
    case 2: {
        void* const address = GlobalLock(source.Handle());
        GlobalUnlock(source.Handle());
        return address;
    }
    case 3:
        return reinterpret_cast<HGLOBAL>(static_cast<std::uintptr_t>(random.Next()) << 3U);
#endif
    default:
        return source.Handle();
    }
}

Area HostileArea(int width, int height, Random& random) {
    const auto forms = AreaForms();
    Area area = RandomArea(forms[static_cast<std::size_t>(random.Between(0, static_cast<int>(forms.size()) - 1))],
                           width, height, random);
    Parameters hostile(random, true);
    if (random.Chance(30)) {
        for (POINT& point : area.points) {
            point.x = hostile.Number(0, -3, width);
            point.y = hostile.Number(0, -3, height);
        }
        area.rect = {hostile.Number(0, -3, width), hostile.Number(0, -3, height), hostile.Number(0, -3, width),
                     hostile.Number(0, -3, height)};
        area.type = static_cast<DWORD>(hostile.Number(0, 0, 5));
    }
    area.omitPoints = random.Chance(5);
    area.omitRect = random.Chance(5);
    area.fewer = random.Chance(5) ? random.Between(0, 20) : 0;
    return area;
}

hooks::Failure AnyFailure(Random& random) {
    if (!random.Chance(20)) {
        return {};
    }
    const auto kind = static_cast<hooks::Kind>(random.Between(1, static_cast<int>(hooks::Kind::kCount) - 1));
    const int call = random.Between(1, 10);
    return {kind, call, random.Chance(50)};
}

void CheckStatus(const Export& row, const Outcome& outcome) {
    std::set<int> statuses = {QV8_STATUS_SUCCESS, QV8_STATUS_MEMORY, QV8_STATUS_DEPTH, QV8_STATUS_PARAMETER,
                              QV8_STATUS_PICTURE};
    if (row.Is(kKeepsStatus)) {
        statuses.insert(kUntouched);
    }
    if (row.Is(kDrawsText)) {
        statuses.insert(QV8_STATUS_DRAWING);
    }
    if (outcome.report.failed) {
        statuses.insert({QV8_STATUS_CANCELLED, QV8_STATUS_DIALOG, QV8_STATUS_DRAWING});
    }
    EXPECT_EQ(statuses.count(outcome.status), 1U) << "status " << outcome.status;
}

} // namespace

void MakeHostileCall(Random& random) {
    const auto rows = ExportsAndTexts().first(Exports().size() + kRowsOfTexts);
    const Export& row = rows[static_cast<std::size_t>(random.Between(0, static_cast<int>(rows.size()) - 1))];
    SCOPED_TRACE(row.name);
    const int width = random.Between(1, 40);
    const int height = random.Between(1, 8);
    const Source picture = HostilePicture(AnyLayout(random), width, height, random);
    const bool fits = random.Chance(90);
    const Source mask = HostilePicture(LayoutNamed("1"), fits ? width : height, fits ? height : width, random);
    const bool alike = random.Chance(50);
    const Source second = HostilePicture(AnyLayout(random), alike ? width : random.Between(1, 30),
                                         alike ? height : random.Between(1, 8), random);
    Call call;
    call.target = {HostileHandle(picture, random), HostileHandle(mask, random)};
    call.second = HostileHandle(random.Chance(90) ? second : picture, random);
    call.pattern = random.Chance(50) ? call.second : call.target.hMask;
    call.bits = picture.Content().bytes.size() < 16 ? 24 : picture.Content().Bits();
    call.area = HostileArea(width, height, random);
    call.progressOwner = static_cast<DWORD>(random.Between(0, 1));
    call.omitTarget = random.Chance(3);
    const hooks::Failure failure = AnyFailure(random);

    hooks::LimitBlocks(kLargestBlocks[random.Chance(98) ? 1 : 0]);
    const Outcome outcome = WatchExport(row, call, failure, Parameters(random, true));
    hooks::LimitBlocks(~SIZE_T{0});
    CheckStatus(row, outcome);
    for (const Source* const source : {&picture, &mask, &second}) {
        EXPECT_TRUE(source->Untouched());
    }
    const bool mayBeLonger = row.Is(kOnClipboard) || (row.accepts & kAcceptOdd) != 0;
    for (const Block* const block : {&outcome.image, &outcome.mask}) {
        if (*block != nullptr) {
            EXPECT_TRUE(IsSound(block->get(), mayBeLonger));
        }
    }
}

} // namespace test
