#include <algorithm>
#include <atomic>
#include <thread>

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
        ++expected_;
        return [code, this](ExitStatus status) {
            EXPECT_EQ(status, ExitStatus::exited(code));
            ++reported_;
        };
    }
    void TearDown() override {
        EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }))
            << "before: " << before_ << "; after: " << ProcessCounts::now();
        EXPECT_EQ(reported_, expected_);
    }

private:
    const ProcessCounts before_ = ProcessCounts::baseline();
    int expected_ = 0;
    std::atomic<int> reported_ = 0;
};

TEST_F(Stress, childrenInARow) {
    const int count = isSanitized() ? 1000 : 10000;
    for (int i = 0; i < count; ++i) {
        const auto child =
            Spawner::spawn({childProgram("exit_with"), {std::to_string(i % 2)}}, expecting(i % 2));
        ASSERT_TRUE(child && (*child)->waitForExit(limit));
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
