// Chains, recipes and runs over many files.
#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "batch_report.h"
#include "files.h"
#include "inputs.h"
#include "memory_budget.h"
#include "pictures/image_file.h"
#include "pictures/interrupt.h"
#include "run_qv8.h"

namespace {

namespace fs = std::filesystem;

const BmpForm kForm{.bits = 24, .width = 16, .height = 12};

// Some pictures, in folders too, and among them one that is none.
struct Collection {
    Folder folder;
    Bytes picture = BuildBmp(kForm);
    std::string out = folder.Name("out");

    Collection() {
        fs::create_directories(folder.Path("in/sub"));
        for (const char* name : {"in/a.bmp", "in/b.bmp", "in/sub/c.bmp"}) {
            folder.Store(name, picture);
        }
        folder.Store("in/broken.bmp", Slice(picture, 0, 100));
        folder.Store("in/sub/notes.txt", {'x'});
    }
    std::size_t Results(const char* name = "out") const {
        std::size_t count = 0;
        for (const auto& entry : fs::recursive_directory_iterator(folder.Path(name))) {
            count += entry.is_regular_file() ? 1U : 0U;
        }
        return count;
    }
};

// What a chain makes of a picture is what its effects make of it one after the other, however it is written.
TEST(Chain, IsItsEffectsOneAfterAnother) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    const std::string out = folder.Name("out.bmp");
    const std::string one = folder.Name("one.bmp");
    const std::string two = folder.Name("two.bmp");
    ASSERT_EQ(RunQv8({"resize", "--scale", "0.5", "--smooth", in, one}).code, 0);
    ASSERT_EQ(RunQv8({"rgb-level", "--red=-20", "--polygon", "1,1", "6,1", "6,4", one, two}).code, 0);
    ASSERT_EQ(RunQv8({"convert-color", "--depth", "24", two, folder.Name("three.bmp")}).code, 1); // has that depth
    const std::string recipe = R"(["copy-image", {"effect": "resize", "scale": 0.5, "smooth": true, "mask": null},
        {"effect": "rgb-level", "red": -20, "polygon": [[1, 1], [6, 1], [6, 4]]}])";
    for (const std::string& chain :
         {std::string(
              "resize --scale 0.5 --smooth|rgb-level --red -20 --polygon 1,1 6,1 '6,4' | convert-color --depth=24"),
          folder.Store("recipe.json", Bytes(recipe.begin(), recipe.end()))}) {
        const Outcome outcome = RunQv8({"run", chain, in, "-o", out});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(folder.Load("out.bmp"), folder.Load("two.bmp")) << chain;
    }
    EXPECT_EQ(RunQv8({"run", "create-image --width 3 --height 2 --colour 9,9,9 | rgb-rev", "-o", out}).code, 0);
    EXPECT_EQ(Slice(folder.Load("out.bmp"), 54, 9), Bytes(9, 246));
}

TEST(Chain, MistakesNameTheStepAndInARecipeTheLine) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp(kForm));
    struct Case {
        std::string chain;
        std::string told;
    };
    const Case cases[] = {
        {"sharp --strength 101", "sharp: --strength: \"101\""},
        {"sharp | ", "missing in the chain"},
        {"sharp 5", "\"5\" is one word too many"},
        {"shapr", "did you mean \"sharp\"?"},
        {"sharp --mask 'x", "quote"},
        {"sharp | create-image --width 3 --height 3", "create-image cannot stand there"},
        {"resize --scale 2 --width 3", "scale excludes width"},
        {"set-to-clip-brd", "cannot stand there"},
        {"[\n\"sharp\",\n\"shapr\"]", "line 3: there is no effect"},
        {"[\n{\"effect\": \"sharp\",\n\n\"strength\": 101}]", "line 4: sharp: strength: \"101\""},
        {"[\n{\"effect\": \"sharp\",\n\"strenght\": 1}]", "line 3: sharp: there is no parameter strenght (did you"},
        {"[{\"effect\": \"sharp\",\n\"strength\": 1, \"strength\": 2}]", "line 2: strength stands there twice"},
        {"[{\"effect\": \"sharp\",\n\"strength\": {}}]", "line 2: strength is to be"},
        {"[\n{\"effect\": \"resize\"}]", "line 2: resize: width, height or scale"},
        {"{\"steps\": [\"sharp\"],\n\"qualty\": 5}", "line 2: a recipe has no qualty (did you mean \"quality\"?)"},
        {"{}", "steps are missing"},
        {"[\"sharp\",\n", "line 2: parse error"},
        {std::string(100000, '['), "too deep"},
    };
    for (const Case& wrong : cases) {
        const bool isRecipe = wrong.chain.starts_with("[") || wrong.chain.starts_with("{");
        const std::string word =
            isRecipe ? folder.Store("r.json", Bytes(wrong.chain.begin(), wrong.chain.end())) : wrong.chain;
        const Outcome outcome = RunQv8({"run", word, in, "-o", folder.Name("out.bmp")});
        EXPECT_EQ(outcome.code, 2) << wrong.chain;
        EXPECT_TRUE(Has(outcome.err, wrong.told)) << outcome.err;
        EXPECT_FALSE(fs::exists(folder.Path("out.bmp")));
    }
}

