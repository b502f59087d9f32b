#include "core/process/Spawner.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <future>
#include <map>
#include <tuple>

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include "core/process/PtyProcess.h"
#include "tests/support/ChildPrograms.h"
#include "tests/support/Eventually.h"
#include "tests/support/ProcessCounts.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Terminal.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr Seconds limit = 20s;

Spawner::Output run(const std::string& program, std::vector<std::string> arguments = {},
                    Environment environment = {}) {
    return Spawner::run({childProgram(program), std::move(arguments), std::move(environment), limit, 65536})
        .value_or(Spawner::Output{ExitStatus::exited(-1), "not started"});
}

std::string terminalOutput(const std::string& program) {
    return Terminal(childProgram(program)).wholeOutput();
}

TEST(Spawner, passesArgumentsAndEnvironment) {
    const std::string itself = "argument " + childProgram("print_environment") + "\n";
    EXPECT_EQ(run("print_environment", {"a b", ""}, {{"B", "2"}, {"A", ""}, {"A.", "x=y"}}).text,
              itself + "argument a b\nargument \nvariable A=\nvariable A.=x=y\nvariable B=2\n");
    EXPECT_EQ(run("print_environment").text, itself + "variable PATH=/usr/bin:/bin:/usr/sbin:/sbin\n");
    EXPECT_EQ(terminalOutput("print_environment"), itself);
}

TEST(Spawner, failsForWhatCannotBeRun) {
    const TemporaryFolder folder;
    const auto before = ProcessCounts::baseline();
    // PATH is not searched.
    for (const auto& [executable, code] :
         {std::pair<std::string, int>("/no/tar", ENOENT), {"true", ENOENT}, {folder.path(), EACCES}}) {
        const auto child = Spawner::spawn({.executable = executable}, [](ExitStatus) { ADD_FAILURE(); });
        EXPECT_EQ(child.error(), (SystemError{"posix_spawn " + executable, code}));
        EXPECT_FALSE(Spawner::run({.executable = executable, .timeout = limit, .limit = 100}));
    }
    for (const int closed : {-1, 1 << 20})
        EXPECT_FALSE(
            Spawner::spawn({.executable = childProgram("exit_with"), .standardOutput = Stdio::fd(closed)}));
    EXPECT_TRUE(eventually([&] { return ProcessCounts::now().holdsNoMoreThan(before); }))
        << ProcessCounts::now();
}

TEST(Spawner, passesNoOtherDescriptor) {
    const UniqueFd inheritable(::open("/dev/null", O_RDONLY));  // not close-on-exec
    EXPECT_EQ(run("list_descriptors").text, "0\n1\n2\n");
    EXPECT_EQ(terminalOutput("list_descriptors"), "0\n1\n2\n");
    EXPECT_EQ(::fcntl(Spawner::pipe()->readEnd.get(), F_GETFD), FD_CLOEXEC);
    // The child can read its standard input and write its outputs: all three are /dev/null.
    const auto child = Spawner::spawn({"/bin/sh", {"-c", "/bin/cat && echo && echo >&2"}});
    EXPECT_EQ((*child)->waitForExit(limit), ExitStatus::exited(0));
}

