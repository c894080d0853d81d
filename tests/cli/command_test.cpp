#include <gtest/gtest.h>

#include "catalogue/text.h"
#include "chains/words.h"
#include "files.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/interrupt.h"
#include "progress_bar.h"
#include "run_qv8.h"

namespace {

constexpr std::size_t kPixels24 = 14 + 40;

// A 24-bit picture of 8 x 4 pixels, whose rows need no padding.
const BmpForm kForm{.bits = 24, .width = 8, .height = 4};

// What adding `level` to the red bytes at the given pixels (from the top) makes of the picture.
template <class Inside>
Bytes ReddenedWhere(Inside inside, int level) {
    Bytes file = BuildBmp(kForm);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x) {
            unsigned char& red = file[kPixels24 + static_cast<std::size_t>((3 - y) * 24 + 3 * x + 2)];
            red = inside(x, y) ? static_cast<unsigned char>(std::min(red + level, 255)) : red;
        }
    }
    return file;
}

// Runs rgb-level --red 40 with further words and returns the written pixels.
Bytes Reddened(const Folder& folder, std::vector<std::string> words) {
    words.insert(words.begin(), {"rgb-level", "--force", "--red", "40"});
    words.push_back(folder.Store("in.bmp", BuildBmp(kForm)));
    words.push_back(folder.Name("out.bmp"));
    const Outcome outcome = RunQv8(words);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Slice(folder.Load("out.bmp"), kPixels24);
}

TEST(Command, AppliesAnEffectToAFile) {
    const Folder folder;
    EXPECT_EQ(Reddened(folder, {}), Slice(ReddenedWhere([](int, int) { return true; }, 40), kPixels24));
}

TEST(Command, LimitsAnEffectToAnArea) {
    const Folder folder;
    const auto expect = [&](std::vector<std::string> words, auto inside) {
        SCOPED_TRACE(words[0]);
        EXPECT_EQ(Reddened(folder, words), Slice(ReddenedWhere(inside, 40), kPixels24));
        words.push_back("--outside");
        EXPECT_EQ(Reddened(folder, words),
                  Slice(ReddenedWhere([&](int x, int y) { return !inside(x, y); }, 40), kPixels24));
    };
    const auto inBox = [](int x, int y) { return x >= 2 && x <= 5 && y >= 1 && y <= 2; };
    expect({"--polygon", "2,1", "5,1", "5,2", "2,2"}, inBox);
    BmpForm form{.bits = 1, .width = 8, .height = 4};
    const Bytes none{0, 0, 0, 0};
    const Bytes some{0x3C, 0, 0, 0};
    expect({"--mask", folder.Store("bits.bmp", BuildBmp(form, {none, some, some, none}))}, inBox);
    form.bits = 32;
    const Bytes dark(32, 0);
    Bytes light(32, 0);
    std::fill(light.begin() + 8, light.begin() + 24, static_cast<unsigned char>(200));
    expect({"--mask", folder.Store("light.bmp", BuildBmp(form, {dark, light, light, dark}))}, inBox);
}

// The outline is the library's; the corners of its rectangle and the middle are beyond doubt.
TEST(Command, TakesAnEllipse) {
    const Folder folder;
    const Bytes before = Slice(BuildBmp(kForm), kPixels24);
    for (const bool outside : {false, true}) {
        std::vector<std::string> words{"--ellipse", "0,0,8,4"};
        if (outside) {
            words.push_back("--outside");
        }
        const Bytes after = Reddened(folder, words);
        for (const std::size_t corner : {2U, 23U, 74U, 95U}) {
            EXPECT_EQ(after[corner] != before[corner], outside) << corner;
        }
        for (const std::size_t middle : {38U, 59U}) {
            EXPECT_EQ(after[middle] != before[middle], !outside) << middle;
        }
    }
}

