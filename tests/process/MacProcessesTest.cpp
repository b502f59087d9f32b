#include "core/process/MacProcesses.h"

#include <atomic>
#include <filesystem>
#include <future>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ForkedChild.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

using Table = std::optional<std::vector<ProcessEntry>>;

// Returns std::nullopt also without a table.
std::optional<ProcessEntry> in(const Table& table, pid_t pid) {
    for (const auto& entry : table.value_or(Table::value_type()))
        if (entry.pid == pid) return entry;
    return std::nullopt;
}

TEST(MacProcesses, findsAChildWhateverItsProgramIsCalled) {
    const TemporaryFolder folder;
    for (const std::string name :
         {"plain", "a) R 1 (b\n", "gone", "not gone (deleted)", "gone (deleted)", "replaced"}) {
        const std::string program = folder.path() + "/" + name;
        std::filesystem::copy_file(childProgram("wait_for_input_end"), program);
        const auto pipe = Spawner::pipe();
        const auto child = Spawner::spawn({program, {}, {}, Stdio::fd(pipe->readEnd.get())});
        if (name.starts_with("gone")) std::filesystem::remove(program);
        if (name == "replaced") std::filesystem::rename(folder.path() + "/plain", program);

        const auto entry = in(MacProcesses::table(), (*child)->pid()).value_or(ProcessEntry());
        EXPECT_EQ(entry.parent, ::getpid()) << name;
        EXPECT_EQ(entry.path, program);
        EXPECT_EQ(MacProcesses::executablePath((*child)->pid()), program);
        (*child)->stop(StopSequences::shortCommand);
    }
}

TEST(MacProcesses, distinguishesProcessesByTheirStart) {
    constexpr auto tick = 20ms;  // the system's step is half of it
    const ProcessTime before = ProcessClock::now();
    const auto first = ForkedChild::waiting();
    const ProcessTime between = ProcessClock::now();
    ASSERT_TRUE(eventually([&] { return ProcessClock::now() > between + 2 * tick; }));
    const auto second = ForkedChild::waiting();
    const auto table = MacProcesses::table();
    const auto one = in(table, first.pid()), other = in(table, second.pid());
    ASSERT_TRUE(one && other && one->started && other->started);
    EXPECT_GE(*one->started, before - tick);
    EXPECT_GT(*other->started, *one->started);
    EXPECT_LE(*other->started, ProcessClock::now());
    EXPECT_EQ(in(MacProcesses::table(), first.pid()), one) << "the start time must not change";
}

TEST(MacProcesses, forgetsProcessesThatHaveEnded) {
    pid_t pid = 0;
    {
        const ForkedChild child([] {});
        pid = child.pid();
        siginfo_t ended{};
        ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(pid), &ended, WEXITED | WNOWAIT), 0);
        const auto zombie = in(MacProcesses::table(), pid).value_or(ProcessEntry{.parent = ::getpid()});
        EXPECT_EQ(zombie.parent, ::getpid());
        EXPECT_EQ(zombie.path, std::nullopt);
    }
    EXPECT_FALSE(in(MacProcesses::table(), pid));
    EXPECT_FALSE(in(MacProcesses::tableUnder(pid), pid));
    for (const pid_t gone : {pid, 0, -1}) EXPECT_EQ(MacProcesses::cpuSeconds(gone), std::nullopt) << gone;
}

TEST(MacProcesses, countsProcessorTime) {
    const TimePoint start = steadyNow();
    const auto idle = ForkedChild::waiting();
    const ForkedChild busy([] {
        std::atomic<unsigned> turns = 0;
        while (true) ++turns;
    });
    EXPECT_TRUE(eventually([&] { return MacProcesses::cpuSeconds(busy.pid()).value_or(0) >= 0.1; }));
    EXPECT_GE(steadyNow() - start, 80ms) << "seconds, not ticks";
    EXPECT_LT(MacProcesses::cpuSeconds(idle.pid()).value_or(1), 0.1);
}

// The child is started by another thread. Other processes are omitted where the system lists children.
TEST(MacProcesses, listsDescendants) {
    std::promise<pid_t> started;
    std::promise<void> over;
    const auto parent = std::async(std::launch::async, [&] {
        const auto child = ForkedChild::waiting();
        started.set_value(child.pid());
        over.get_future().wait();
    });
    const pid_t child = started.get_future().get();
    EXPECT_TRUE(in(MacProcesses::tableUnder(::getpid()), child));
    const bool listsChildren = std::filesystem::exists("/proc/thread-self/children");
    EXPECT_FALSE(listsChildren && in(MacProcesses::tableUnder(child), ::getpid()));
    over.set_value();
}

// A process that exists but can't be read must not be missing silently. Only /proc needs descriptors.
TEST(MacProcesses, failsIfAProcessCannotBeRead) {
    if (!std::filesystem::exists("/proc/self/stat") || isSanitized()) GTEST_SKIP();
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const auto next = static_cast<rlim_t>(UniqueFd::duplicate(0).get());
    const rlimit two{.rlim_cur = next + 2, .rlim_max = before.rlim_max};  // for /proc and its list of entries
    ::setrlimit(RLIMIT_NOFILE, &two);
    const auto table = MacProcesses::table();
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(table);
}

}  // namespace
}  // namespace tarnik
