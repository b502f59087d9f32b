#include "core/process/FDReader.h"

#include <atomic>
#include <csignal>
#include <ctime>
#include <future>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/process/Spawner.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"

namespace tarnik {
namespace {

TEST(FDReader, deliversAllChunksInOrderAndThenTheEnd) {
    auto pipe = Spawner::pipe();
    const int number = pipe->readEnd.get();
    const auto inode = [number] {
        struct stat status{};
        return ::fstat(number, &status) == 0 ? status.st_ino : 0;
    };
    std::string received;
    std::promise<bool> closedAtEnd;
    const auto reader = FDReader::start(
        std::move(pipe->readEnd), [&](std::string_view chunk) { received += chunk; },
        [&, ours = inode()] { closedAtEnd.set_value(inode() != ours); });  // the number may be reused
    EXPECT_FALSE((*reader)->waitForEOF(Seconds(0)));

    const auto output = Stdio::fd(pipe->writeEnd.get());
    ASSERT_TRUE(Spawner::spawn({childProgram("write_bytes"), {"40000"}, {}, Stdio::null(), output}));
    pipe->writeEnd.reset();
    EXPECT_TRUE(closedAtEnd.get_future().get());
    EXPECT_TRUE((*reader)->waitForEOF(Seconds(0)));
    std::string sent;
    for (int i = 0; i < 40000; ++i) sent += static_cast<char>('a' + i % 26);
    EXPECT_EQ(received, sent);
}

// A background process may hold the output open, silently or not.
TEST(FDReader, closesAnOutputThatDoesNotEnd) {
    auto held = Spawner::pipe(), used = Spawner::pipe();
    const auto silent = *FDReader::start(std::move(held->readEnd), [](std::string_view) {});
    const UniqueFd zeros(::open("/dev/zero", O_RDONLY | O_CLOEXEC));
    const auto loud = *FDReader::start(UniqueFd::duplicate(zeros.get()), [](std::string_view) {});
    const TimePoint start = steadyNow();
    for (const auto& reader : {silent, loud}) {
        reader->closeAfter(Seconds(0.05));
        reader->closeAfter(Seconds(60));
    }
    for (const auto& reader : {silent, loud}) EXPECT_TRUE(reader->waitForEOF(Seconds(20)));
    EXPECT_GE(steadyNow() - start, std::chrono::milliseconds(50));

    std::promise<std::string> received;
    const auto reader = *FDReader::start(
        std::move(used->readEnd), [&](std::string_view chunk) { received.set_value(std::string(chunk)); });
    reader->closeAfter(Seconds(60));
    ASSERT_EQ(::write(used->writeEnd.get(), "last words", 10), 10);
    EXPECT_EQ(received.get_future().get(), "last words");
    used->writeEnd.reset();
    EXPECT_TRUE(reader->waitForEOF(Seconds(20)));
}

std::atomic<int> interruptions = 0;

TEST(FDReader, continuesAfterASignalWithoutSpinning) {
    struct sigaction count{};
    count.sa_handler = [](int) { ++interruptions; };  // without SA_RESTART: a read fails with EINTR
    ::sigaction(SIGUSR1, &count, nullptr);

    auto pipe = Spawner::pipe();
    std::promise<pthread_t> thread;
    const auto reader = FDReader::start(std::move(pipe->readEnd),
                                        [&](std::string_view) { thread.set_value(::pthread_self()); });
    ASSERT_EQ(::write(pipe->writeEnd.get(), "a", 1), 1);
    const pthread_t readingThread = thread.get_future().get();
    // Some of the signals interrupt the reader's poll or read.
    for (int sent = 1; sent <= 20; ++sent) {
        ::pthread_kill(readingThread, SIGUSR1);
        ASSERT_TRUE(eventually([&] { return interruptions >= sent; }));
    }
    const std::clock_t before = std::clock();
    EXPECT_FALSE((*reader)->waitForEOF(Seconds(0.05)));
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50);
    pipe->writeEnd.reset();
    EXPECT_TRUE((*reader)->waitForEOF(Seconds(20)));
}

}  // namespace
}  // namespace tarnik
