#include "core/node/NodeLog.h"

#include <atomic>
#include <filesystem>
#include <future>
#include <thread>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "tests/support/Eventually.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr const char* nothing = "(no such file)";

std::string contents(const std::string& path) {
    return isRegularFile(path) ? readFile(path, 1 << 20).value_or(nothing) : nothing;
}

struct Fixture {
    TemporaryFolder folder;
    std::string logs = folder.path() + "/a/b";
    std::string path = logs + "/node.log";
    std::string older = path + ".1";
    TimePoint now = steadyNow();

    // Runs `script` in the log's folder.
    explicit Fixture(const std::string& script = "") {
        shell(folder.path(), "mkdir -p a/b; cd a/b; " + script);
    }
    std::shared_ptr<NodeLog> log(std::int64_t cap) {
        return NodeLog::make(path, cap, [this] { return now; });
    }
    std::string files() const { return contents(path) + "|" + contents(older); }
};

TEST(NodeLog, rotatesAFullFileBetweenChunks) {
    // The cap, the existing file, the chunks, and the content of both files afterwards.
    const std::tuple<std::int64_t, std::string, std::vector<std::string>, std::string> cases[] = {
        {4, "a", {"b", "", "c"}, "abc|(no such file)"},
        {4, "", {"abc", "defgh", "ijkl", "m"}, "m|ijkl"},
        {4, "", {"abc", "defgh", "i"}, "i|abcdefgh"},
        {4, "abcd", {"e"}, "e|abcd"},
        {0, "", {"ab", "c", ""}, "|c"},
    };
    for (const auto& [cap, found, chunks, left] : cases) {
        Fixture f("printf '" + found + "' > node.log");
        const auto log = f.log(cap);
        for (const auto& chunk : chunks) log->append(chunk);
        EXPECT_EQ(f.files(), left);
    }
}

TEST(NodeLog, opensOnlyARegularFileOfOurs) {
    std::vector<std::string> blocks{"mkdir node.log", "mkfifo node.log", "ln -s other node.log",
                                    "ln -s none node.log"};
    if (::geteuid() == 0) blocks.emplace_back("echo theirs > node.log; chown 1:1 node.log");
    for (const auto& block : blocks) {
        for (const bool isRead : {false, true}) {  // a FIFO without a reader can't be opened
            Fixture f(block + "; touch other");
            const UniqueFd reader(isRead ? ::open(f.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1);
            const auto log = f.log(100);
            log->append("lost");
            EXPECT_FALSE(log->attach().writeEnd) << block;
            EXPECT_EQ(contents(f.logs + "/other"), "") << block;
            EXPECT_EQ(contents(f.logs + "/none"), nothing) << block;
            fs::remove(f.path);
            log->append("written");
            EXPECT_EQ(contents(f.path), "written") << block;
        }
    }
}

TEST(NodeLog, truncatesAFullFileThatCannotBeRenamed) {
    Fixture f("mkdir node.log.1; printf found > node.log");
    const auto log = f.log(4);
    for (const char* chunk : {"abcde", "fg"}) log->append(chunk);
    EXPECT_EQ(contents(f.path), "fg");
    fs::remove(f.older);
    log->append("hi");
    EXPECT_EQ(contents(f.older), "fghi");

    shell(f.logs, "printf another >> node.log");  // by another program
    f.now += 1s;
    log->append("j");
    EXPECT_EQ(contents(f.older), "another");
}

TEST(NodeLog, reopensADeletedOrReplacedFile) {
    const std::pair<const char*, const char*> cases[] = {
        {"rm -r ../b", "new|(no such file)"},
        {"mv node.log ..", "new|older"},
        {"rm node.log; printf 'its ' > node.log", "its new|older"},
    };
    for (const auto& [change, left] : cases) {
        for (const bool atTheCap : {false, true}) {
            Fixture f("printf older > node.log.1");
            const auto log = f.log(8);
            log->append("before");
            shell(f.logs, change);
            if (!atTheCap) f.now += 1s;
            if (atTheCap) log->append("lost");
            log->append("new");
            EXPECT_EQ(f.files(), left) << change;
        }
    }
}

TEST(NodeLog, continuesAfterTheDiskWasFull) {
    Fixture f;
    const auto log = f.log(6);
    onFullDisk(4, [&log] {
        log->append("abcdefgh");
        log->append("ij");
    });
    log->append("k");
    EXPECT_EQ(contents(f.path), "abcdk") << "lost bytes don't count";
    log->append("l");
    EXPECT_EQ(contents(f.older), "abcdkl");
}

TEST(NodeLog, rotatesUnderConcurrentAppends) {
    Fixture f;
    const auto log = f.log(1000);
    const auto write = [&log] {
        for (int i = 0; i < 300; ++i) log->append("chunk ");
    };
    std::thread other(write);
    write();
    other.join();
    EXPECT_EQ(contents(f.older).size(), 167U * 6);
    EXPECT_EQ(contents(f.path).size(), (600U - 3 * 167) * 6);
}

TEST(NodeLog, livesUntilItsPipesEnd) {
    Fixture f;
    f.path = f.logs + "/c/node.log";
    auto log = f.log(1 << 20);
    const std::weak_ptr<NodeLog> kept = log;
    UniqueFd first = log->attach().writeEnd;
    UniqueFd second = log->attach().writeEnd;
    log.reset();
    ASSERT_EQ(::write(first.get(), "from an old node ", 17), 17);
    ASSERT_TRUE(eventually([&f] { return contents(f.path).size() == 17; }));
    ASSERT_EQ(::write(second.get(), "and a new one", 13), 13);
    first.reset();
    second.reset();
    ASSERT_TRUE(eventually([&kept] { return kept.expired(); }));
    EXPECT_EQ(contents(f.path), "from an old node and a new one");
    EXPECT_EQ(fs::status(f.logs + "/c").permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(f.path).permissions(), fs::perms(0600));
}

TEST(NodeLog, attachesAndDrainsAlthoughTheDiskHangs) {
    Fixture f;
    std::promise<void> recovery;
    std::atomic<bool> hangs = false;
    const auto log = NodeLog::make(f.path, 100, [&hangs, recovered = recovery.get_future().share()] {
        if (hangs) recovered.wait();
        return steadyNow();
    });
    const auto output = log->attach();
    hangs = true;
    ASSERT_EQ(::write(output.writeEnd.get(), "x", 1), 1);
    std::this_thread::sleep_for(50ms);  // until the reader waits for the disk
    const TimePoint began = steadyNow();
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(log->attach().writeEnd);
    log->drain(0.01s);
    EXPECT_LT(steadyNow() - began, 2 * NodeLog::openLimit);
    recovery.set_value();
    EXPECT_TRUE(eventually([&log] { return static_cast<bool>(log->attach().writeEnd); }));
}

}  // namespace
}  // namespace tarnik