// Effects that move pixels clear the fourth bytes; alpha arrives all the same, and where it has no place this is said.
TEST(Chain, AlphaGoesAlong) {
    const Folder folder;
    const std::string in = folder.Store("in.bmp", BuildBmp({.bits = 32, .width = 5, .height = 3}));
    const std::string png = folder.Name("in.png");
    const std::string turned = folder.Name("turned.png");
    ASSERT_EQ(RunQv8({"copy-image", in, png}).code, 0);
    ASSERT_EQ(RunQv8({"run", "rotation --mirror --flip", png, "-o", turned}).code, 0);
    const Picture before = LoadPicture(png, 1000).picture;
    const Picture after = LoadPicture(turned, 1000).picture;
    const LockedPicture from(before);
    const LockedPicture to(after);
    ASSERT_EQ(to.Header().biBitCount, 32);
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 5; ++x) {
            EXPECT_EQ(to.RowFromTop(y)[4 * x + 3], from.RowFromTop(2 - y)[4 * (4 - x) + 3]);
        }
    }
    EXPECT_TRUE(Has(RunQv8({"layer", png, png, folder.Name("out.png")}).err, "transparency is lost"));
}

TEST(Run, DoesEveryGoodFileAndSaysWhichIsNot) {
    const Collection files;
    for (const char* jobs : {"1", "3"}) {
        const Outcome outcome = RunQv8({"run", "rgb-rev", "--recursive", files.folder.Name("in"), "--out-dir",
                                        files.out, "--name", "{stem}-x.bmp", "--json", "--force", "-j", jobs});
        EXPECT_EQ(outcome.code, 5);
        EXPECT_EQ(files.Results(), 3U);
        EXPECT_EQ(files.folder.Load("out/sub/c-x.bmp")[54], 255 - files.picture[54]);
        EXPECT_TRUE(Has(outcome.err, "broken.bmp: cannot be read"));
        EXPECT_TRUE(Has(outcome.err, "3 done, 0 skipped, 1 failed")) << outcome.err;
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 4);
        EXPECT_TRUE(Has(outcome.out, R"("state":"failed","code":3)")) << outcome.out;
    }
}

// A run that was ended is taken up where it ended.
TEST(Run, LeavesOutWhatHasAResult) {
    const Collection files;
    const std::vector<std::string> again{"run",       "rgb-rev", "--skip-existing",
                                         "--out-dir", files.out, files.folder.Name("in/?.bmp")};
    fs::create_directory(files.folder.Path("out"));
    files.folder.Store("out/a.bmp", {1, 2, 3});
    const Outcome outcome = RunQv8(again);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_TRUE(Has(outcome.err, "1 done, 1 skipped")) << outcome.err;
    EXPECT_EQ(files.folder.Load("out/a.bmp"), (Bytes{1, 2, 3}));
    fs::remove(files.folder.Path("out/b.bmp"));
    SetInterrupted(true);
    EXPECT_EQ(RunQv8(again).code, 130);
    SetInterrupted(false);
    EXPECT_EQ(files.Results(), 1U);
}

TEST(Run, RefusesWhatCannotBeMeant) {
    const Collection files;
    const std::string a = files.folder.Name("in/a.bmp");
    const std::string c = files.folder.Name("in/sub/c.bmp");
    const std::string list = files.folder.Store("list", Bytes(a.begin(), a.end()));
    struct Case {
        std::vector<std::string> words;
        int code;
        std::string told;
    };
    const Case cases[] = {
        {{"sharp", a}, 2, "--out-dir"},
        {{"sharp", "--out-dir", files.out}, 2, "FILES"},
        {{"sharp", a, c, "-o", files.out + ".bmp"}, 2, "one output for 2 inputs"},
        {{"sharp", a, c, "--out-dir", files.out, "--name", "same.bmp"}, 2, "would both become"},
        {{"sharp", a, "--out-dir", files.out, "--name", "{stam}.bmp"}, 2, "braces"},
        {{"sharp", files.folder.Name("in"), "--out-dir", files.out}, 3, "--recursive"},
        {{"sharp", files.folder.Name("in/z*"), "--out-dir", files.out}, 3, "no file fits"},
        {{"sharp", a, "--out-dir", files.folder.Name("in")}, 4, "is there already"},
        {{"sharp", a, "--out-dir", a}, 4, "cannot be written"},
        {{"sharp", "--files-from", list, "--out-dir", files.folder.Name("in"), "-j", "0"}, 2, "-j"},
        {{"copy-image", "--files-from", list, "--out-dir", files.folder.Name("in")}, 4, "is there already"},
    };
    for (const Case& wrong : cases) {
        std::vector<std::string> words{"run"};
        words.insert(words.end(), wrong.words.begin(), wrong.words.end());
        const Outcome outcome = RunQv8(words);
        EXPECT_EQ(outcome.code, wrong.code) << outcome.err;
        EXPECT_TRUE(Has(outcome.err, wrong.told)) << outcome.err;
    }
    EXPECT_EQ(files.Results("in"), 5U);
    EXPECT_EQ(files.folder.Load("in/a.bmp"), files.picture);
}

TEST(Run, ABigPictureWaitsForMemory) {
    MemoryBudget budget(100);
    std::atomic<bool> returned{false};
    bool waited = false;
    std::thread second;
    {
        MemoryBudget::Share first(budget);
        first.Take(60);
        second = std::thread([&] {
            MemoryBudget::Share share(budget);
            share.Take(60);
            waited = returned;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        returned = true;
    }
    second.join();
    EXPECT_TRUE(waited);
    MemoryBudget::Share alone(budget);
    alone.Take(1000); // more than there is, so nothing else is under way
}

TEST(Run, TheLineTellsWhatIsLeft) {
    EXPECT_TRUE(Has(BatchLine(25, 100, 50000000, 10), "25 %  25/100 files  5.0 Mpixel/s  0:30 left"));
    EXPECT_TRUE(Has(BatchLine(0, 0, 0, 0), "0/0 files"));
}

} // namespace
