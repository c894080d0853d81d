// Two overlapping parts of a picture, one of them scaled and turned, are joined back.
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "files.h"
#include "pictures/image_file.h"
#include "run_qv8.h"

namespace {

void RunOver(std::vector<std::string> words) {
    words.emplace_back("--force");
    const Outcome outcome = RunQv8(words);
    ASSERT_EQ(outcome.code, 0) << words[0] << ": " << outcome.err;
}

constexpr int kSeam = 315; // column of both points

// How far two pictures are apart on average, in the columns of each row from `begin` to before `end`.
double Difference(const std::string& name, const std::string& otherName, int begin, int end) {
    const Picture picture = LoadPicture(name, 1000000).picture;
    const Picture other = LoadPicture(otherName, 1000000).picture;
    const LockedPicture locked(picture);
    const LockedPicture lockedOther(other);
    int sum = 0;
    for (std::size_t y = 0; y < locked.Height(); ++y) {
        for (int i = 3 * begin; i < 3 * end; ++i) {
            sum += std::abs(locked.RowFromTop(y)[i] - lockedOther.RowFromTop(y)[i]);
        }
    }
    return sum / (3.0 * (end - begin) * static_cast<double>(locked.Height()));
}

TEST(Panorama, JoinsPartsOfAPicture) {
    const Folder folder;
    // Or a path of the host, seen from inside Wine.
    const std::string whole = std::ifstream(QV8_SAMPLE) ? QV8_SAMPLE : "Z:" QV8_SAMPLE;
    const std::string left = folder.Name("left.bmp");
    const std::string right = folder.Name("right.bmp");
    const std::string base = folder.Name("base.bmp");
    const std::string added = folder.Name("added.bmp");
    const std::string joined = folder.Name("joined.bmp");
    RunOver({"select-image", "--polygon=0,0 399,0 399,479 0,479", whole, left});
    RunOver({"create-image", "--width", "640", "--height", "480", base});
    RunOver({"layer", "--clip", base, left, base});
    RunOver({"select-image", "--polygon=240,0 639,0 639,479 240,479", whole, right});
    RunOver({"resize", "--scale", "1.25", "--smooth", right, right});
    RunOver({"rotation", "--angle", "10", "--smooth", "--background", "255,0,255", right, added});
    struct Case {
        const char* seam;
        int begin, end; // columns of the added picture that are joined
    };
    // The points go downwards: what is right of them lies on the left of their line.
    for (const Case& c : {Case{"none", 240, 640}, Case{"left", kSeam, 640}, Case{"right", 240, kSeam}}) {
        RunOver({"panorama", "--added", added, "--a1", "315,22", "--a2", "315,446", "--b1", "98,98", "--b2", "190,620",
                 "--seam", c.seam, "--transparent", "255,0,255", base, joined});
        SCOPED_TRACE(c.seam);
        EXPECT_LT(Difference(whole, joined, c.begin + 3, c.end - 2), 6);
        EXPECT_EQ(Difference(base, joined, 0, c.begin - 2), 0);
        EXPECT_TRUE(c.end == 640 || Difference(base, joined, c.end + 3, 640) == 0);
    }
}

} // namespace
