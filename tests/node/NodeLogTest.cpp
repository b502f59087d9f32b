#include "core/node/NodeLog.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Eventually.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr const char* nothing = "(no such file)";

std::string contents(const std::string& path) {
    if (!fs::is_regular_file(fs::symlink_status(path))) return nothing;
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

struct Fixture {
    TemporaryFolder folder;
    std::string other = folder.path() + "/other";
    std::string logs = folder.path() + "/a/b";
    std::string path = logs + "/node.log";
    std::string older = path + ".1";
    TimePoint now = steadyNow();
    UniqueFd reader;

    Fixture() { fs::create_directories(logs); }
    std::shared_ptr<NodeLog> log(std::int64_t cap) {
        return NodeLog::make(path, cap, [this] { return now; });
    }
};

TEST(NodeLog, movesTheFullFileAsideBetweenChunks) {
    struct Case {
        const char* why;
        std::int64_t cap;
        std::string found;
        std::vector<std::string> chunks;
        std::string file;
        std::string older;
    };
    const Case cases[] = {
        {"what was there is continued", 4, "a", {"b", "", "c"}, "abc", nothing},
        {"the cap is reached exactly", 4, "", {"ab", "cd"}, "", "abcd"},
        {"a chunk stays whole", 4, "", {"abc", "defgh", "i"}, "i", "abcdefgh"},
        {"there is one older copy", 4, "", {"abcd", "efgh", "i"}, "i", "efgh"},
        {"the file was full when opened", 4, "abcd", {"e"}, "e", "abcd"},
        {"each append fills a cap of 0", 0, "", {"ab", "c", ""}, "", "c"},
    };
    for (const auto& c : cases) {
        Fixture f;
        if (!c.found.empty()) put(f.path, c.found);
        const auto log = f.log(c.cap);
        for (const auto& chunk : c.chunks) log->append(chunk);
        EXPECT_EQ(contents(f.path), c.file) << c.why;
        EXPECT_EQ(contents(f.older), c.older) << c.why;
    }
}

TEST(NodeLog, opensOnlyAPlainFileOfOursAndGoesOnOnceItCan) {
    struct Case {
        const char* why;
        std::function<void(Fixture&)> block;
    };
    std::vector<Case> cases = {
        {"a folder", [](Fixture& f) { fs::create_directory(f.path); }},
        {"a FIFO", [](Fixture& f) { ASSERT_EQ(::mkfifo(f.path.c_str(), 0600), 0); }},
        {"a FIFO that is read",
         [](Fixture& f) {
             ASSERT_EQ(::mkfifo(f.path.c_str(), 0600), 0);
             f.reader = UniqueFd(::open(f.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
         }},
        {"a link", [](Fixture& f) { fs::create_symlink(f.other, f.path); }},
        {"a dangling link", [](Fixture& f) { fs::create_symlink(f.other + "s", f.path); }},
    };
    if (::geteuid() == 0) {
        cases.push_back({"another user's file", [](Fixture& f) {
                             put(f.path, "");
                             ASSERT_EQ(::chown(f.path.c_str(), 1, 1), 0);
                         }});
    }
    for (const auto& c : cases) {
        Fixture f;
        put(f.other, "");
        c.block(f);
        const auto log = f.log(100);
        log->append("lost");
        EXPECT_FALSE(log->attach()) << c.why;
        EXPECT_EQ(contents(f.other), "") << c.why;
        fs::remove(f.path);
        log->append("written");
        EXPECT_EQ(contents(f.path), "written") << c.why;
    }
}

TEST(NodeLog, keepsForAnotherCapWhatCannotBeMovedAside) {
    Fixture f;
    fs::create_directory(f.older);
    const auto log = f.log(4);
    log->append("abcde");
    log->append("fgh");
    EXPECT_EQ(contents(f.path), "abcdefgh");
    log->append("i");
    EXPECT_EQ(contents(f.path), "");
    log->append("jklm");
    fs::remove(f.older);
    log->append("nopq");
    EXPECT_EQ(contents(f.older), "jklmnopq");

    fs::remove(f.older), fs::create_directory(f.older);
    put(f.path, "left by runs before");
    f.log(6)->append("r");
    EXPECT_EQ(contents(f.path), "r");
}

TEST(NodeLog, noticesAFileThatIsGoneOrExchanged) {
    struct Case {
        const char* why;
        std::function<void(const Fixture&)> change;
        std::string file;
        std::string older;
    };
    const Case cases[] = {
        {"folder removed", [](const Fixture& f) { fs::remove_all(f.logs); }, "new", nothing},
        {"moved away", [](const Fixture& f) { fs::rename(f.path, f.other); }, "new", "older"},
        {"exchanged", [](const Fixture& f) { fs::remove(f.path), put(f.path, "its "); }, "its new", "older"},
    };
    for (const auto& c : cases) {
        for (const bool atTheCap : {false, true}) {
            Fixture f;
            put(f.older, "older");
            const auto log = f.log(8);
            log->append("before");
            c.change(f);
            if (atTheCap) {
                log->append("lost");
            } else {
                f.now += 1s;
            }
            log->append("new");
            EXPECT_EQ(contents(f.path), c.file) << c.why;
            EXPECT_EQ(contents(f.older), c.older) << c.why;
        }
    }
}

TEST(NodeLog, goesOnAfterTheDiskWasFull) {
    Fixture f;
    const auto log = f.log(6);
    struct rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const struct rlimit full = {.rlim_cur = 4, .rlim_max = before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    log->append("abcdefgh");
    log->append("ij");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    log->append("k");
    EXPECT_EQ(contents(f.path), "abcdk") << "lost bytes don't count towards the cap";
    log->append("l");
    EXPECT_EQ(contents(f.older), "abcdkl");
}

TEST(NodeLog, takesChunksOfTwoWritersWhole) {
    Fixture f;
    const auto log = f.log(1 << 20);
    const auto write = [&log](char letter) {
        for (std::size_t i = 1; i <= 300; ++i) log->append(std::string(i, letter) + '\n');
    };
    std::thread other(write, 'a');
    write('b');
    other.join();

    std::map<char, std::size_t> seen;
    std::ifstream file(f.path);
    for (std::string line; std::getline(file, line);) EXPECT_EQ(line, std::string(++seen[line[0]], line[0]));
    EXPECT_EQ(seen, (std::map<char, std::size_t>{{'a', 300}, {'b', 300}}));
}

TEST(NodeLog, copiesPipesUntilTheyEndWhoeverStillHoldsIt) {
    Fixture f;
    auto log = f.log(1 << 20);
    const std::weak_ptr<NodeLog> kept = log;
    UniqueFd first = log->attach();
    UniqueFd second = log->attach();
    log.reset();
    ASSERT_EQ(::write(first.get(), "from an old node ", 17), 17);
    ASSERT_TRUE(eventually([&f] { return contents(f.path).size() == 17; }));
    ASSERT_EQ(::write(second.get(), "and a new one", 13), 13);
    first.reset();
    second.reset();
    ASSERT_TRUE(eventually([&kept] { return kept.expired(); }));
    EXPECT_EQ(contents(f.path), "from an old node and a new one");
}

}  // namespace
}  // namespace tarnik
