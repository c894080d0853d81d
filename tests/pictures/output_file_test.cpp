#include "pictures/output_file.h"

#include <gtest/gtest.h>

#include "cli/files.h"
#include "pictures/failure.h"

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

void Put(const std::string& name, const std::string& text) {
    OutputFile file(name, OutputFile::Sync::kNo);
    file.Write(text.data(), text.size());
    file.Complete();
    file.Commit();
}

TEST(OutputFile, AppearsWholeOrNotAtAll) {
    const Folder folder;
    const std::string name = folder.Store("there", {1, 2, 3});
    {
        OutputFile file(name);
        file.Write("new", 3);
        file.Complete();
        EXPECT_EQ(folder.Load("there"), (Bytes{1, 2, 3}));
        EXPECT_EQ(folder.FileCount(), 2U);
    }
    EXPECT_EQ(folder.FileCount(), 1U);
    Put(name, "new");
    EXPECT_EQ(folder.Load("there"), (Bytes{'n', 'e', 'w'}));
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(OutputFile, ASecondInterruptRemovesAllThatIsOpen) {
    const Folder folder;
    OutputFile open(folder.Name("open"));
    OutputFile complete(folder.Name("complete"));
    complete.Complete();
    EXPECT_EQ(folder.FileCount(), 2U);
    RemoveTemporaryFiles();
#ifdef _WIN32
    EXPECT_EQ(folder.FileCount(), 1U); // the open one goes when the system closes it, at the end of the program
#else
    EXPECT_EQ(folder.FileCount(), 0U);
#endif
}

#ifndef _WIN32
mode_t ModeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

TEST(OutputFile, IsNobodyElsesUntilItIsComplete) {
    const Folder folder;
    const mode_t before = umask(022);
    for (const mode_t mode : {0600U, 0644U, 0640U, 0666U}) {
        const std::string name = folder.Store("secret", {});
        chmod(name.c_str(), mode);
        OutputFile file(name);
        for (const auto& entry : fs::directory_iterator(folder.Path(""))) {
            EXPECT_TRUE(entry.path().filename() == "secret" || ModeOf(entry.path()) == 0600) << entry.path();
        }
        file.Complete();
        file.Commit();
        EXPECT_EQ(ModeOf(name), mode);
    }
    Put(folder.Name("new"), "");
    EXPECT_EQ(ModeOf(folder.Path("new")), 0644U);
    umask(before);
}

TEST(OutputFile, KeepsOwnerAndGroup) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser gives files away";
    }
    const Folder folder;
    const std::string name = folder.Store("theirs", {});
    ASSERT_EQ(chown(name.c_str(), 12, 34), 0);
    chmod(name.c_str(), 0664);
    Put(name, "new");
    struct stat status {};
    stat(name.c_str(), &status);
    EXPECT_EQ(status.st_uid, 12U);
    EXPECT_EQ(status.st_gid, 34U);
    EXPECT_EQ(status.st_mode & 07777U, 0664U);
}

TEST(OutputFile, LinksStayLinks) {
    const Folder folder;
    fs::create_directory(folder.Path("deep"));
    fs::create_symlink("deep/second", folder.Path("first"));
    fs::create_symlink("target", folder.Path("deep/second")); // which is not there yet
    Put(folder.Name("first"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.Path("first")));
    EXPECT_TRUE(fs::is_symlink(folder.Path("deep/second")));
    EXPECT_EQ(folder.Load("deep/target"), (Bytes{'n', 'e', 'w'}));
    fs::create_symlink("loop", folder.Path("loop"));
    EXPECT_THROW(Put(folder.Name("loop"), ""), Failure);
}

// As another user than the superuser, whom permissions do not hold.
TEST(OutputFile, WhatMayNotBeWrittenIsNotReplaced) {
    const Folder folder;
    chmod(folder.Path("").c_str(), 0777);
    const std::string name = folder.Store("theirs", {1});
    chmod(name.c_str(), geteuid() == 0 ? 0644 : 0444);
    const bool superuser = geteuid() == 0;
    if (superuser) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    EXPECT_THROW(Put(name, "new"), Failure);
    if (superuser) {
        ASSERT_EQ(seteuid(0), 0);
    }
    EXPECT_EQ(folder.Load("theirs"), Bytes{1});
    EXPECT_EQ(folder.FileCount(), 1U);
}
#endif

} // namespace
