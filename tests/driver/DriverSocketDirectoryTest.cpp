#include "core/driver/DriverSocketDirectory.h"

#include <cerrno>
#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "core/foundation/UniqueFd.h"
#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

fs::perms modeOf(const std::string& path) {
    return fs::symlink_status(path).permissions();
}

void write(const std::string& path, const std::string& text) {
    ASSERT_TRUE(writeFile(path, text, 0600).has_value()) << path;
}

// The parent is unreadable and passes its group on. Permissions don't apply to the superuser, so the test
// switches to another user.
TEST(DriverSocketDirectory, isPrivateWhateverTheUmaskAndTheParent) {
    const ShortTemporaryFolder folder;
    const uid_t before = ::geteuid();
    const uid_t user = before == 0 ? 4711 : before;
    if (::chown(folder.path().c_str(), user, static_cast<gid_t>(-1)) != 0) GTEST_SKIP() << "no other user";
    ASSERT_EQ(::chmod(folder.path().c_str(), 02333), 0);
    ASSERT_EQ(::seteuid(user), 0);
    const mode_t umask = ::umask(0777);
    const auto made = DriverSocketDirectory::create(folder.path() + "/");
    const bool written = made && made->writeProcessIdentifier(4711);
    ::umask(umask);
    const auto owned = DriverSocketDirectory::owned(folder.path());
    ASSERT_EQ(::seteuid(before), 0);
    ::chmod(folder.path().c_str(), 0700);

    EXPECT_EQ(fs::path(made->path).parent_path(), folder.path() + "/tarnik/cua");
    for (const auto& path : {folder.path() + "/tarnik", folder.path() + "/tarnik/cua", made->path})
        EXPECT_EQ(modeOf(path), fs::perms(0700)) << path;
    EXPECT_TRUE(written);
    EXPECT_EQ(modeOf(made->pidFilePath()), fs::perms(0600));
    EXPECT_EQ(readFile(made->path + "/cua.pid", 99), "4711");
    EXPECT_EQ(owned, std::vector{*made});
}

TEST(DriverSocketDirectory, refusesRootsThatAreNotOurFolders) {
    // Only the superuser can change the owner.
    for (const auto& [script, suffix] : {std::pair("ln -s /tmp tarnik", ""),
                                         {"ln -s nowhere tarnik", ""},
                                         {"ln -s . link", "/link/"},
                                         {"", "/none/above"},
                                         {"touch tarnik", ""},
                                         {"chown 4711 . 2>&1 || touch tarnik", ""}}) {
        const ShortTemporaryFolder folder;
        shell(folder.path(), script);
        EXPECT_FALSE(DriverSocketDirectory::create(folder.path() + suffix)) << script;
    }
}

TEST(DriverSocketDirectory, refusesATooLongSocketPath) {
    const ShortTemporaryFolder folder;
    const std::size_t rest = std::string("//tarnik/cua/0123456789abcdef/cua.sock").size();
    const std::string longest = folder.path() + "/" + std::string(103 - folder.path().size() - rest, 's');
    EXPECT_EQ(DriverSocketDirectory::create(longest)->socketPath.size(), 103U);
    EXPECT_FALSE(DriverSocketDirectory::create(longest + "s"));
    EXPECT_TRUE(fs::is_empty(longest + "s/tarnik/cua"));
}

TEST(DriverSocketDirectory, readsOnlyCompletePids) {
    const ShortTemporaryFolder folder;
    const auto made = DriverSocketDirectory::create(folder.path());
    ASSERT_TRUE(made);
    const std::string file = made->pidFilePath();
    const auto read = [&](const std::string& text) {
        write(file, text);
        return made->readProcessIdentifier();
    };
    EXPECT_EQ(made->readProcessIdentifier(), std::nullopt) << "no file";
    EXPECT_EQ(read(" \t4711\n"), 4711);
    EXPECT_EQ(read("2147483647"), 2147483647);
    auto bad = words("0 -4711 +4711 0x10 4711x driver 2147483648 1099511627776");
    bad.insert(bad.end(), {"", "47 11", "4711" + std::string(60, ' '), std::string(1 << 20, '7')});
    for (const auto& text : bad) EXPECT_EQ(read(text), std::nullopt) << text.substr(0, 80);

    for (const char* script : {"printf 4711 > x; ln -s x cua.pid", "mkfifo cua.pid"}) {
        fs::remove(file);
        shell(made->path, script);
        EXPECT_EQ(made->readProcessIdentifier(), std::nullopt) << script;
    }
}

