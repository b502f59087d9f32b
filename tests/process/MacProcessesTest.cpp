#include "core/process/MacProcesses.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>

#include <gtest/gtest.h>

#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ForkedChild.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

using Table = std::optional<std::vector<ProcessEntry>>;

// None also where there is no table.
std::optional<ProcessEntry> in(const Table& table, pid_t pid) {
    if (!table) return std::nullopt;
    const auto found = std::ranges::find(*table, pid, &ProcessEntry::pid);
    if (found == table->end()) return std::nullopt;
    return *found;
}

TEST(MacProcesses, knowsAChildWhateverItsProgramIsCalled) {
    const TemporaryFolder folder;
    for (const std::string name :
         {"plain", "a) R 1 (b\n", "gone", "not gone (deleted)", "gone (deleted)", "replaced"}) {
        const std::string program = folder.path() + "/" + name;
        std::filesystem::copy_file(childProgram("wait_for_input_end"), program);
        const auto pipe = Spawner::pipe();
        const auto child =
            Spawner::spawn({.executable = program, .standardInput = Stdio::fd(pipe->readEnd.get())});
        ASSERT_TRUE(child) << name;
        if (name.starts_with("gone")) std::filesystem::remove(program);
        if (name == "replaced") std::filesystem::rename(folder.path() + "/plain", program);

        const auto entry = in(MacProcesses::table(), (*child)->pid());
        ASSERT_TRUE(entry) << name;
        EXPECT_EQ(entry->parent, ::getpid()) << name;
        EXPECT_EQ(entry->path, program);
        EXPECT_EQ(MacProcesses::executablePath((*child)->pid()), program);
        (*child)->stop(StopSequences::shortCommand);
    }
}

TEST(MacProcesses, tellsALaterProcessByItsStart) {
    constexpr auto tick = 20ms;  // the system counts in steps of half of it
    const ProcessTime before = ProcessClock::now();
    const auto first = ForkedChild::waiting();
    const ProcessTime between = ProcessClock::now();  // however long the first one took to start
    ASSERT_TRUE(eventually([&] { return ProcessClock::now() > between + 2 * tick; }));
    const auto second = ForkedChild::waiting();

    const auto table = MacProcesses::table();
    const auto one = in(table, first.pid());
    const auto other = in(table, second.pid());
    ASSERT_TRUE(one && other && one->started && other->started);
    EXPECT_GE(*one->started, before - tick);
    EXPECT_GT(*other->started, *one->started);
    EXPECT_LE(*other->started, ProcessClock::now());
    EXPECT_EQ(in(MacProcesses::table(), first.pid()), one) << "it has to stay the same";
}

TEST(MacProcesses, knowsNothingOfWhoHasEnded) {
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

TEST(MacProcesses, countsTheProcessorTimeOfTheBusy) {
    const auto idle = ForkedChild::waiting();
    const ForkedChild busy([] {
        std::atomic<unsigned> turns = 0;
        while (true) ++turns;
    });
    const auto used = [&](Seconds time) {
        return [&busy, time] { return MacProcesses::cpuSeconds(busy.pid()).value_or(0) >= time.count(); };
    };
    const TimePoint start = steadyNow();
    EXPECT_TRUE(eventually(used(0.1s)));
    EXPECT_GE(steadyNow() - start, 80ms) << "seconds, not ticks";
    EXPECT_LT(MacProcesses::cpuSeconds(idle.pid()).value_or(1), 0.1);
}

// Where the system lists children nobody else is looked at. The child is that of another thread.
TEST(MacProcesses, looksOnlyAtAFamily) {
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

}  // namespace
}  // namespace tarnik
