#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/node/NodeSupervisor.h"

extern char** environ;

namespace tarnik {
namespace {

using namespace std::chrono_literals;

const std::string waiter = TARNIK_CHILDREN_DIR "/wait_for_input_end";

// An event that one thread signals and another waits for.
class Bell {
public:
    void ring() {
        const std::lock_guard lock(mutex_);
        ++rung_;
        changed_.notify_all();
    }
    void await(int times) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return rung_ >= times; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int rung_ = 0;
};

// A node home whose runtime only waits for the end of its input.
NodeHome layOut() {
    auto home =
        NodeHome::resolve((std::filesystem::current_path() / "supervisor-bench").string(), "/Users/me")
            .value();
    std::filesystem::create_directories(std::filesystem::path(home.nodeBinary()).parent_path());
    for (const auto& file : {home.entry(), home.joinRecord()}) {
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        std::ofstream(file).flush();
    }
    std::error_code there;
    std::filesystem::create_symlink(waiter, home.nodeBinary(), there);
    return home;
}

double secondsSince(TimePoint start) {
    return Seconds(steadyNow() - start).count();
}

// Measures the time from SIGKILL to the supervisor's report.
double reported(const NodeHome& home) {
    Bell running;
    Bell restarting;
    auto deps = NodeSupervisorDeps::production();
    NodeSupervisor supervisor(
        home, {}, deps, [](const std::string&) {},
        [&](const NodeState& state) {
            if (std::holds_alternative<NodeStates::Running>(state)) running.ring();
            if (std::holds_alternative<NodeStates::Restarting>(state)) restarting.ring();
        });
    supervisor.start();
    running.await(1);
    std::this_thread::sleep_for(5ms);  // until it has executed its program
    const TimePoint start = steadyNow();
    ::kill(*supervisor.runningPID(), SIGKILL);
    restarting.await(1);
    const double took = secondsSince(start);
    supervisor.stop();
    return took;
}

// The floor: a thread that waits for the child and signals another.
double bare() {
    int input[2];
    if (::pipe(input) != 0) return 0;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    char* arguments[] = {const_cast<char*>(waiter.c_str()), nullptr};
    pid_t pid = 0;
    ::posix_spawn(&pid, waiter.c_str(), &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    Bell ended;
    std::thread thread([&] {
        int word = 0;
        ::waitpid(pid, &word, 0);
        ended.ring();
    });
    std::this_thread::sleep_for(5ms);
    const TimePoint start = steadyNow();
    ::kill(pid, SIGKILL);
    ended.await(1);
    const double took = secondsSince(start);
    thread.join();
    ::close(input[0]);
    ::close(input[1]);
    return took;
}

void deathToReport(benchmark::State& state) {
    const NodeHome home = layOut();
    double ours = 0;
    double floor = 0;
    for (auto _ : state) {
        const double took = reported(home);
        state.SetIterationTime(took);
        ours += took;
        floor += bare();
    }
    state.counters["ratio_to_waiting_thread"] = ours / floor;
    std::filesystem::remove_all(home.path);
}
BENCHMARK(deathToReport)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tarnik
