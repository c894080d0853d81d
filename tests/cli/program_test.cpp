// The finished program, run as a user's script runs it.
#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <qv8platform.h>
#else
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "files.h"

namespace {

namespace fs = std::filesystem;

fs::path ProgramPath() {
#ifdef _WIN32
    wchar_t name[MAX_PATH];
    GetModuleFileNameW(nullptr, name, MAX_PATH);
    return fs::path(name).parent_path() / "qv8.exe";
#else
    return fs::read_symlink("/proc/self/exe").parent_path() / "qv8";
#endif
}

// Runs the program through the system's command interpreter; what it says goes to the given files, what it reads comes
// from one.
int RunQv8(const std::vector<std::string>& words, const fs::path& out, const fs::path& err, const fs::path& in = {}) {
    std::u8string line = u8"\"" + ProgramPath().u8string() + u8"\"";
    for (const std::string& word : words) {
        line += u8" \"" + std::u8string(word.begin(), word.end()) + u8"\"";
    }
    line += in.empty() ? u8"" : u8" <\"" + in.u8string() + u8"\"";
    line += u8" >\"" + out.u8string() + u8"\" 2>\"" + err.u8string() + u8"\"";
#ifdef _WIN32
    return _wsystem((L"\"" + fs::path(line).wstring() + L"\"").c_str());
#else
    const int status = std::system(reinterpret_cast<const char*>(line.c_str()));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

TEST(Program, GivesItsExitCodeAndKeepsItsTwoOutputsApart) {
    const Folder folder;
    EXPECT_EQ(RunQv8({"effects"}, folder.Path("out"), folder.Path("err")), 0);
    EXPECT_FALSE(folder.Load("out").empty());
    EXPECT_TRUE(folder.Load("err").empty());
    EXPECT_EQ(RunQv8({"nothing"}, folder.Path("out"), folder.Path("err")), 2);
    EXPECT_TRUE(folder.Load("out").empty());
    EXPECT_FALSE(folder.Load("err").empty());
}

TEST(Program, ShowsNoBarInAFileAndTakesNamesOfAllLanguages) {
    const Folder folder;
    const std::string in = folder.Store("\xC3\xA9\xE6\xB5\xB7 1.bmp", BuildBmp({.bits = 8, .width = 3}));
    const std::string out = folder.Name("\xC3\xB8\xD0\x96.bmp");
    EXPECT_EQ(RunQv8({"convert-color", "--depth", "24", in, out}, folder.Path("out"), folder.Path("err")), 0);
    EXPECT_TRUE(folder.Load("err").empty());
    EXPECT_EQ(folder.Load("\xC3\xB8\xD0\x96.bmp").size(), 14U + 40 + 2 * 12);
}

TEST(Program, StandsInPipes) {
    const Folder folder;
    const Bytes picture = BuildBmp({.width = 4, .height = 40}); // rows without padding
    folder.Store("in.bmp", picture);
    const auto run = [&](const std::vector<std::string>& words, const char* in, const char* out) {
        EXPECT_EQ(RunQv8(words, folder.Path(out), folder.Path("err"), folder.Path(in)), 0) << words[0];
    };
    run({"rgb-rev", "-", "-", "--format", "png"}, "in.bmp", "middle");
    run({"run", "rgb-rev", "-", "-o", "-", "--format", "bmp"}, "middle", "out");
    run({"copy-image", "-", "-"}, "in.bmp", "same"); // in the format of the input
    EXPECT_EQ(folder.Load("middle")[1], 'P');
    EXPECT_EQ(Slice(folder.Load("out"), 54), Slice(picture, 54));
    EXPECT_EQ(Slice(folder.Load("same"), 54), Slice(picture, 54));
    folder.Store("cut", Slice(folder.Load("middle"), 0, 20));
    EXPECT_EQ(RunQv8({"rgb-rev", "-", "-"}, folder.Path("out"), folder.Path("err"), folder.Path("cut")), 3);
    EXPECT_TRUE(folder.Load("out").empty());
}

#ifdef _WIN32
// Between two runs of the program the system holds the picture.
TEST(Program, CopiesAndPastes) {
    const Folder folder;
    const Bytes plain = BuildBmp({.bits = 8, .width = 5, .height = 3, .colours = 7});
    const std::string wide = folder.Store("565.bmp", BuildBmp({.bits = 16, .masks = {0xF800, 0x07E0, 0x001F}}));
    const std::string out = folder.Name("out.bmp");
    const auto run = [&](const std::vector<std::string>& words) {
        EXPECT_EQ(RunQv8(words, folder.Path("log"), folder.Path("err")), 0) << words[0];
    };
    run({"copy", folder.Store("in.bmp", plain)});
    run({"paste", out});
    EXPECT_EQ(folder.Load("out.bmp"), plain);
    run({"convert-color", "--depth", "24", wide, folder.Name("24.bmp")});
    run({"copy", wide});
    run({"paste", "--force", out});
    EXPECT_EQ(Slice(folder.Load("out.bmp"), 54), Slice(folder.Load("24.bmp"), 54));
}
#else
// Starts the program in a process of its own, in which `prepare` is called before.
template <class Prepare>
pid_t Start(const std::vector<std::string>& words, Prepare prepare) {
    const std::string program = ProgramPath().string();
    const pid_t child = fork();
    if (child == 0) {
        prepare();
        execl(program.c_str(), "qv8", words[0].c_str(), words[1].c_str(), words[2].c_str(),
              static_cast<char*>(nullptr));
        _exit(99);
    }
    return child;
}

int ExitCodeOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The program waits for its input in a pipe, so the signal comes before its work begins.
TEST(Program, ASignalEndsTheWorkAndLeavesNoFile) {
    const Folder folder;
    const std::string in = folder.Name("pipe");
    ASSERT_EQ(mkfifo(in.c_str(), 0600), 0);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const pid_t child = Start({"rgb-rev", in, folder.Name("out.png")}, [number] { signal(number, SIG_DFL); });
        const int pipe = open(in.c_str(), O_WRONLY); // opens when the program opens the other end
        kill(child, number);
        const Bytes picture = BuildBmp({});
        EXPECT_EQ(write(pipe, picture.data(), picture.size()), static_cast<ssize_t>(picture.size()));
        close(pipe);
        EXPECT_EQ(ExitCodeOf(child), 130) << number;
        EXPECT_EQ(folder.FileCount(), 1U);
    }
}

// As when a disk is full: the first part of the file can be written.
TEST(Program, AFullDiskLeavesNoFile) {
    const Folder folder;
    const Bytes picture = BuildBmp({.width = 300, .height = 300});
    const std::string in = folder.Store("in.bmp", picture);
    for (const char* name : {"out.bmp", "out.png", "in.bmp"}) {
        const std::string err = folder.Name("err");
        const pid_t child = Start({"rgb-rev", in, "-o" + folder.Name(name)}, [&err] {
            const rlimit limit{1000, 1000};
            setrlimit(RLIMIT_FSIZE, &limit);
            dup2(open(err.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600), STDERR_FILENO);
        });
        EXPECT_EQ(ExitCodeOf(child), 4) << name;
        const Bytes said = folder.Load("err");
        EXPECT_NE(std::string(said.begin(), said.end()).find(std::string(name) + ": cannot be written"),
                  std::string::npos);
        EXPECT_EQ(folder.FileCount(), 2U);
        EXPECT_EQ(folder.Load("in.bmp"), picture);
    }
    EXPECT_EQ(RunQv8({"rgb-rev", in, "/dev/full"}, folder.Path("log"), folder.Path("err")), 2); // has no ending
    fs::create_symlink("/dev/full", folder.Path("full.bmp"));
    EXPECT_EQ(RunQv8({"rgb-rev", "--force", in, folder.Name("full.bmp")}, folder.Path("log"), folder.Path("err")), 4);
    EXPECT_EQ(RunQv8({"effects"}, "/dev/full", folder.Path("err")), 4);
}

TEST(Program, DevicesAreNoPictures) {
    const Folder folder;
    for (const char* name : {"/dev/zero", "/dev/null"}) {
        EXPECT_EQ(RunQv8({"rgb-rev", name, folder.Name("out.bmp")}, folder.Path("log"), folder.Path("err")), 3);
    }
    EXPECT_EQ(folder.FileCount(), 2U);
}
#endif

} // namespace
