#include "core/process/PtyProcess.h"

#include <csignal>
#include <future>
#include <map>
#include <sstream>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/process/FDReader.h"
#include "core/process/LockedData.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr Seconds limit = 20s;

// A child on a terminal, and what it said.
class Terminal {
public:
    explicit Terminal(const std::string& executable, std::vector<std::string> arguments = {}) {
        pty = *PtyProcess::spawn({.executable = executable, .arguments = std::move(arguments)},
                                 [this](ExitStatus status) { exit_.set_value(status); });
        reader_ = *FDReader::start(pty->takeMaster(), [this](std::string_view chunk) { append(chunk); });
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        pty->child().signal(SIGKILL);
        EXPECT_TRUE(reader_->waitForEOF(limit));
        if (!asked_) exit_.get_future().wait();
    }

    ExitStatus exit() {
        asked_ = true;
        return exit_.get_future().get();
    }
    std::string saidWhole() {
        EXPECT_TRUE(reader_->waitForEOF(limit));
        return text_;
    }
    bool waitUntilSaid(const std::string& text) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [&] { return text_.find(text) != std::string::npos; });
    }

    std::shared_ptr<PtyProcess> pty;

private:
    void append(std::string_view chunk) {
        const std::lock_guard lock(mutex_);
        text_ += chunk;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string text_;
    std::promise<ExitStatus> exit_;
    bool asked_ = false;
    std::shared_ptr<FDReader> reader_;
};

TEST(PtyProcess, talksOnATerminalOfItsSize) {
    Terminal terminal(childProgram("terminal_echo"));
    ASSERT_TRUE(terminal.waitUntilSaid("tty 24x100\r\nline? "));
    EXPECT_TRUE(terminal.pty->write(""));
    EXPECT_TRUE(terminal.pty->write("hello\n"));
    EXPECT_EQ(terminal.exit(), ExitStatus::exited(0));
    EXPECT_EQ(terminal.saidWhole(), "tty 24x100\r\nline? hello\r\ngot: hello\r\n");
    EXPECT_FALSE(terminal.pty->write("to nobody"));
}

TEST(PtyProcess, exitsWith127WhenTheProgramCannotBeRun) {
    Terminal terminal("/no/such/program");
    EXPECT_EQ(terminal.exit(), ExitStatus::exited(127));
}

TEST(PtyProcess, refusesToWriteOnceItsInputIsClosed) {
    Terminal terminal(childProgram("terminal_echo"));
    ASSERT_TRUE(terminal.waitUntilSaid("line? "));
    terminal.pty->closeInput();
    EXPECT_FALSE(terminal.pty->write(""));
    EXPECT_FALSE(terminal.pty->write("x\n"));
    EXPECT_EQ(terminal.pty->child().waitForExit(Seconds(0)), std::nullopt);  // it was told nothing
}

// What the child reads is what was written; its terminal would show only as much of it as has room.
TEST(PtyProcess, neverMixesTwoTexts) {
    constexpr int linesEach = 40;
    Terminal terminal("/bin/sh", {"-c", "/bin/stty -echo; echo ready; exec /bin/cat"});
    ASSERT_TRUE(terminal.waitUntilSaid("ready"));
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b'}) {
        writers.emplace_back([&terminal, letter] {
            for (int i = 0; i < linesEach; ++i) {
                EXPECT_TRUE(terminal.pty->write(std::string(700, letter) + "\n"));
            }
        });
    }
    for (auto& writer : writers) writer.join();
    EXPECT_TRUE(terminal.pty->write("\x04"));  // the end of the input, typed
    EXPECT_EQ(terminal.exit(), ExitStatus::exited(0));

    std::istringstream lines(terminal.saidWhole());
    std::map<std::string, int> counts;
    for (std::string line; std::getline(lines, line);) ++counts[line];
    EXPECT_EQ(counts[std::string(700, 'a') + "\r"], linesEach);
    EXPECT_EQ(counts[std::string(700, 'b') + "\r"], linesEach);
}

TEST(PtyProcess, givesUpOnATerminalThatTakesNothing) {
    const auto pty = PtyProcess::spawn({.executable = "/bin/sleep", .arguments = {"60"}});
    ASSERT_TRUE(pty);
    std::string lines;
    while (lines.size() < 1 << 20) lines += "a line that nobody reads\n";
    EXPECT_FALSE((*pty)->write(lines));
    (*pty)->closeInput();
    (*pty)->child().signal(SIGKILL);
    EXPECT_EQ((*pty)->child().waitForExit(limit), ExitStatus::signaled(SIGKILL));
}

TEST(PtyProcess, doesNotWriteIntoWhatGotTheReadersNumber) {
    const TemporaryFolder folder;
    const auto pty = PtyProcess::spawn({.executable = "/bin/sleep", .arguments = {"60"}});
    ASSERT_TRUE(pty);
    auto master = (*pty)->takeMaster();
    const int number = master.get();
    master.reset();
    const UniqueFd opened(::open((folder.path() + "/file").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const UniqueFd file(opened.get() == number ? -1 : ::dup2(opened.get(), number));
    (*pty)->write("\n");
    struct stat status{};
    ASSERT_EQ(::fstat(number, &status), 0);
    EXPECT_EQ(status.st_size, 0);
    (*pty)->child().signal(SIGKILL);
    (*pty)->child().waitForExit(limit);
}

}  // namespace
}  // namespace tarnik
