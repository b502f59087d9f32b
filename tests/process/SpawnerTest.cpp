#include "core/process/Spawner.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <future>
#include <iterator>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include "core/process/FDReader.h"
#include "core/process/LockedData.h"
#include "core/process/PtyProcess.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ManyDescriptors.h"
#include "tests/support/ProcessCounts.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr Seconds limit = 20s;

Spawner::Output run(const std::string& program, std::vector<std::string> arguments = {}) {
    const auto output = Spawner::run({.executable = childProgram(program),
                                      .arguments = std::move(arguments),
                                      .environment = {},
                                      .timeout = limit,
                                      .limit = 65536});
    return output.value_or(Spawner::Output{ExitStatus::exited(-1), "not started"});
}

// What a child on a terminal says until its end.
std::string runOnTerminal(const std::string& program) {
    const auto pty = PtyProcess::spawn({.executable = childProgram(program)});
    if (!pty) return describe(pty.error());
    LockedData said(65536);
    const auto reader =
        FDReader::start((*pty)->takeMaster(), [&](std::string_view chunk) { said.append(chunk); });
    EXPECT_TRUE((*reader)->waitForEOF(limit));
    EXPECT_EQ((*pty)->child().waitForExit(limit), ExitStatus::exited(0));
    std::string text = said.data();
    std::erase(text, '\r');
    return text;
}

TEST(Spawner, givesTheChildItsWholeEnvironmentInOrderOfTheKeys) {
    struct Case {
        Environment environment;
        std::string said;
    };
    const Case cases[] = {
        {{}, ""},
        {{{"B", "2"}, {"A", ""}, {"A.", "x=y"}}, "variable A=\nvariable A.=x=y\nvariable B=2\n"},
    };
    for (const auto& c : cases) {
        auto pipe = Spawner::pipe();
        ASSERT_TRUE(pipe);
        LockedData said(65536);
        const auto reader =
            FDReader::start(std::move(pipe->readEnd), [&](std::string_view chunk) { said.append(chunk); });
        const std::string program = childProgram("print_environment");
        const auto child = Spawner::spawn({.executable = program,
                                           .arguments = {"a b", ""},
                                           .environment = c.environment,
                                           .standardOutput = Stdio::fd(pipe->writeEnd.get())});
        pipe->writeEnd.reset();
        ASSERT_TRUE((*reader)->waitForEOF(limit));
        EXPECT_EQ(said.data(), "argument " + program + "\nargument a b\nargument \n" + c.said);
    }
    EXPECT_TRUE(run("print_environment").text.ends_with("\nvariable PATH=/usr/bin:/bin:/usr/sbin:/sbin\n"));
}

TEST(Spawner, refusesWhatCannotBeRun) {
    const TemporaryFolder folder;
    struct Case {
        std::string executable;
        int code;
        const char* text;
    };
    const Case cases[] = {
        {"/usr/bin/no-such-tar", ENOENT,
         "posix_spawn /usr/bin/no-such-tar failed: No such file or directory"},
        {"true", ENOENT, "posix_spawn true failed: No such file or directory"},  // PATH is not searched
        {"", ENOENT, "posix_spawn  failed: No such file or directory"},
        {folder.path(), EACCES, nullptr},
    };
    const auto before = ProcessCounts::baseline();
    for (const auto& c : cases) {
        const auto child = Spawner::spawn({.executable = c.executable}, [](ExitStatus) { ADD_FAILURE(); });
        ASSERT_FALSE(child) << c.executable;
        EXPECT_EQ(child.error(), (SpawnError{"posix_spawn " + c.executable, c.code}));
        if (c.text != nullptr) {
            EXPECT_EQ(describe(child.error()), c.text);
        }
        EXPECT_FALSE(Spawner::run({.executable = c.executable, .timeout = limit, .limit = 100}));
    }
    EXPECT_FALSE(Spawner::spawn({.executable = "/bin/true", .standardOutput = Stdio::fd(-1)}));
    EXPECT_TRUE(eventually([&] { return ProcessCounts::now().holdsNoMoreThan(before); }))
        << ProcessCounts::now();
}

TEST(Spawner, givesTheChildNoDescriptorThatItWasNotGiven) {
    for (const std::size_t count : {10U, 5000U}) {
        const ManyDescriptors many(count);
        EXPECT_EQ(run("list_descriptors").text, "0\n1\n2\n") << count;
        EXPECT_EQ(runOnTerminal("list_descriptors"), "0\n1\n2\n") << count;
    }
    const ManyDescriptors many(5000);
    const auto refused = Spawner::spawn({.executable = "/bin/true", .standardOutput = Stdio::fd(1 << 20)});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().code, EBADF);
}