TEST(Spawner, resetsAndUnblocksSignals) {
    sigset_t blocked, before;
    sigemptyset(&blocked);
    for (const int number : {SIGUSR1, SIGTERM}) sigaddset(&blocked, number);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    std::map<int, void (*)(int)> handlers;
    for (const int number : {SIGPIPE, SIGHUP, SIGUSR2}) handlers[number] = std::signal(number, SIG_IGN);
    EXPECT_EQ(run("print_signals").text + terminalOutput("print_signals"), "");
    for (const auto& [number, handler] : handlers) std::signal(number, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// The callback runs once, after the status is stored, and may call the child's operations.
TEST(Spawner, reportsTheExitStatus) {
    const std::tuple<const char*, int, ExitStatus> cases[] = {
        {"exit_with", 3, ExitStatus::exited(3)}, {"signal_self", SIGTERM, ExitStatus::signaled(SIGTERM)}};
    for (const auto& [program, argument, expected] : cases) {
        std::promise<std::shared_ptr<ChildProcess>> handle;
        std::promise<ExitStatus> reported;
        const auto onExit = [&, handed = handle.get_future().share()](ExitStatus status) {
            handed.get()->stop(StopSequences::shortCommand);
            EXPECT_EQ(handed.get()->exitStatus(), status);
            reported.set_value(status);
        };
        handle.set_value(*Spawner::spawn({childProgram(program), {std::to_string(argument)}}, onExit));
        EXPECT_EQ(reported.get_future().get(), expected) << program;
    }
}

// With SIGCHLD ignored the kernel reaps the child: its status is lost, but its end is still reported.
TEST(Spawner, reportsTheEndOfAChildThatTheKernelReaped) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("exit_with", {"0"}).status, ExitStatus::exited(255));
    std::signal(SIGCHLD, before);
}

TEST(Spawner, keepsTheLastBytesOfTheOutput) {
    const auto output = Spawner::run({childProgram("write_bytes"), {"260003"}, {}, limit, 26});
    EXPECT_EQ(output->status, ExitStatus::exited(0));
    EXPECT_EQ(output->text, "defghijklmnopqrstuvwxyzabc");
    const std::string script = "printf 'a\\377b'; printf c >&2";
    EXPECT_EQ(Spawner::run({"/bin/sh", {"-c", script}, {}, limit, 100})->text, "a\uFFFDbc");
}

// Each case ends at its own short limit. All other limits are a minute.
TEST(Spawner, limitsTheTimeOfACommand) {
    constexpr std::array patient{StopStep{StopAction::terminate, 60s}, StopStep{StopAction::kill, 60s}};
    constexpr std::array quick{StopStep{StopAction::terminate, 0.02s}, StopStep{StopAction::kill, 60s}};
    const std::tuple<Spawner::Command, ExitStatus> cases[] = {
        {{"/bin/sleep", {"60"}, {}, 0.02s, 100, patient}, ExitStatus::signaled(SIGTERM)},
        {{childProgram("ignore_term"), {}, {}, 0.1s, 100, quick}, ExitStatus::signaled(SIGKILL)},
        {{childProgram("hold_output"), {"60"}, {}, 60s, 100, patient, 0.1s}, ExitStatus::exited(0)},
    };
    const auto before = ProcessCounts::baseline();
    for (auto [command, status] : cases) {
        const TimePoint started = steadyNow();
        const auto output = Spawner::run(command);
        const Seconds took = steadyNow() - started;
        EXPECT_EQ(output->status, status) << command.executable;
        EXPECT_TRUE(took >= 0.02s && took < 10s) << command.executable << ": " << took.count();
        // The process that still holds the output costs no thread and no descriptor.
        EXPECT_TRUE(eventually([&] { return ProcessCounts::now().holdsNoMoreThan(before); }))
            << command.executable << ": " << ProcessCounts::now();
        if (const int holder = std::atoi(output->text.c_str()); holder > 1) ::kill(holder, SIGKILL);
    }
}