// The mask of a selection goes where --mask-out says, and is the area of the next effect.
TEST(Command, WritesTheMaskOfASelection) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    const std::string mask = folder.Name("mask.bmp");
    const std::string out = folder.Name("out.bmp");
    const Outcome outcome =
        RunQv8({"select-image", "--polygon", "2,1", "5,1", "5,2", "2,2", "--outside", "--mask-out", mask, in, out});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const auto inBox = [](int x, int y) { return x >= 2 && x <= 5 && y >= 1 && y <= 2; };
    EXPECT_EQ(Reddened(folder, {"--mask", mask}),
              Slice(ReddenedWhere([&](int x, int y) { return !inBox(x, y); }, 40), kPixels24));
    EXPECT_EQ(RunQv8({"select-image", "--mask-out", out, in, out}).code, 2);
    EXPECT_EQ(RunQv8({"select-image", "--mask-out", "mask.gif", in, out}).code, 2);
    EXPECT_EQ(RunQv8({"copy-image", "--mask-out", mask, in, out}).code, 2);
}

// The layer covers the picture from column 3 on.
TEST(Command, LaysAPictureOverAnother) {
    const Folder folder;
    const Bytes in = BuildBmp(kForm);
    const std::string name = folder.Store("in.bmp", in);
    const std::string out = folder.Name("out.bmp");
    ASSERT_EQ(RunQv8({"rgb-rev", name, folder.Name("layer.bmp")}).code, 0);
    const Outcome outcome =
        RunQv8({"layer", "--x", "3", "--clip", "--transparent", "1,2,3", name, folder.Name("layer.bmp"), out});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const Bytes over = folder.Load("layer.bmp");
    const Bytes written = folder.Load("out.bmp");
    for (std::size_t i = 0; i < 4 * 24; ++i) {
        const bool covered = i % 24 >= 9;
        EXPECT_EQ(written[kPixels24 + i], covered ? over[kPixels24 + i - 9] : in[kPixels24 + i]) << i;
    }
}

TEST(Command, InvertsAllChannelsUnlessSomeAreNamed) {
    const Folder folder;
    const Bytes file = BuildBmp(kForm);
    for (const bool redOnly : {false, true}) {
        std::vector<std::string> words{"rgb-rev", folder.Store("in.bmp", file), "-o", folder.Name("out.bmp")};
        if (redOnly) {
            words.push_back("--red");
        }
        ASSERT_EQ(RunQv8(words).code, 0);
        const Bytes written = folder.Load("out.bmp");
        for (std::size_t i = kPixels24; i < file.size(); ++i) {
            const bool inverted = !redOnly || (i - kPixels24) % 3 == 2;
            ASSERT_EQ(written[i], inverted ? 255 - file[i] : file[i]) << i;
        }
    }
}

TEST(Command, InputMayBeTheOutput) {
    const Folder folder;
    const std::string name = folder.Store("a.bmp", BuildBmp(kForm));
    ASSERT_EQ(RunQv8({"rgb-level", "--red", "-300", name, "-o", name}).code, 0);
    EXPECT_EQ(folder.Load("a.bmp")[kPixels24 + 2], 0);
    EXPECT_EQ(folder.FileCount(), 1U);
    // Under another name of the file, which keeps what it was, and through a link, which stays one.
    const Bytes before = folder.Load("a.bmp");
    std::filesystem::create_hard_link(folder.Path("a.bmp"), folder.Path("hard.bmp"));
    ASSERT_EQ(RunQv8({"rgb-rev", "--force", folder.Name("hard.bmp"), name}).code, 0);
    EXPECT_EQ(folder.Load("hard.bmp"), before);
    EXPECT_NE(folder.Load("a.bmp"), before);
    std::error_code unsupported;
    std::filesystem::create_symlink("a.bmp", folder.Path("soft.bmp"), unsupported);
    if (!unsupported) {
        ASSERT_EQ(RunQv8({"rgb-rev", "--force", folder.Name("soft.bmp"), folder.Name("soft.bmp")}).code, 0);
        EXPECT_EQ(folder.Load("a.bmp"), before);
        EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("soft.bmp")));
    }
}