TEST(Spawner, startsTheChildWithDefaultSignals) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGUSR1);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const std::array ignored{SIGPIPE, SIGHUP, SIGUSR2};
    std::array<void (*)(int), ignored.size()> handlers{};
    for (std::size_t i = 0; i < ignored.size(); ++i) handlers[i] = std::signal(ignored[i], SIG_IGN);

    EXPECT_EQ(run("print_signals").text, "");
    EXPECT_EQ(runOnTerminal("print_signals"), "");

    for (std::size_t i = 0; i < ignored.size(); ++i) std::signal(ignored[i], handlers[i]);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// Reported once, when it can already be asked for, and from a callback that calls back in.
TEST(Spawner, reportsHowAChildEnded) {
    struct Case {
        const char* program;
        std::string argument;
        ExitStatus status;
    };
    const Case cases[] = {
        {"exit_with", "0", ExitStatus::exited(0)},
        {"exit_with", "3", ExitStatus::exited(3)},
        {"signal_self", std::to_string(SIGTERM), ExitStatus::signaled(SIGTERM)},
        {"signal_self", std::to_string(SIGPIPE), ExitStatus::signaled(SIGPIPE)},
    };
    for (const auto& c : cases) {
        std::promise<std::shared_ptr<ChildProcess>> handle;
        std::promise<ExitStatus> reported;
        const auto child = Spawner::spawn({.executable = childProgram(c.program), .arguments = {c.argument}},
                                          [&, handed = handle.get_future().share()](ExitStatus status) {
                                              const auto ended = handed.get();
                                              ended->stop(Seconds(0));
                                              EXPECT_EQ(ended->exitStatus(), status);
                                              EXPECT_FALSE(ended->isRunning());
                                              reported.set_value(status);
                                          });
        ASSERT_TRUE(child);
        handle.set_value(*child);
        EXPECT_EQ(reported.get_future().get(), c.status) << c.argument;
    }
}

// Whoever started us ignored SIGCHLD, and we didn't undo it: how a child ended is lost, but not that it did.
TEST(Spawner, reportsTheEndOfAChildThatSomebodyElseReaped) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("exit_with", {"0"}).status, ExitStatus::exited(255));
    std::signal(SIGCHLD, before);
}

