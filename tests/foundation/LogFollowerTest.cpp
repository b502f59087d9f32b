#include "core/foundation/LogFollower.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "core/foundation/FileWatch.h"
#include "core/foundation/LogTail.h"
#include "core/process/Spawner.h"
#include "tests/support/Eventually.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(LogTail, returnsTheLastWholeLines) {
    struct Case {
        std::string older, newer;
        std::size_t maxBytes;
        std::string tail;
    };
    const Case cases[] = {
        {"a\nb\n", "c\nd", 100, "a\nb\nc\nd"}, {"a\nb", "c\n", 100, "a\nb\nc\n"},
        {"", "ab\ncd\nef\n", 4, "ef\n"},       {"", "abcdef", 4, ""},
        {"ab\ncd\n", "e\n", 6, "cd\ne\n"},
    };
    for (const auto& [older, newer, maxBytes, tail] : cases) {
        const TemporaryFolder folder;
        const std::string path = folder.write("log", newer);
        folder.write("log.1", older);
        EXPECT_EQ(readLogTail(path, maxBytes), tail);
    }
    EXPECT_EQ(lastLines("a\nb\nc\n", 2), "b\nc\n");
    EXPECT_EQ(lastLines("a\n\nc", 2), "\nc");
    EXPECT_EQ(lastLines("a\n", 5), "a\n");
    EXPECT_EQ(lastLines("a\n", 0), "");
}

TEST(LogFollower, readsAcrossRotationCutAndRemoval) {
    const TemporaryFolder folder;
    const std::string path = folder.write("log", "old\n");
    LogFollower follower(path);
    const std::pair<const char*, const char*> steps[] = {
        {"true", ""},
        {"printf a >> log; printf b >> log", "ab"},
        {"printf last >> log; mv log log.1", "last"},
        {"true", ""},
        {"printf new > log", "new"},
        {"printf longer >> log; mv log log.1; printf xyz > log", "longer"},
        {"true", "xyz"},
        {"printf '' > log; printf c >> log", "c"},
        {"rm log; ln -s log.1 log", ""},
        {"rm log; mkfifo log", ""},
        {"rm log; printf d > log", "d"},
    };
    for (const auto& [change, text] : steps) {
        shell(folder.path(), change);
        EXPECT_EQ(follower.read(), text) << change;
    }
}

TEST(FileWatch, reportsEveryChangeAndTheEndOfTheReader) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/logs/log";
    FileWatch watch(path);
    LogFollower follower(path);
    auto output = Spawner::pipe();
    std::string seen;
    std::atomic<std::size_t> count = 0;
    std::thread reader([&] {
        while (watch.wait(follower.file(), output->writeEnd.get()) == FileWatch::Event::mayHaveChanged) {
            for (auto text = follower.read(); !text.empty(); text = follower.read()) seen += text;
            count = seen.size();
        }
    });
    const char* changes[] = {"mkdir logs; printf 1 > logs/log", "printf 2 >> logs/log",
                             "mv logs/log logs/log.1; printf 3 > logs/log",
                             "rm -r logs; mkdir logs; printf 4 > logs/log"};
    std::size_t expected = 0;
    for (const char* change : changes) {
        shell(folder.path(), change);
        ++expected;
        EXPECT_TRUE(eventually([&] { return count == expected; })) << change;
    }
    output->readEnd.reset();
    reader.join();
    EXPECT_EQ(seen, "1234");
}

}  // namespace
}  // namespace tarnik
