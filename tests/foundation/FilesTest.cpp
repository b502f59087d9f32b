#include "core/foundation/Files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

mode_t modeOf(const std::string& path) {
    struct stat found{};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Files, createsFoldersWithExactlyTheMode) {
    const TemporaryFolder folder;
    ::chmod(folder.path().c_str(), 02755);  // new folders would inherit the set-group-id bit
    for (const mode_t umask : {0000U, 0022U, 0777U}) {
        const std::string top = folder.path() + "/" + std::to_string(umask);
        const mode_t before = ::umask(umask);
        const auto made = createFolders(top + "/b/c", 0750);
        ::umask(before);
        EXPECT_TRUE(made.has_value());
        for (const char* below : {"", "/b", "/b/c"}) EXPECT_EQ(modeOf(top + below), 0750U) << umask << below;
    }
}

TEST(Files, leavesWhatIsThere) {
    const TemporaryFolder folder;
    const std::string file = folder.path() + "/file";
    EXPECT_TRUE(writeFile(file, "x", 0600).has_value());
    std::filesystem::create_directory_symlink(folder.path(), folder.path() + "/link");
    std::filesystem::create_symlink("nowhere", folder.path() + "/dangling");

    EXPECT_TRUE(createFolders(folder.path() + "/link", 0777).has_value());
    EXPECT_EQ(modeOf(folder.path()), 0700U);
    EXPECT_EQ(createFolders(file, 0700), std::unexpected(FileError{"mkdir " + file, EEXIST}));
    EXPECT_EQ(createFolders(folder.path() + "/dangling/x", 0700).error().code, EEXIST);
    EXPECT_EQ(describe(FileError{"mkdir /x", EACCES}), "mkdir /x failed: Permission denied");
}

TEST(Files, writesOnlyRegularFiles) {
    const TemporaryFolder folder;
    const std::string file = folder.path() + "/file";
    EXPECT_TRUE(writeFile(file, "a longer text", 0600).has_value());
    EXPECT_TRUE(writeFile(file, "text", 0600).has_value());
    EXPECT_EQ(contents(file), "text");

    std::filesystem::create_symlink(file, folder.path() + "/link");
    ::mkfifo((folder.path() + "/pipe").c_str(), 0600);
    EXPECT_EQ(writeFile(folder.path() + "/link", "x", 0600).error().code, ELOOP);
    EXPECT_EQ(writeFile(folder.path() + "/pipe", "x", 0600).error().code, ENXIO);
    EXPECT_EQ(writeFile("/dev/null", "x", 0600).error().code, EEXIST);
    EXPECT_EQ(contents(file), "text");
}

}  // namespace
}  // namespace tarnik