// New descriptors get the numbers 0 to 2 if the program was started without them. The last child's output is
// our descriptor 2, its error output our 1.
TEST(Spawner, worksWithTheStandardDescriptorsClosed) {
    const std::array saved{UniqueFd::duplicate(0), UniqueFd::duplicate(1), UniqueFd::duplicate(2)};
    const UniqueFd others(::open("/dev/null", O_RDWR | O_CLOEXEC));
    const auto output = Spawner::pipe();
    for (const int fd : {0, 1, 2}) ::close(fd);
    const std::string captured = run("list_descriptors").text + terminalOutput("list_descriptors");
    ::dup2(others.get(), 1);
    ::dup2(output->writeEnd.get(), 2);
    const auto child = Spawner::spawn(
        {"/bin/sh", {"-c", "echo out; echo error >&2"}, {}, Stdio::null(), Stdio::fd(2), Stdio::fd(1)});
    if (child) (*child)->waitForExit(limit);
    for (int fd = 0; const auto& standard : saved) ::dup2(standard.get(), fd++);

    std::array<char, 100> crossed{};
    EXPECT_EQ(::read(output->readEnd.get(), crossed.data(), crossed.size()), 4);
    EXPECT_STREQ(crossed.data(), "out\n");
    EXPECT_EQ(captured, "0\n1\n2\n0\n1\n2\n");
}

TEST(Spawner, retriesAProgramThatIsBeingWritten) {
    const TemporaryFolder folder;
    const SpawnRequest request{.executable = folder.path() + "/true"};
    std::filesystem::copy_file(childProgram("exit_with"), request.executable);
    for (const bool onTerminal : {false, true}) {
        UniqueFd writing(::open(request.executable.c_str(), O_RDWR | O_CLOEXEC));
        const auto written = std::async(std::launch::async, [&writing] {
            std::promise<void>().get_future().wait_for(30ms);
            writing.reset();
        });
        const auto child = onTerminal ? nullptr : *Spawner::spawn(request);
        const auto pty = onTerminal ? *PtyProcess::spawn(request) : nullptr;
        EXPECT_EQ((pty ? pty->child() : *child).waitForExit(limit), ExitStatus::exited(0));
    }
}

// Leaves two descriptors, as many as forkpty(3) needs, so that one is left when it returns: too few to own
// the terminal. Closing the terminal alone would end the child with SIGHUP.
TEST(Spawner, killsAChildIfTheTerminalCannotBeOwned) {
    if (isSanitized()) GTEST_SKIP() << "the sanitizer needs descriptors, too";
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{.rlim_cur = 300, .rlim_max = before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    std::vector<UniqueFd> taken;
    do taken.push_back(UniqueFd::duplicate(0));
    while (taken.back());
    const SpawnRequest request{.executable = "/bin/sleep", .arguments = {"60"}};
    const auto none = PtyProcess::spawn(request, [](ExitStatus) { ADD_FAILURE(); });
    taken.resize(taken.size() - 3);
    std::promise<ExitStatus> ended;
    const auto pty = PtyProcess::spawn(request, [&](ExitStatus status) { ended.set_value(status); });
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(pty.error(), (SystemError{"forkpty", EMFILE}));
    EXPECT_EQ(none.error(), pty.error());
    auto status = ended.get_future();
    ASSERT_EQ(status.wait_for(limit), std::future_status::ready) << "forkpty itself failed";
    EXPECT_EQ(status.get(), ExitStatus::signaled(SIGKILL));
}

// With a default stack larger than the address space no thread can be started. Only where the C library has
// that setting.
TEST(Spawner, startsNoChildWithoutAThread) {
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

    const SpawnRequest request{.executable = childProgram("exit_with")};
    const auto errorOf = [](const auto& result) { return result ? SystemError{} : result.error(); };
    const auto never = [](ExitStatus) { ADD_FAILURE(); };
    const std::vector errors{errorOf(Spawner::spawn(request, never)),
                             errorOf(PtyProcess::spawn(request, never)),
                             errorOf(Spawner::run({request.executable, {}, {}, limit, 100}))};
    ::pthread_attr_setstacksize(&attributes, usual);
    setDefaults(&attributes);
    ::pthread_attr_destroy(&attributes);

    EXPECT_EQ(errors, std::vector(3, SystemError{"pthread_create", EAGAIN}));
    EXPECT_TRUE(ProcessCounts::now().holdsNoMoreThan(before)) << ProcessCounts::now();
}

}  // namespace
}  // namespace tarnik
