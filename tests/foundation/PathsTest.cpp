#include "core/foundation/Paths.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(Paths, standardizesByTextAlone) {
    struct Case {
        std::string path;
        std::string plain;
    };
    const Case cases[] = {
        {"", "/"},
        {"/", "/"},
        {"a/b", "/a/b"},
        {"/a//b/./c/../", "/a/b"},
        {"/../..", "/"},
        {"/a/../../b", "/b"},
        {"/.a/..b/...", "/.a/..b/..."},
        {"/a b/\xC3\xA9/", "/a b/\xC3\xA9"},
    };
    for (const auto& c : cases) EXPECT_EQ(standardize(c.path), c.plain) << c.path;
}

TEST(Paths, followsTheLinksOfTheExistingPart) {
    const TemporaryFolder folder;
    const std::string real = folder.path() + "/real";
    std::filesystem::create_directories(real + "/inside");
    std::filesystem::create_directory_symlink(real, folder.path() + "/link");
    std::filesystem::create_symlink(folder.path() + "/nowhere", folder.path() + "/dangling");

    struct Case {
        const char* why;
        std::string path;
        std::string resolved;
    };
    const Case cases[] = {
        {"nothing of it exists", "/no such folder/x/y", "/no such folder/x/y"},
        {"a link in the middle", folder.path() + "/link/inside", real + "/inside"},
        {"a tail that doesn't exist yet", folder.path() + "/link/new/../newer/x/", real + "/newer/x"},
        {"a dangling link is a tail too", folder.path() + "/dangling/x", folder.path() + "/dangling/x"},
        {"a NUL doesn't cut the path short", real + std::string("/x\0/y", 5),
         real + std::string("/x\0/y", 5)},
    };
    for (const auto& c : cases) EXPECT_EQ(resolvingLinks(c.path), c.resolved) << c.why;
}

}  // namespace
}  // namespace tarnik
