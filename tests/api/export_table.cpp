#include "api/export_table.h"

#include <algorithm>

#include "api/export_rows.h"
#include "qv8com.h"
#include "support/clipboard.h"

namespace test {

double Parameters::Real(double typical, double low, double high) {
    return random_ != nullptr ? low + (high - low) * (random_->Between(0, 1 << 20) / 1048576.0) : typical;
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

Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure) {
    Outcome outcome;
    hooks::Report report = hooks::Watch(failure, [&] { outcome = CallExport(row, call); });

    std::vector<HGLOBAL> results;
    for (const HGLOBAL block : {outcome.image.get(), outcome.mask.get()}) {
        if (block != nullptr) {
            results.push_back(block);
        }
    }
    std::sort(results.begin(), results.end());
    EXPECT_EQ(report.blocks, results) << "blocks left behind";
    EXPECT_EQ(report.locks, 0);
    EXPECT_EQ(report.drawingObjects, 0);
    EXPECT_EQ(report.misuse, "");
    EXPECT_EQ(static_cast<int>(report.dialogs.size()), report.dialogsClosed);
    EXPECT_EQ(outcome.succeeded, outcome.status == QV8_STATUS_SUCCESS);
    EXPECT_TRUE(outcome.succeeded || results.empty()) << "a result of a call that failed";
    EXPECT_TRUE(!row.Is(kOnClipboard) || ClipboardIsClosed());
    outcome.report = std::move(report);
    return outcome;
}

} // namespace test
