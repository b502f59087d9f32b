#include "core/foundation/Files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/foundation/PrivateFolder.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

fs::perms modeOf(const std::string& path) {
    return fs::status(path).permissions();
}

TEST(Files, createsFoldersWithTheExactMode) {
    const TemporaryFolder folder;
    ::chmod(folder.path().c_str(), 02755);  // new folders would inherit the set-group-id bit
    for (const mode_t umask : {mode_t{0000}, mode_t{0777}}) {
        const std::string top = folder.path() + "/" + std::to_string(umask);
        const mode_t before = ::umask(umask);
        EXPECT_TRUE(createFolders(top + "/b/c", 0750).has_value());
        ::umask(before);
        for (const char* below : {"", "/b", "/b/c"}) EXPECT_EQ(modeOf(top + below), fs::perms(0750)) << umask;
    }
}

TEST(Files, keepsExistingFolders) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "");
    shell(folder.path(), "ln -s . link; ln -s nowhere dangling");
    EXPECT_TRUE(createFolders(folder.path() + "/link", 0777).has_value());
    EXPECT_EQ(modeOf(folder.path()), fs::perms(0700));
    EXPECT_EQ(createFolders(file, 0700), std::unexpected(SystemError{"mkdir " + file, EEXIST}));
    EXPECT_EQ(createFolders(folder.path() + "/dangling/x", 0700).error().code, EEXIST);
}

TEST(Files, writesOnlyRegularFiles) {
    const TemporaryFolder folder;
    const std::string file = folder.path() + "/file";
    for (const char* text : {"a longer text", "text"}) EXPECT_TRUE(writeFile(file, text, 0600).has_value());
    shell(folder.path(), "ln -s file link; mkfifo pipe");
    EXPECT_EQ(writeFile(folder.path() + "/link", "x", 0600).error().code, ELOOP);
    EXPECT_EQ(writeFile(folder.path() + "/pipe", "x", 0600).error().code, ENXIO);
    EXPECT_EQ(writeFile("/dev/null", "x", 0600).error().code, EEXIST);
    EXPECT_EQ(readFile(folder.path() + "/link", 4), "text");
    EXPECT_EQ(readFile(file, 3), std::nullopt);
    for (const char* other : {"/pipe", "", "/none"}) EXPECT_FALSE(readFile(folder.path() + other, 9));
}

TEST(Files, writesAllBytesInSeveralCalls) {
    static std::string taken;
    taken.clear();
    // The first call is interrupted; the others accept two bytes each, and none after the sixth byte.
    const auto write = [](int, const void* bytes, std::size_t count) -> ssize_t {
        static bool interrupted = false;
        if (!std::exchange(interrupted, true)) return errno = EINTR, -1;
        const std::size_t most = taken.size() < 6 ? 2 : 0;
        taken.append(static_cast<const char*>(bytes), std::min(count, most));
        return static_cast<ssize_t>(std::min(count, most));
    };
    EXPECT_EQ(writeAll(-1, "abc", write), 3U);
    EXPECT_EQ(writeAll(-1, "defghi", write), 4U);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(taken, "abcdefg");
    EXPECT_EQ(writeAll(-1, "x"), 0U);
    EXPECT_EQ(errno, EBADF);
}

// Runs as another user, because root may enter folders of any mode.
TEST(Files, removesClosedFoldersButFollowsNoLink) {
    const TemporaryFolder folder;
    shell(folder.path(),
          "mkdir -p tree/a/b other/kept; ln -s ../other tree/link; chmod 500 other tree/a/b tree/a tree; "
          "chown -R 65534 . || :");
    if (::geteuid() == 0 && ::seteuid(65534) != 0) GTEST_SKIP() << "no other user exists here";
    const std::string tree = folder.path() + "/tree", other = folder.path() + "/other";
    EXPECT_TRUE(removeTree(tree));
    EXPECT_FALSE(fs::exists(tree));
    EXPECT_EQ(modeOf(other), fs::perms(0500));
    EXPECT_TRUE(holdsEntries(other));
    EXPECT_FALSE(holdsEntries(other, "kept"));
    fs::permissions(other, fs::perms(0700));
    EXPECT_EQ(::seteuid(::getuid()), 0);
}

TEST(Files, keepsPrivateFilesPrivate) {
    const TemporaryFolder folder;
    shell(folder.path(),
          "mkdir -m 755 p; cd p; echo text >open; chmod 666 open; mkfifo pipe; ln -s open link");
    const auto files = PrivateFolder::open(folder.path() + "/p");
    ASSERT_TRUE(files);
    EXPECT_EQ(modeOf(folder.path() + "/p"), fs::perms(0700));
    EXPECT_EQ(files->read("open", 5), "text\n");
    EXPECT_EQ(modeOf(folder.path() + "/p/open"), fs::perms(0600));
    EXPECT_EQ(files->read("open", 4), std::nullopt);
    for (const char* other : {"link", "pipe", "none"})
        EXPECT_FALSE(files->read(other, 9) || files->openFile(other, O_APPEND)) << other;
    EXPECT_TRUE(files->replace("open", "new"));
    EXPECT_EQ(files->read("open", 9), "new");
    EXPECT_EQ(::fcntl(files->openFile("open", 0).get(), F_GETFD), FD_CLOEXEC);
}

}  // namespace
}  // namespace tarnik