TEST(Spawner, keepsTheEndOfALongOutput) {
    const auto output = Spawner::run({.executable = childProgram("write_bytes"),
                                      .arguments = {"260000"},
                                      .environment = {},
                                      .timeout = limit,
                                      .limit = 26});
    ASSERT_TRUE(output);
    EXPECT_EQ(output->status, ExitStatus::exited(0));
    EXPECT_EQ(output->text, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(Spawner::run({.executable = "/bin/sh",
                            .arguments = {"-c", "printf 'a\\377b'; printf c >&2"},
                            .environment = {},
                            .timeout = limit,
                            .limit = 100})
                  ->text,
              "a\xEF\xBF\xBD"
              "bc");
}

TEST(Spawner, boundsWhateverTheChildDoes) {
    struct Case {
        const char* why;
        std::string executable;
        std::vector<std::string> arguments;
        Seconds timeout;
        ExitStatus status;
        Seconds earliest;
        Seconds latest;
    };
    const Case cases[] = {
        {"ends when asked to", "/bin/sleep", {"60"}, 0.3s, ExitStatus::signaled(SIGTERM), 0.3s, 2.2s},
        {"ends only by force", childProgram("ignore_term"), {}, 1s, ExitStatus::signaled(SIGKILL), 3s, 6s},
        {"leaves its output open", childProgram("hold_output"), {"60"}, 1s, ExitStatus::exited(0), 5s, 9s},
    };
    std::vector<std::thread> commands;
    for (const auto& c : cases) {
        commands.emplace_back([&c] {
            const TimePoint started = steadyNow();
            const auto output = Spawner::run({.executable = c.executable,
                                              .arguments = c.arguments,
                                              .environment = {},
                                              .timeout = c.timeout,
                                              .limit = 100});
            const Seconds took = steadyNow() - started;
            ASSERT_TRUE(output) << c.why;
            EXPECT_EQ(output->status, c.status) << c.why;
            EXPECT_GE(took, c.earliest) << c.why;
            EXPECT_LE(took, c.latest) << c.why;
            if (const int holder = std::atoi(output->text.c_str()); holder > 1) ::kill(holder, SIGKILL);
        });
    }
    for (auto& command : commands) command.join();
}

// As when a careless launcher started us: every new descriptor of ours would land on 0, 1 or 2.
class StandardDescriptorsClosed {
public:
    StandardDescriptorsClosed() {
        for (int fd = 0; fd < 3; ++fd) {
            saved_.push_back(UniqueFd::duplicate(fd));
            ::close(fd);
        }
    }
    ~StandardDescriptorsClosed() {
        for (int fd = 0; fd < 3; ++fd) ::dup2(saved_[static_cast<std::size_t>(fd)].get(), fd);
    }
    StandardDescriptorsClosed(const StandardDescriptorsClosed&) = delete;
    StandardDescriptorsClosed& operator=(const StandardDescriptorsClosed&) = delete;

private:
    std::vector<UniqueFd> saved_;
};

TEST(Spawner, worksWithTheStandardDescriptorsClosed) {
    for (const std::size_t others : {0U, 2000U}) {
        const ManyDescriptors many(others);
        std::string captured;
        std::string onTerminal;
        std::string crossed;
        int lowest = 0;
        {
            const StandardDescriptorsClosed closed;
            captured = run("write_bytes", {"3"}).text + run("list_descriptors").text;
            onTerminal = runOnTerminal("list_descriptors");
            if (auto pipe = Spawner::pipe()) lowest = std::min(pipe->readEnd.get(), pipe->writeEnd.get());

            // The child's output is our descriptor 2 and its errors are our 1.
            auto ours1 = Spawner::pipe();
            auto ours2 = Spawner::pipe();
            ::dup2(ours1->writeEnd.get(), 1);
            ::dup2(ours2->writeEnd.get(), 2);
            const auto child = Spawner::spawn({.executable = "/bin/sh",
                                               .arguments = {"-c", "echo out; echo error >&2"},
                                               .standardOutput = Stdio::fd(2),
                                               .standardError = Stdio::fd(1)});
            if (child) (*child)->waitForExit(limit);
            for (const int fd : {ours2->readEnd.get(), ours1->readEnd.get()}) {
                std::array<char, 100> buffer{};
                const auto count = ::read(fd, buffer.data(), buffer.size());
                if (count > 0) crossed.append(buffer.data(), static_cast<std::size_t>(count));
                crossed += '|';
            }
        }
        EXPECT_EQ(captured, "abc0\n1\n2\n");
        EXPECT_EQ(onTerminal, "0\n1\n2\n");
        EXPECT_EQ(crossed, "out\n|error\n|");
        EXPECT_GT(lowest, STDERR_FILENO);
    }
}

TEST(Spawner, waitsForAProgramThatIsStillBeingWritten) {
    const TemporaryFolder folder;
    const std::string program = folder.path() + "/true";
    std::filesystem::copy_file("/bin/true", program);
    const auto heldFor = [&](auto duration) {
        UniqueFd held(::open(program.c_str(), O_RDWR | O_CLOEXEC));
        return std::async(std::launch::async, [duration, fd = std::move(held)]() mutable {
            std::promise<void>().get_future().wait_for(duration);
            fd.reset();
        });
    };
    {
        auto writer = heldFor(50ms);
        const auto child = Spawner::spawn({.executable = program});
        ASSERT_TRUE(child) << describe(child.error());
    }
    {
        auto writer = heldFor(50ms);
        const auto pty = PtyProcess::spawn({.executable = program});
        ASSERT_TRUE(pty);
        EXPECT_EQ((*pty)->child().waitForExit(limit), ExitStatus::exited(0));
    }
    const UniqueFd writing(::open(program.c_str(), O_RDWR | O_CLOEXEC));
    const auto child = Spawner::spawn({.executable = program});
    ASSERT_FALSE(child);
    EXPECT_EQ(child.error().code, ETXTBSY);
}

// A default stack larger than the address space: no thread can be had. Only where the C library lets it be
// set.
TEST(Spawner, startsNothingWhereNoThreadCanBeHad) {
    using SetDefaults = int (*)(const pthread_attr_t*);
    const auto setDefaults =
        reinterpret_cast<SetDefaults>(::dlsym(RTLD_DEFAULT, "pthread_setattr_default_np"));
    if (setDefaults == nullptr || isSanitized()) GTEST_SKIP();
    const auto before = ProcessCounts::baseline();
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    std::size_t usual = 0;
    ::pthread_attr_getstacksize(&attributes, &usual);
    ::pthread_attr_setstacksize(&attributes, std::size_t{1} << 47);
    ASSERT_EQ(setDefaults(&attributes), 0);

    const SpawnError refused{"pthread_create", EAGAIN};
    const auto never = [](ExitStatus) { ADD_FAILURE(); };
    const auto child = Spawner::spawn({.executable = "/bin/true"}, never);
    const auto pty = PtyProcess::spawn({.executable = "/bin/true"}, never);
    const auto output = Spawner::run({.executable = "/bin/true", .timeout = limit, .limit = 100});
    ::pthread_attr_setstacksize(&attributes, usual);
    setDefaults(&attributes);
    ::pthread_attr_destroy(&attributes);

    ASSERT_FALSE(child);
    EXPECT_EQ(child.error(), refused);
    ASSERT_FALSE(pty);
    EXPECT_EQ(pty.error(), refused);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), refused);
    EXPECT_TRUE(ProcessCounts::now().holdsNoMoreThan(before)) << ProcessCounts::now();
}

}  // namespace
}  // namespace tarnik
