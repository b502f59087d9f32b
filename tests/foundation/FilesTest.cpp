#include "core/foundation/Files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

fs::perms modeOf(const std::string& path) {
    return fs::status(path).permissions();
}

TEST(Files, createsFoldersWithExactlyTheMode) {
    const TemporaryFolder folder;
    ::chmod(folder.path().c_str(), 02755);  // new folders would inherit the set-group-id bit
    for (const mode_t umask : {mode_t{0000}, mode_t{0777}}) {
        const std::string top = folder.path() + "/" + std::to_string(umask);
        const mode_t before = ::umask(umask);
        EXPECT_TRUE(createFolders(top + "/b/c", 0750).has_value());
        ::umask(before);
        for (const char* below : {"", "/b", "/b/c"})
            EXPECT_EQ(modeOf(top + below), fs::perms(0750)) << umask << below;
    }
}

TEST(Files, leavesWhatIsThere) {
    const TemporaryFolder folder;
    const std::string file = folder.path() + "/file";
    shell(folder.path(), "touch file; ln -s . link; ln -s nowhere dangling");
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
    for (const char* other : {"/pipe", "", "/none"})
        EXPECT_EQ(readFile(folder.path() + other, 9), std::nullopt);
}

TEST(Files, writesInAsManyCallsAsItTakes) {
    static std::string taken;
    taken.clear();
    // Is interrupted first, takes two bytes at a time and, from the sixth on, none.
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

}  // namespace
}  // namespace tarnik
