#include <atomic>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "core/process/FDReader.h"
#include "core/process/PtyProcess.h"
#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ProcessCounts.h"

namespace tarnik {
namespace {

constexpr Seconds limit(30);

// Counts the reports of many children, each of which has to come once and be right.
class Reports {
public:
    explicit Reports(std::size_t children) : counts_(children) {}

    ChildProcess::OnExit of(std::size_t child, ExitStatus expected) {
        return [this, child, expected](ExitStatus status) {
            EXPECT_EQ(status, expected);
            ++counts_[child];
        };
    }
    void expectOneEach() const {
        for (const auto& count : counts_) ASSERT_EQ(count, 1);
    }

private:
    std::vector<std::atomic<int>> counts_;
};

// Nothing of the children is left once their threads have ended, which comes just after the reports.
class Stress : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }))
            << "before: " << before_ << "; after: " << ProcessCounts::now();
    }
    ProcessCounts before_ = ProcessCounts::baseline();
};

TEST_F(Stress, childrenInARow) {
    const std::size_t count = isSanitized() ? 1000 : 10000;
    Reports reports(count);
    for (std::size_t i = 0; i < count; ++i) {
        const bool good = i % 2 == 0;
        const auto child = Spawner::spawn({.executable = good ? "/bin/true" : "/bin/false"},
                                          reports.of(i, ExitStatus::exited(good ? 0 : 1)));
        ASSERT_TRUE(child) << describe(child.error());
        ASSERT_TRUE((*child)->waitForExit(limit));
    }
    EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }));
    reports.expectOneEach();
}

// All wait for the end of one pipe, which each of them would keep open if it had been given its other end.
TEST_F(Stress, childrenAtOnce) {
    constexpr std::size_t count = 200;
    Reports reports(count);
    auto pipe = Spawner::pipe();
    ASSERT_TRUE(pipe);
    std::vector<std::shared_ptr<ChildProcess>> children;
    for (std::size_t i = 0; i < count; ++i) {
        const auto child =
            Spawner::spawn({.executable = "/bin/cat", .standardInput = Stdio::fd(pipe->readEnd.get())},
                           reports.of(i, ExitStatus::exited(0)));
        ASSERT_TRUE(child) << describe(child.error());
        children.push_back(*child);
    }
    for (const auto& child : children) EXPECT_TRUE(child->isRunning());
    pipe = Spawner::Pipe{};
    for (const auto& child : children) EXPECT_TRUE(child->waitForExit(limit));
    EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }));
    reports.expectOneEach();
}

TEST_F(Stress, terminals) {
    constexpr std::size_t rounds = 20;
    constexpr std::size_t atOnce = 10;
    Reports reports(rounds * atOnce);
    for (std::size_t round = 0; round < rounds; ++round) {
        std::vector<std::shared_ptr<PtyProcess>> terminals;
        for (std::size_t i = 0; i < atOnce; ++i) {
            const auto pty =
                PtyProcess::spawn({.executable = "/bin/sh", .arguments = {"-c", "read line; exit $line"}},
                                  reports.of(round * atOnce + i, ExitStatus::exited(static_cast<int>(i))));
            ASSERT_TRUE(pty) << describe(pty.error());
            ASSERT_TRUE(FDReader::start((*pty)->takeMaster(), [](std::string_view) {}));
            terminals.push_back(*pty);
        }
        for (std::size_t i = 0; i < atOnce; ++i) EXPECT_TRUE(terminals[i]->write(std::to_string(i) + "\n"));
        for (const auto& pty : terminals) ASSERT_TRUE(pty->child().waitForExit(limit));
    }
    EXPECT_TRUE(eventually([this] { return ProcessCounts::now().holdsNoMoreThan(before_); }));
    reports.expectOneEach();
}

}  // namespace
}  // namespace tarnik
