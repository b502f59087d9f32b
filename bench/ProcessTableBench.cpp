#include <algorithm>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "core/foundation/Time.h"
#include "core/process/MacProcesses.h"
#include "tests/support/ForkedChild.h"

// Compares a table of all processes with a bare loop over /proc that does the same reads, and a list of one
// process's descendants with the whole table. The two sides take turns, and their medians are compared.

namespace {

using namespace tarnik;

// Starts this many sleeping processes.
std::vector<ForkedChild> sleepers(std::int64_t count) {
    std::vector<ForkedChild> children;
    children.reserve(static_cast<std::size_t>(count));
    while (static_cast<std::int64_t>(children.size()) < count) children.push_back(ForkedChild::waiting());
    return children;
}

void tableOfOurs() {
    const auto table = MacProcesses::table();
    if (!table) throw std::runtime_error("no table");
    benchmark::DoNotOptimize(table->data());
}

std::vector<ProcessEntry> family(pid_t ancestor) {
    auto table = MacProcesses::tableUnder(ancestor);
    if (!table) throw std::runtime_error("no table");
    return std::move(*table);
}

void bareLoop() {
    DIR* const folder = ::opendir("/proc");
    if (folder == nullptr) throw std::runtime_error("no /proc");
    const int at = ::dirfd(folder);
    char name[64];
    char text[4096];
    while (const dirent* entry = ::readdir(folder)) {
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9') continue;
        std::snprintf(name, sizeof name, "%s/stat", entry->d_name);
        const int file = ::openat(at, name, O_RDONLY | O_CLOEXEC);
        if (file < 0) continue;
        ssize_t length = ::read(file, text, sizeof text);
        ::close(file);
        std::snprintf(name, sizeof name, "%s/exe", entry->d_name);
        length += ::readlinkat(at, name, text, sizeof text);
        benchmark::DoNotOptimize(length);
    }
    ::closedir(folder);
}

template <class Work>
double microseconds(Work work) {
    const TimePoint began = steadyNow();
    work();
    return std::chrono::duration<double, std::micro>(steadyNow() - began).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <class Ours, class Theirs>
void inTurns(benchmark::State& state, Ours ours, Theirs theirs) {
    std::vector<double> us, them;
    bool weFirst = false;
    for (auto iteration : state) {
        (void)iteration;
        weFirst = !weFirst;
        if (weFirst) us.push_back(microseconds(ours));
        them.push_back(microseconds(theirs));
        if (!weFirst) us.push_back(microseconds(ours));
        state.SetIterationTime(us.back() / 1e6);
    }
    state.counters["us"] = median(us);
    state.counters["floor_us"] = median(them);
    state.counters["ratio"] = median(us) / median(them);
}

void processTable_beside_bareLoop(benchmark::State& state) {
    const auto others = sleepers(state.range(0));
    inTurns(state, tableOfOurs, bareLoop);
}

void processesUnder_beside_processTable(benchmark::State& state) {
    const auto others = sleepers(state.range(0));
    const ForkedChild ancestor([] {
        const auto child = ForkedChild::waiting();
        while (true) ::pause();
    });
    inTurns(state, [&ancestor] { benchmark::DoNotOptimize(family(ancestor.pid()).data()); }, tableOfOurs);
    for (const auto& entry : family(ancestor.pid())) {
        if (entry.parent == ancestor.pid()) ::kill(entry.pid, SIGKILL);
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Unit(benchmark::kMicrosecond);
    benchmark->Arg(50)->Arg(2000)->Iterations(200);
}

BENCHMARK(processTable_beside_bareLoop)->Apply(sizes);
BENCHMARK(processesUnder_beside_processTable)->Apply(sizes);

}  // namespace
