#include "core/foundation/Paths.h"

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

TEST(Paths, standardizesWithoutFileAccess) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "/"}, {"a//b/./c/../", "/a/b"}, {"/a/../../b", "/b"}, {"/.a/..b/...", "/.a/..b/..."}};
    for (const auto& [path, plain] : cases) EXPECT_EQ(standardize(path), plain) << path;
    for (const auto& [path, parent] : {std::pair("/a", "/"), {"/a/b", "/a"}, {"/", "/"}})
        EXPECT_EQ(parentFolder(path), parent) << path;
}

TEST(Paths, resolvesLinksOfTheExistingPart) {
    const TemporaryFolder folder;
    const std::string real = folder.path() + "/real";
    shell(folder.path(), "mkdir -p real/inside; ln -s real link; ln -s nowhere dangling");
    const std::string withNul = real + std::string("\0/y", 3);
    const std::pair<std::string, std::string> cases[] = {
        {"/no such folder/x/y", "/no such folder/x/y"},
        {folder.path() + "/link/inside", real + "/inside"},
        {folder.path() + "/link/new/../newer/x/", real + "/newer/x"},
        {folder.path() + "/dangling/x", folder.path() + "/dangling/x"},
        {withNul, withNul},
    };
    for (const auto& [path, resolved] : cases) EXPECT_EQ(resolvingLinks(path), resolved);
}

}  // namespace tarnik
