#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/process/FDReader.h"
#include "core/process/MacProcesses.h"
#include "core/process/PtyProcess.h"
#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ForkedChild.h"
#include "tests/support/ProcessCounts.h"

namespace tarnik {
namespace {

constexpr Seconds limit(30);

// Each child's end is reported once, with the right status. No thread, descriptor or child is left after the
// reaper threads have ended, shortly after the reports.
class Stress : public testing::Test {
protected:
    ChildProcess::OnExit expecting(int code) {
        auto* reports = reports_.emplace_back(std::make_unique<std::atomic<int>>(0)).get();
        return [code, reports](ExitStatus status) {
            EXPECT_EQ(status, ExitStatus::exited(code));
            ++*reports;
        };
    }
    void TearDown() override {
        EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }))
            << "before: " << before_ << "; after: " << ProcessCounts::now();
        for (const auto& reports : reports_) ASSERT_EQ(*reports, 1);
    }

private:
    const ProcessCounts before_ = ProcessCounts::baseline();
    std::vector<std::unique_ptr<std::atomic<int>>> reports_;
};

TEST_F(Stress, childrenInARow) {
    const int count = isSanitized() ? 1000 : 10000;
    for (int i = 0; i < count; ++i) {
        const auto child =
            Spawner::spawn({.executable = i % 2 == 0 ? "/bin/true" : "/bin/false"}, expecting(i % 2));
        ASSERT_TRUE(child) << describe(child.error());
        ASSERT_TRUE((*child)->waitForExit(limit));
    }
}

TEST_F(Stress, terminals) {
    for (int round = 0; round < 20; ++round) {
        std::vector<std::shared_ptr<PtyProcess>> terminals;
        for (int code = 0; code < 10; ++code) {
            const auto pty = PtyProcess::spawn(
                {.executable = "/bin/sh", .arguments = {"-c", "read line; exit $line"}}, expecting(code));
            ASSERT_TRUE(pty) << describe(pty.error());
            ASSERT_TRUE(FDReader::start((*pty)->takeMaster(), [](std::string_view) {}));
            terminals.push_back(*pty);
        }
        int code = 0;
        for (const auto& pty : terminals) EXPECT_TRUE(pty->write(std::to_string(code++) + "\n"));
        for (const auto& pty : terminals) ASSERT_TRUE(pty->child().waitForExit(limit));
    }
}

// The machine's other processes start and end meanwhile, too.
TEST_F(Stress, processTableWhileProcessesStartAndEnd) {
    std::atomic<bool> over = false;
    std::thread crowd([&over] {
        while (!over) ForkedChild([] {});
    });
    const auto child = ForkedChild::waiting();
    for (int round = 0; round < 100; ++round) {
        for (const auto& table : {MacProcesses::table(), MacProcesses::tableUnder(::getpid())})
            EXPECT_TRUE(table && std::ranges::count(*table, child.pid(), &ProcessEntry::pid) == 1);
    }
    over = true;
    crowd.join();
}

}  // namespace
}  // namespace tarnik
