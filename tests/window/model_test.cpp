// What the window knows about pictures: their versions, smaller levels, parts, and previews that show what applying
// gives.
#include <gtest/gtest.h>

#include "catalogue/run.h"
#include "model/effect_run.h"
#include "model/history.h"
#include "model/parameter_scale.h"
#include "pictures/plain_image.h"

namespace {

SharedPicture Gradient(LONG width, LONG height) {
    std::vector<BYTE> samples;
    for (LONG y = 0; y != height; ++y) {
        for (LONG x = 0; x != width; ++x) {
            for (const LONG level : {x * 5, y * 3, x + y}) {
                samples.push_back(static_cast<BYTE>(level));
            }
        }
    }
    return std::make_shared<const Picture>(
        PictureFromSamples(samples.data(), static_cast<std::size_t>(width), static_cast<std::size_t>(height), 3));
}

Version VersionOf(LONG side, const char* made) {
    return {Gradient(side, side), false, {}, made};
}

std::vector<BYTE> SamplesOf(const Picture& picture) {
    return PlainFromPicture(picture, kExitInput, "").samples;
}

EffectRun RunOf(const char* effect, const SharedPicture& image) {
    auto levels = std::make_shared<PictureLevels>(image);
    levels->MakeSmaller([](int) { return true; });
    return {{image, false, {}, levels, "picture"}, ParameterValues(*catalogue::FindEffect(effect)), {}};
}

TEST(History, UndoesRedoesAndForgetsTheOldestFirst) {
    History history(VersionOf(8, ""));
    history.MarkSaved();
    history.Add(VersionOf(9, "a"));
    history.Add(VersionOf(10, "b"));
    EXPECT_FALSE(history.IsSaved());
    history.Undo();
    EXPECT_EQ(history.NextMade(), "b");
    history.Add(VersionOf(11, "c"));
    EXPECT_FALSE(history.CanRedo());
    history.Undo();
    history.Undo();
    history.Undo(); // there is nothing further
    EXPECT_TRUE(history.IsSaved());
    history.Redo();
    const std::uint64_t both = history.BytesKept();
    History other(VersionOf(40, ""));
    other.Add(VersionOf(40, "d"));
    std::vector<History*> all{&history, &other};
    KeepWithin(all, both); // where most is kept
    EXPECT_FALSE(other.CanUndo());
    EXPECT_EQ(history.BytesKept(), both);
    KeepWithin(all, both - 1);
    EXPECT_FALSE(history.CanUndo());
    EXPECT_TRUE(history.CanRedo());
    EXPECT_EQ(history.Current().made, "a");
}

TEST(Preview, OfTheVisiblePartIsThatPartOfTheResult) {
    const SharedPicture image = Gradient(301, 200);
    for (const char* const effect : {"rgb-rev", "chroma", "sharp", "shade", "mosaic", "anti-alias", "outline"}) {
        for (const bool inEllipse : {false, true}) {
            EffectRun run = RunOf(effect, image);
            run.values.SetText("amount", "80");
            if (inEllipse) {
                run.subject.selection.form = Selection::Form::kEllipse;
                run.subject.selection.rect = {40, 30, 190, 130};
            }
            const Preview preview = MakePreview(run, {{60, 50, 120, 90}, 1}, [](int) { return true; });
            const ChainResult result = Apply(run, [](int) { return true; });
            const LockedPicture size(*preview.image);
            ASSERT_EQ(preview.scale, 1) << effect;
            RECT part{60, 50, 120, 90};
            RECT partOfPreview{60 - static_cast<LONG>(preview.left), 50 - static_cast<LONG>(preview.top), 0, 0};
            partOfPreview.right = partOfPreview.left + 60;
            partOfPreview.bottom = partOfPreview.top + 40;
            ASSERT_LE(partOfPreview.right, static_cast<LONG>(size.Width())) << effect;
            EXPECT_EQ(SamplesOf(PartOf(*preview.image, partOfPreview)), SamplesOf(PartOf(result.image, part)))
                << effect << (inEllipse ? " in an ellipse" : "");
        }
    }
}

TEST(Preview, OfASmallViewIsMadeFromASmallPictureAndLiesWhereTheResultDoes) {
    const SharedPicture image = Gradient(1024, 512);
    EffectRun run = RunOf("rotation", image);
    run.values.SetText("angle", "90");
    const Preview turned = MakePreview(run, {{0, 0, 1024, 512}, 0.25}, [](int) { return true; });
    EXPECT_EQ(LockedPicture(*turned.image).Width(), 128U);
    EXPECT_EQ(LockedPicture(*turned.image).Height(), 256U);
    EXPECT_EQ(turned.left, 256);
    EXPECT_EQ(turned.top, -256);
    EXPECT_FALSE(turned.isPart);

    // The mask goes to the level with its picture, and so does the second picture with its place.
    EffectRun inverted = RunOf("rgb-rev", image);
    inverted.subject.selection.form = Selection::Form::kEllipse;
    inverted.subject.selection.rect = {0, 0, 512, 512};
    inverted.subject.selection = AsMaskOf(image->Handle(), inverted.subject.selection);
    const Preview preview = MakePreview(inverted, {{0, 0, 1024, 512}, 0.5}, [](int) { return true; });
    const std::vector<BYTE> before = SamplesOf(*inverted.subject.levels->AtLeast(0.5).picture);
    const std::vector<BYTE> after = SamplesOf(*preview.image);
    const auto at = [](std::size_t x, std::size_t y) { return 3 * (y * 512 + x); };
    EXPECT_EQ(after[at(128, 128)], 255 - before[at(128, 128)]);
    EXPECT_EQ(after[at(2, 2)], before[at(2, 2)]);
    EXPECT_EQ(after[at(400, 128)], before[at(400, 128)]);

    EffectRun layer = RunOf("layer", image);
    layer.others.emplace("layer", RunOf("layer", Gradient(64, 64)).subject);
    layer.values.SetText("x", "-100");
    layer.values.SetText("y", "8");
    const Preview laid = MakePreview(layer, {{0, 0, 1024, 512}, 0.5}, [](int) { return true; });
    EXPECT_EQ(laid.left, -100);
    EXPECT_EQ(laid.top, 0);
    EXPECT_EQ(LockedPicture(*laid.image).Width(), 512U + 50U);
}

TEST(Parameters, TextsSlidersAndSearches) {
    ParameterValues values(*catalogue::FindEffect("paste-image"));
    for (const auto& [name, text] : {std::pair{"angle", "-12.5"}, {"x", "-7"}, {"transparent", "1,2,3"}}) {
        EXPECT_EQ(values.SetText(name, text), "");
        EXPECT_EQ(values.Text(name), text);
    }
    EXPECT_NE(values.SetText("angle", "twelve"), "");
    EXPECT_EQ(values.Text("angle"), "-12.5"); // stays
    EXPECT_EQ(values.SetText("angle", ""), "");
    EXPECT_EQ(values.Get("angle").index(), 0U);

    ParameterValues size(*catalogue::FindEffect("resize"));
    size.SetText("width", "20");
    size.SetText("scale", "0.5");
    EXPECT_EQ(size.Text("width"), ""); // they exclude each other
    size.SetText("height", "9");
    EXPECT_EQ(size.Text("scale"), "");

    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        for (const catalogue::Parameter& parameter : effect.Parameters()) {
            const auto scale = ScaleFor(parameter, {640, 480});
            if (!scale) {
                continue;
            }
            const double standard = NumberOf(parameter, {}, {640, 480});
            EXPECT_NEAR(scale->NumberAt(scale->PositionOf(standard)), standard, 1e-9) << effect.name << parameter.name;
            for (const int position : {0, scale->steps}) { // what it reaches is allowed
                ParameterValues reached(effect);
                reached.Set(parameter.name, ValueOf(parameter, scale->NumberAt(position)));
                EXPECT_EQ(reached.SetText(parameter.name, reached.Text(parameter.name)), "")
                    << effect.name << parameter.name;
            }
        }
        EXPECT_TRUE(IsFound(effect, effect.function)) << effect.name;
    }
    EXPECT_EQ(TitleOf("rgb-gamma"), "RGB gamma");
    EXPECT_FALSE(IsFound(*catalogue::FindEffect("sharp"), "sharp relief"));
}

} // namespace