TEST(Command, ExitCodesAndWordsSayWhatIsWrong) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    const std::string out = folder.Name("out.bmp");
    const std::string cut = folder.Store("cut.bmp", Slice(BuildBmp(kForm), 0, 90));
    const std::string other = folder.Store("other.bmp", BuildBmp({.bits = 1, .width = 9, .height = 4}));
    const std::string header = folder.Store("header.bmp", Slice(BuildBmp(kForm), 0, 30));
    const std::string low = folder.Store("low.bmp", BuildBmp({.bits = 1, .width = kForm.width, .height = 3}));
    const std::string nowhere = folder.Name("nowhere");
    const std::string kernel = folder.Store("kernel", Bytes(70000, ' '));
    const std::string longName(5000, 'n');
    struct Case {
        std::vector<std::string> words;
        int code;
        std::string told;
    };
    const Case cases[] = {
        {{"convert-color", "--depth", "24", in, out}, 1, "in.bmp: convert-color: "},
        {{}, 2, "subcommand"},
        {{"blur", in, out}, 2, "\"blur\""},
        {{"shrap", in, out}, 2, "did you mean \"sharp\"?"},
        {{"sharp", "--strenght", "3", in, out}, 2, "did you mean \"--strength\"?"},
        {{"sharp", in, out, out}, 2, "one word too many"},
        {{"sharp", in, other}, 4, "is there already"},
        {{"sharp", other, out}, 1, "convert-color --depth 24"},
        {{"rgb-level", in}, 2, "OUTPUT"},
        {{"rgb-level", "--red", "x", in, out}, 2, "--red"},
        {{"rgb-level", "--red", "3000000000", in, out}, 2, "--red"},
        {{"rgb-gamma", "--red", "nan", in, out}, 2, "--red"},
        {{"rgb-rev", "--polygon", "1,1", in, out}, 2, "--polygon"},
        {{"rgb-rev", "--ellipse", "1,1,2", in, out}, 2, "--ellipse"},
        {{"affine", "--corners", "0,0", "0,3", "5,3", in, out}, 2, "--corners"},
        {{"affine", "--corners", "1,2", "0,1", "7,0", "2,3", in, out}, 1, "no area"},
        {{"rgb-rev", "--mask", in, "--ellipse", "1,1,2,2", in, out}, 2, "excludes"},
        {{"rgb-rev", "--outside", in, out}, 2, "outside needs"},
        {{"rgb-rev", in, folder.Name("out.gif")}, 2, "out.gif"},
        {{"convert-color", "--depth", "7", in, out}, 2, "--depth"},
        {{"rgb-rev", nowhere, out}, 3, "nowhere"},
        {{"rgb-rev", cut, out}, 3, "cut.bmp"},
        {{"rgb-rev", header, out}, 3, "header.bmp"},
        {{"rgb-rev", "--max-pixels", "31", in, out}, 3, "limit of 31"},
        {{"rgb-rev", "--mask", cut, in, out}, 3, "cut.bmp"},
        {{"rgb-rev", "--mask", other, in, out}, 3, "9 x 4"},
        {{"rgb-rev", "--mask", low, in, out}, 3, " x 3"},
        {{"convert-color", "--colours", "1", in, out}, 2, "2 to 256"},
        {{"convert-color", "--colours", "9", "--depth", "4", in, out}, 2, "colours"},
        {{"rgb-rev", "-", "-", "--format", "gif"}, 2, "gif"},
        {{"create-image", "--width", "3", "--height", "2", "-"}, 2, "--format"},
        {{"info", "/nowhere"}, 3, "/nowhere"},
        {{"rgb-rev", in, nowhere + "/out.bmp"}, 4, "nowhere"},
        {{"rgb-level", "--red", "", in, out}, 2, "behind --red"},
        {{"rgb-level", "--red", "1e3", in, out}, 2, "\"1e3\""},
        {{"rgb-level", "--red", "0x10", in, out}, 2, "\"0x10\""},
        {{"rgb-level", "--red=5 ", in, out}, 2, "\"5 \""},
        {{"rgb-gamma", "--red", "1e999", in, out}, 2, "--red"},
        {{"rotation", "--angle", "nan", in, out}, 2, "--angle"},
        {{"rotation", "--angle", "360", in, out}, 2, "--angle"},
        {{"resize", "--scale", "1e30", in, out}, 2, "2147483647 x 2147483647"},
        {{"resize", "--scale", "-1", in, out}, 2, "--scale"},
        {{"resize", "--width", "2147483647", in, out}, 2, "limit"},
        {{"create-image", "--width", "2147483647", "--height", "2147483647", out}, 2, "limit"},
        {{"rgb-rev", "--max-pixels", "-1", in, out}, 2, "--max-pixels"},
        {{"rgb-rev", "--mask=", in, out}, 2, "--mask= has no value"},
        {{"rgb-rev", "", out}, 2, "behind rgb-rev"},
        {{"rgb-rev", "-in.bmp", out}, 2, "-in.bmp"},
        {{"rgb-rev", "--", "-in.bmp", out}, 3, "-in.bmp"},
        {{"rgb-rev", "a\nb\x1B[1m", out}, 3, "a?b?[1m: cannot"},
        {{"rgb-rev",
          "\xC2\x9B"
          "2J\xE2\x80\xAE\xC3\xA9\x9B\xC0\x8A",
          out},
         3,
         "?2J?\xC3\xA9???: cannot"},
        {{"rgb-rev", longName, out}, 3, "nn ... nn"},
        {{"rgb-rev", in, folder.Name(longName + ".bmp")}, 4, "cannot be written"},
        {{"rgb-rev", "--ellipse", longName, in, out}, 2, "--ellipse"},
        {{"custom-filter", "--kernel", folder.Name("."), in, out}, 3, "cannot be read"},
        {{"custom-filter", "--kernel", kernel, in, out}, 3, "too large"},
        {{"custom-filter", "--kernel", in, in, out}, 3, "in.bmp"},
        {{"layer", in, cut, out}, 3, "cut.bmp"},
        {{"paste-image", "--pasted", in, "--mask", other, "--x=0", "--y=0", in, out}, 3, "9 x 4"},
        {{"select-image", "--mask-out", folder.Name("./out.bmp"), in, out}, 2, "a file each"},
        {{"select-image", "--mask-out", out, in, nowhere + "/out.bmp"}, 4, "nowhere"},
    };
    for (const Case& wrong : cases) {
        const Outcome outcome = RunQv8(wrong.words);
        EXPECT_EQ(outcome.code, wrong.code) << outcome.err;
        EXPECT_TRUE(Has(outcome.err, wrong.told)) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        EXPECT_EQ(folder.FileCount(), 6U) << outcome.err;
    }
    EXPECT_EQ(folder.Load("in.bmp"), BuildBmp(kForm));
    EXPECT_EQ(RunQv8({"rgb-level", "--red", "010", in, out}).code, 0); // ten, and not eight
    EXPECT_EQ(Slice(folder.Load("out.bmp"), kPixels24),
              Slice(ReddenedWhere([](int, int) { return true; }, 10), kPixels24));
}

