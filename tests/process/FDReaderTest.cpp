#include "core/process/FDReader.h"

#include <atomic>
#include <csignal>
#include <future>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include "core/process/LockedData.h"
#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"

namespace tarnik {
namespace {

TEST(FDReader, deliversEveryChunkInOrderAndThenTheEnd) {
    auto pipe = Spawner::pipe();
    ASSERT_TRUE(pipe);
    const int number = pipe->readEnd.get();
    std::string received;
    std::size_t longest = 0;
    std::promise<bool> closedAtEnd;
    const auto reader = FDReader::start(
        std::move(pipe->readEnd),
        [&](std::string_view chunk) {
            received += chunk;
            longest = std::max(longest, chunk.size());
        },
        [&] { closedAtEnd.set_value(::fcntl(number, F_GETFD) == -1); });
    ASSERT_TRUE(reader);
    EXPECT_FALSE((*reader)->waitForEOF(Seconds(0)));

    const auto child = Spawner::spawn({.executable = childProgram("write_bytes"),
                                       .arguments = {"40000"},
                                       .standardOutput = Stdio::fd(pipe->writeEnd.get())});
    ASSERT_TRUE(child);
    pipe->writeEnd.reset();
    EXPECT_TRUE(closedAtEnd.get_future().get());
    EXPECT_TRUE((*reader)->waitForEOF(Seconds(0)));
    ASSERT_EQ(received.size(), 40000U);
    for (std::size_t i = 0; i < received.size(); ++i) ASSERT_EQ(received[i], 'a' + static_cast<int>(i % 26));
    EXPECT_LE(longest, FDReader::chunkBytes);
    EXPECT_EQ((*child)->waitForExit(Seconds(20)), ExitStatus::exited(0));
}

std::atomic<int> interruptions = 0;

TEST(FDReader, readsOnAfterASignal) {
    struct sigaction count{};
    struct sigaction before{};
    count.sa_handler = [](int) { ++interruptions; };  // without SA_RESTART: a read fails with EINTR
    ::sigaction(SIGUSR1, &count, &before);

    auto pipe = Spawner::pipe();
    ASSERT_TRUE(pipe);
    std::promise<pthread_t> thread;
    std::string received;
    const auto reader = FDReader::start(std::move(pipe->readEnd), [&](std::string_view chunk) {
        if (received.empty()) thread.set_value(::pthread_self());
        received += chunk;
    });
    ASSERT_EQ(::write(pipe->writeEnd.get(), "a", 1), 1);
    const pthread_t readingThread = thread.get_future().get();
    // Some of them meet the reader inside its next read.
    for (int sent = 1; sent <= 20; ++sent) {
        ::pthread_kill(readingThread, SIGUSR1);
        EXPECT_TRUE(eventually([&] { return interruptions >= sent; }));
    }
    ASSERT_EQ(::write(pipe->writeEnd.get(), "b", 1), 1);
    pipe->writeEnd.reset();
    EXPECT_TRUE((*reader)->waitForEOF(Seconds(20)));
    EXPECT_EQ(received, "ab");
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(LockedData, keepsTheLastBytes) {
    struct Case {
        std::size_t limit;
        std::vector<std::string> chunks;
        std::string kept;
    };
    const Case cases[] = {
        {4, {"ab", "cd"}, "abcd"},
        {4, {"ab", "cde"}, "bcde"},
        {4, {"abcdefgh"}, "efgh"},
        {0, {"a"}, ""},
        {65536,
         {std::string(50000, 'a'), std::string(50000, 'b')},
         std::string(15536, 'a') + std::string(50000, 'b')},
    };
    for (const auto& c : cases) {
        LockedData data(c.limit);
        for (const auto& chunk : c.chunks) data.append(chunk);
        EXPECT_EQ(data.data(), c.kept);
    }
}

}  // namespace
}  // namespace tarnik
