#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/process/SpawnAttributes.h"
#include "core/process/Spawner.h"

// Measures the time from the call that starts /bin/true to its reaping, through Spawner and through its
// parts. Ours and the floor take turns, and medians are compared, so that the ratio holds on a busy machine.
// "call" is the median time in us until the child has executed its program.

namespace {

using namespace tarnik;

struct Cost {
    double call = 0;  // microseconds
    double whole = 0;
};

class Stopwatch {
public:
    double microseconds() const {
        return std::chrono::duration<double, std::micro>(steadyNow() - start_).count();
    }

private:
    TimePoint start_ = steadyNow();
};

Cost throughSpawner() {
    const Stopwatch watch;
    const auto child = Spawner::spawn({.executable = "/bin/true"});
    if (!child) throw std::runtime_error(describe(child.error()));
    const double call = watch.microseconds();
    (*child)->waitForExit(Seconds(60));
    return {call, watch.microseconds()};
}

pid_t posixSpawn() {
    static const std::string path = "/bin/true";
    char* const arguments[] = {const_cast<char*>(path.c_str()), nullptr};
    char* const environment[] = {nullptr};
    pid_t pid = -1;
    SpawnAttributes records;
    for (const int standard : {0, 1, 2}) records.connect(standard, Stdio::null(), O_RDWR);
    int failed = records.seal();
    if (failed == 0) {
        failed = ::posix_spawn(&pid, path.c_str(), records.actions(), records.attributes(), arguments,
                               environment);
    }
    if (failed != 0) throw std::runtime_error("posix_spawn");
    return pid;
}

void reap(pid_t pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
}

// The floor: posix_spawn and waitpid.
Cost bare() {
    const Stopwatch watch;
    const pid_t pid = posixSpawn();
    const double call = watch.microseconds();
    reap(pid);
    return {call, watch.microseconds()};
}

// The floor of a program that must not block: one thread per child waits for it.
Cost withThread() {
    const Stopwatch watch;
    const pid_t pid = posixSpawn();
    std::thread waiting(reap, pid);
    const double call = watch.microseconds();
    waiting.join();
    return {call, watch.microseconds()};
}

// The load of the parent during the measurement.
struct Burden {
    enum class Kind { none, memory };

    explicit Burden(Kind kind) {
        if (kind == Kind::none) return;
        memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) throw std::runtime_error("mmap");
        std::memset(memory, 1, bytes);
    }
    Burden(const Burden&) = delete;
    Burden& operator=(const Burden&) = delete;
    ~Burden() {
        if (memory != nullptr) ::munmap(memory, bytes);
    }

    static constexpr std::size_t bytes = std::size_t{1} << 30;
    void* memory = nullptr;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void compare(benchmark::State& state, Burden::Kind kind, const std::function<Cost()>& floor) {
    const Burden burden(kind);
    std::vector<double> ours, oursCall, theirs, theirsCall;
    bool weFirst = false;
    for (auto iteration : state) {
        (void)iteration;
        Cost first, second;
        weFirst = !weFirst;
        if (weFirst)
            first = throughSpawner(), second = floor();
        else
            second = floor(), first = throughSpawner();
        ours.push_back(first.whole);
        oursCall.push_back(first.call);
        theirs.push_back(second.whole);
        theirsCall.push_back(second.call);
        state.SetIterationTime(first.whole / 1e6);
    }
    state.counters["us"] = median(ours);
    state.counters["floor_us"] = median(theirs);
    state.counters["ratio"] = median(ours) / median(theirs);
    state.counters["call_us"] = median(oursCall);
    state.counters["floor_call_us"] = median(theirsCall);
}

void spawnBeside(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(1000);
}

BENCHMARK_CAPTURE(compare, spawn_beside_posix_spawn, Burden::Kind::none, bare)->Apply(spawnBeside);
BENCHMARK_CAPTURE(compare, spawn_beside_waiting_thread, Burden::Kind::none, withThread)->Apply(spawnBeside);
BENCHMARK_CAPTURE(compare, spawn_1GiB_parent_beside_waiting_thread, Burden::Kind::memory, withThread)
    ->Apply(spawnBeside);

}  // namespace