TEST(Command, WhatCannotBePrintedIsNoSuccess) {
    for (const char* word : {"effects", "--help", "--version"}) {
        std::ostringstream out;
        std::ostringstream err;
        out.setstate(std::ios::badbit);
        EXPECT_EQ(RunCommandLine({word}, out, err), 4) << word;
        EXPECT_TRUE(Has(err.str(), "standard output"));
    }
}

TEST(Command, WhatIsThereStaysWhenWritingFails) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    const std::string kept = folder.Store("kept.bmp", {1, 2, 3});
    std::filesystem::permissions(folder.Path("kept.bmp"), std::filesystem::perms::owner_read);
    EXPECT_EQ(RunQv8({"rgb-rev", "--force", in, kept}).code, 4);
    std::filesystem::permissions(folder.Path("kept.bmp"), std::filesystem::perms::owner_all);
    std::filesystem::create_directory(folder.Path("folder.bmp"));
    EXPECT_EQ(RunQv8({"rgb-rev", "--force", in, folder.Name("folder.bmp")}).code, 4);
    SetInterrupted(true);
    EXPECT_EQ(RunQv8({"rgb-rev", "--force", in, kept}).code, 130);
    SetInterrupted(false);
    const Picture picture = LoadPicture(in, 1000).picture;
    SetInterrupted(true); // when all is done but for the last step
    EXPECT_THROW(SavePicture(picture, kept, ImageFormat::kPng, 90), Failure);
    SetInterrupted(false);
    EXPECT_EQ(folder.Load("kept.bmp"), (Bytes{1, 2, 3}));
    EXPECT_EQ(folder.FileCount(), 3U);
}

