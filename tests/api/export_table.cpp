#include "api/export_table.h"

#include <algorithm>
#include <bit>

#include "api/export_rows.h"
#include "qv8com.h"

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

} // namespace

int Parameters::Number(int typical, int low, int high) {
    if (random_ == nullptr) {
        return typical;
    }
    return hostile_ ? HostileNumber(*random_, low, high) : random_->Between(low, high);
}

double Parameters::Real(double typical, double low, double high) {
    if (hostile_ && random_->Chance(50)) {
        const std::uint64_t bits = static_cast<std::uint64_t>(random_->Next()) << 32U | random_->Next();
        return std::bit_cast<double>(random_->Chance(30) ? bits | 0x7FF0000000000000 : bits); // infinite or no number
    }
    return random_ != nullptr ? low + (high - low) * (random_->Between(0, 1 << 20) / 1048576.0) : typical;
}

std::string Parameters::Text(int longest) {
    std::string text;
    for (int left = hostile_ ? random_->Between(0, longest) : 0; left > 0; --left) {
        text += static_cast<char>(random_->Between(0, 255)); // a zero ends it
    }
    return text;
}

LONG Parameters::Wild(LONG typical, LONG low, LONG high) {
    static constexpr LONG kEnds[] = {0x7FFFFFFF, 0x7FFFFF80, -0x7FFFFFFF - 1, -0x7FFFFF80};
    if (random_ != nullptr && random_->Chance(10)) {
        return kEnds[random_->Between(0, 3)];
    }
    return Number(static_cast<int>(typical), static_cast<int>(low), static_cast<int>(high));
}

std::span<const Export> Exports() {
    static const std::vector<Export> exports = [] {
        std::vector<Export> all;
        for (const auto family : {ToneRows, ConvertRows, FilterRows, ImageRows, SelectRows, ComposeRows, ClipboardRows,
                                  SpecialFilterRows, RotationRows, ResizeRows, AffineRows, HiddenRows, PanoramaRows}) {
            const std::span<const Export> rows = family();
            all.insert(all.end(), rows.begin(), rows.end());
        }
        return all;
    }();
    return exports;
}

std::vector<Export> ExportsAndTexts() {
    std::vector<Export> rows(Exports().begin(), Exports().end());
    rows.insert(rows.end(), TextRows().begin(), TextRows().end());
    return rows;
}

Call Scene::AsCall() const {
    Call call;
    call.target = {picture.Handle(), area.type == QV8_AREA_MASK ? mask.Handle() : nullptr};
    call.second = second.Handle();
    call.bits = picture.Content().Bits();
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
    // From numbers of its own, so that it changes nothing for effects that take one picture.
    Random secondRandom(Hash(picture.bytes, kHashSeed));
    const Layout& secondLayout = layout.bits == 24 ? layout : RandomLayout(secondRandom);
    Picture second = RandomPicture(secondLayout, width, height, secondRandom);
    return {Source(std::move(picture)), Source(std::move(mask)), Source(std::move(second)), std::move(area)};
}

Outcome CallExport(const Export& row, const Call& call, Parameters parameters) {
    SetErrorStatus(kUntouched);
    const Result result = row.call(call, parameters);
    return {Block(result.image), Block(result.mask), result.succeeded, GetErrorStatus(), {}};
}

Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure, const Parameters& parameters) {
    Outcome outcome;
    hooks::Report report = hooks::Watch(failure, [&] { outcome = CallExport(row, call, parameters); });

    for (const HGLOBAL result : {outcome.image.get(), outcome.mask.get()}) {
        const bool isOurs = result != nullptr && std::erase(report.blocks, result) == 1;
        EXPECT_EQ(isOurs, result != nullptr) << "a result from elsewhere";
        EXPECT_TRUE(outcome.succeeded || result == nullptr) << "a result of a call that failed";
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

} // namespace test
