#include "core/process/PtyProcess.h"

#include <csignal>
#include <future>
#include <map>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "core/foundation/Files.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Terminal.h"

namespace tarnik {

TEST(PtyProcess, runsOnATerminalOfTheRightSize) {
    Terminal terminal(childProgram("terminal_echo"));
    ASSERT_TRUE(terminal.prints("tty 24x100\r\nline? "));
    EXPECT_TRUE(terminal.pty->write(""));
    EXPECT_TRUE(terminal.pty->write("hello\n"));
    EXPECT_EQ(terminal.exit(), ExitStatus::exited(0));
    EXPECT_EQ(terminal.wholeOutput(), "tty 24x100\nline? hello\ngot: hello\n");
    EXPECT_FALSE(terminal.pty->write("x"));
    EXPECT_EQ(Terminal("/no/such/program").exit(), ExitStatus::exited(127));
}

TEST(PtyProcess, failsToWriteAfterCloseInput) {
    Terminal terminal(childProgram("terminal_echo"));
    ASSERT_TRUE(terminal.prints("line? "));
    terminal.pty->closeInput();
    EXPECT_FALSE(terminal.pty->write(""));
    EXPECT_FALSE(terminal.pty->write("x\n"));
    EXPECT_TRUE(terminal.pty->child().isRunning());  // it got no end of input
}

// Checks what the child reads, since a terminal echoes only as much as fits.
TEST(PtyProcess, neverMixesTwoTexts) {
    constexpr int linesEach = 40;
    Terminal terminal("/bin/sh", {"-c", "/bin/stty -echo; echo ready; exec /bin/cat"});
    ASSERT_TRUE(terminal.prints("ready"));
    const auto writeLines = [&terminal](char letter) {
        for (int i = 0; i < linesEach; ++i) EXPECT_TRUE(terminal.pty->write(std::string(700, letter) + "\n"));
    };
    auto other = std::async(std::launch::async, writeLines, 'a');
    writeLines('b');
    other.get();
    EXPECT_TRUE(terminal.pty->write("\x04"));  // end of input
    EXPECT_EQ(terminal.exit(), ExitStatus::exited(0));

    std::istringstream lines(terminal.wholeOutput());
    std::map<std::string, int> counts;
    for (std::string line; std::getline(lines, line);) ++counts[line];
    for (const char letter : {'a', 'b'}) EXPECT_EQ(counts[std::string(700, letter)], linesEach);
}

TEST(PtyProcess, waitsUntilTheTimeoutOrCloseInput) {
    const Terminal silent("/bin/sleep", {"60"});
    std::string lines;
    while (lines.size() < 1 << 20) lines += "a line that nobody reads\n";
    const TimePoint start = steadyNow();
    EXPECT_FALSE(silent.pty->write(lines, Seconds(0.01)));
    EXPECT_LT(steadyNow() - start, PtyProcess::writeTimeout / 2);
    auto stuck = std::async(std::launch::async, [&] { return silent.pty->write(lines, Seconds(60)); });
    EXPECT_EQ(stuck.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    silent.pty->closeInput();
    EXPECT_EQ(stuck.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_FALSE(stuck.get());
}

TEST(PtyProcess, neverWritesToAReusedDescriptor) {
    const TemporaryFolder folder;
    const auto pty = *PtyProcess::spawn({"/bin/sleep", {"60"}});
    auto master = pty->takeMaster();
    const int number = master.get();
    master.reset();
    const UniqueFd opened(::open(folder.write("file", "").c_str(), O_RDWR | O_CLOEXEC));
    const UniqueFd file(opened.get() == number ? -1 : ::dup2(opened.get(), number));
    pty->write("\n");
    EXPECT_EQ(folder.read("file"), "");
    pty->child().signal(SIGKILL);
}

}  // namespace tarnik