TEST(Command, AnInterruptStopsTheLibrary) {
    ProgressBar bar(ProgressBar::Shown::kNever);
    const Progress progress(bar.AsReport());
    EXPECT_NE(PercentProgress(1, 2, 0, 100, progress.Owner()), 0);
    SetInterrupted(true);
    EXPECT_EQ(PercentProgress(1, 2, 0, 100, progress.Owner()), 0);
    SetInterrupted(false);
}

TEST(Command, TellsAboutAPicture) {
    const Folder folder;
    const std::string name = folder.Store("a.bmp", BuildBmp({.bits = 4, .width = 5, .height = 7, .colours = 9}));
    const Outcome outcome = RunQv8({"info", name});
    EXPECT_EQ(outcome.code, 0);
    for (const char* part : {"a.bmp", "BMP", "5 x 7", "4 bits", "9 entries"}) {
        EXPECT_TRUE(Has(outcome.out, part)) << outcome.out;
    }
}

TEST(Command, ListsEveryEffectAndExplainsIt) {
    const Outcome list = RunQv8({"effects"});
    EXPECT_EQ(list.code, 0);
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        if (effect.family == catalogue::Family::kClipboard) {
            continue;
        }
        EXPECT_TRUE(Has(list.out, effect.name));
        const Outcome help = RunQv8({effect.name, "--help"});
        EXPECT_EQ(help.code, 0);
        EXPECT_TRUE(Has(help.out, effect.help)) << help.out;
        EXPECT_TRUE(Has(help.out, "130 cancelled")) << effect.name;
    }
}

TEST(Command, SidesAreRoundedAndKeepTheirProportions) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    const std::string out = folder.Name("out.bmp");
    struct Case {
        std::vector<std::string> words;
        const char* size;
    };
    for (const Case& c :
         {Case{{"--scale", ".45"}, "4 x 2"}, {{"--height", "2"}, "4 x 2"}, {{"--width", "3"}, "3 x 2"}}) {
        std::vector<std::string> words{"resize", "--force", in, out};
        words.insert(words.begin() + 1, c.words.begin(), c.words.end());
        EXPECT_EQ(RunQv8(words).code, 0);
        EXPECT_TRUE(Has(RunQv8({"info", out}).out, c.size)) << c.words[0];
    }
    EXPECT_EQ(RunQv8({"rgb-gamma", "--red", "-.5", "--force", in, out}).code, 0);
}

TEST(Command, PointsAreReadAsWritten) {
    const auto points = catalogue::ParsePoints("-5,3 7,-8");
    ASSERT_TRUE(points);
    EXPECT_EQ((*points)[0].x, -5);
    EXPECT_EQ((*points)[1].y, -8);
    for (const char* wrong : {"1,2 3", "1,2 3,4,5", "1,2 3,x", "1,2 3,99999999999", "1;2 3;4"}) {
        EXPECT_FALSE(catalogue::ParsePoints(wrong)) << wrong;
    }
    EXPECT_EQ(Prepared({"--polygon", "1,2", "-3,4", "in", "5,6"}),
              (std::vector<std::string>{"--polygon=1,2 -3,4", "in", "5,6"}));
    EXPECT_EQ(Prepared({"--corners", "1,2", "3,4"}), (std::vector<std::string>{"--corners=1,2 3,4"}));
}

TEST(Command, TheBarShowsHowFarTheWorkIs) {
    EXPECT_EQ(ProgressLine(0), "[" + std::string(40, '.') + "]   0 %");
    EXPECT_EQ(ProgressLine(50), "[" + std::string(20, '#') + std::string(20, '.') + "]  50 %");
    EXPECT_EQ(ProgressLine(100), "[" + std::string(40, '#') + "] 100 %");
}

} // namespace