TEST(DriverSocketDirectory, cleansUpOnlyAnUnchangedFolder) {
    // A change of the folder, and the number of files left after the cleanup.
    const std::pair<const char*, int> cases[] = {{"", 0},
                                                 {"chmod 755 $made", 2},
                                                 {"touch $made/mine", 1},
                                                 {"mv $made old; cp -Rp old $made", 4},
                                                 {"mv $made old; ln -s old $made", 2}};
    for (const auto& [script, filesLeft] : cases) {
        const ShortTemporaryFolder folder;
        const auto made = DriverSocketDirectory::create(folder.path());
        ASSERT_TRUE(made && made->writeProcessIdentifier(4711));
        write(made->socketPath, "");
        shell(folder.path() + "/tarnik/cua", std::string("made=$(echo *); ") + script);
        made->cleanup();
        int files = 0;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
            files += entry.is_regular_file() ? 1 : 0;
        EXPECT_EQ(files, filesLeft) << script;
        EXPECT_EQ(fs::exists(made->path), filesLeft > 0) << script;
    }
}

// One process as reapStale sees it.
struct FakeProcess {
    std::optional<std::string> runs = "/driver", runsAfterTerm = "/driver";
    int unreachable = 0, endsAt = SIGTERM;
    const char* pidAfterTerm = "4711";
    std::vector<int> signals = {};

    bool got(int signal) const { return std::ranges::find(signals, signal) != signals.end(); }

    DriverSocketDirectory::Processes processes(const std::string& pidFile) {
        const auto kill = [this, pidFile](pid_t, int signal) {
            signals.push_back(signal);
            if (signal == SIGTERM) write(pidFile, pidAfterTerm);
            return unreachable;
        };
        return {[this](pid_t) { return got(SIGTERM) ? runsAfterTerm : runs; }, kill,
                [this](pid_t, Seconds) { return got(endsAt); }};
    }
};

TEST(DriverSocketDirectory, stopsOnlyAProvenLeftoverDriver) {
    enum Folder { removed, left };
    struct Case {
        const char* why;
        FakeProcess process;
        std::vector<int> signals;
        Folder folder;
        const char* pid = "4711";
    };
    const Case cases[] = {
        {"obeys SIGTERM", {}, {0, SIGTERM}, removed},
        {"needs SIGKILL", {.endsAt = SIGKILL}, {0, SIGTERM, SIGKILL}, removed},
        {"survives", {.endsAt = -1}, {0, SIGTERM, SIGKILL}, left},
        {"has ended", {.unreachable = ESRCH}, {0}, removed},
        {"of another user", {.runs = {}, .unreachable = EPERM}, {0}, left},
        {"another program", {.runs = "/other"}, {0}, left},
        {"another program after SIGTERM", {.runsAfterTerm = "/other", .endsAt = SIGKILL}, {0, SIGTERM}, left},
        {"another pid after SIGTERM", {.endsAt = SIGKILL, .pidAfterTerm = "4"}, {0, SIGTERM}, left},
        {"no pid", {}, {}, removed, "driver"},
        {"the first process", {}, {}, removed, "1"},
    };
    for (auto c : cases) {
        const ShortTemporaryFolder folder;
        const auto made = DriverSocketDirectory::create(folder.path());
        ASSERT_TRUE(made);
        write(made->pidFilePath(), c.pid);
        DriverSocketDirectory::reapStale(folder.path(), "/driver", c.process.processes(made->pidFilePath()));
        EXPECT_EQ(c.process.signals, c.signals) << c.why;
        EXPECT_EQ(fs::exists(made->path) ? left : removed, c.folder) << c.why;
    }
}

// The driver ignores its pipe, and an upgrade has replaced its file.
TEST(DriverSocketDirectory, stopsARealDriver) {
    const ShortTemporaryFolder folder;
    const std::string program = folder.path() + "/driver";
    fs::copy_file("/bin/sleep", program);
    const auto made = DriverSocketDirectory::create(folder.path());
    const auto child = Spawner::spawn({.executable = program, .arguments = {"60"}});
    ASSERT_TRUE(made && child && made->writeProcessIdentifier((*child)->pid()));
    fs::copy_file(childProgram("exit_with"), folder.path() + "/new");
    fs::rename(folder.path() + "/new", program);

    DriverSocketDirectory::reapStale(folder.path(), program, DriverSocketDirectory::Processes::production());
    EXPECT_EQ((*child)->waitForExit(Seconds(10)), ExitStatus::signaled(SIGTERM));
    EXPECT_FALSE(fs::exists(made->path));
    (*child)->stop(StopSequences::shortCommand);
}

TEST(DriverSocketDirectory, neverWaitsForAConnection) {
    const ShortTemporaryFolder folder;
    const std::string path = folder.path() + "/s";
    const auto accepts = [](const std::string& at) { return DriverSocketDirectory::acceptsConnections(at); };
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(&address.sun_path[0], sizeof address.sun_path - 1);
    const UniqueFd listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    EXPECT_FALSE(accepts(path) || accepts("/" + std::string(9999, 's')));
    ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(accepts(path)) << "not listening";
    ASSERT_EQ(::listen(listener.get(), 1), 0);
    EXPECT_TRUE(accepts(path));
    int count = 0;  // no connection is accepted, so the queue fills up
    while (accepts(path) && count < 1000) ++count;
    EXPECT_LT(count, 1000);
}

}  // namespace
}  // namespace tarnik
