#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <future>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/node/NodeLog.h"
#include "core/process/FDReader.h"
#include "core/process/Spawner.h"

// Measures copying a child's output from a pipe into the bounded log. It is compared with a bare loop that
// does the same reads, writes and rotations, and with cat into one unbounded file. The writing child is not
// counted.

namespace {

using namespace tarnik;

// An empty folder for one run. It is inside the build folder, so it is on a disk.
class Folder {
public:
    Folder() {
        std::string name = TARNIK_CHILDREN_DIR "/../../bench/log.XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the log");
        path_ = name;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }
    std::string log() const { return path_ + "/node.log"; }

private:
    std::string path_;
};

struct Cost {
    double wall = 0;
    double processor = 0;
};

double seconds(const struct timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorTime(const struct rusage& usage) {
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct rusage usageOfThisProcess() {
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage;
}

Spawner::Pipe pipe() {
    auto made = Spawner::pipe();
    if (!made) throw std::runtime_error("no pipe");
    return std::move(*made);
}

// Starts a child that writes `bytes` into the pipe.
void feed(UniqueFd writeEnd, std::int64_t bytes) {
    const auto child = Spawner::spawn({.executable = TARNIK_CHILDREN_DIR "/write_bytes",
                                       .arguments = {std::to_string(bytes)},
                                       .standardOutput = Stdio::fd(writeEnd.get())});
    if (!child) throw std::runtime_error("no child to write");
}

void copyThroughLog(const std::string& path, std::int64_t bytes) {
    // Destroyed with the log, when the pipe's reader, its last owner, has ended. `ended` is ready then.
    auto alive = std::make_shared<std::promise<void>>();
    const auto ended = alive->get_future();
    auto log = NodeLog::make(path, NodeLog::defaultCap, [alive] { return steadyNow(); });
    alive.reset();
    UniqueFd writeEnd = log->attach().writeEnd;
    if (!writeEnd) throw std::runtime_error("no log");
    log.reset();
    feed(std::move(writeEnd), bytes);
    ended.wait();
}

void copyInBareLoop(const std::string& path, std::int64_t bytes) {
    const std::string older = path + ".1";
    const auto open = [&path] {
        return UniqueFd(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    };
    auto [readEnd, writeEnd] = pipe();
    feed(std::move(writeEnd), bytes);
    std::vector<char> buffer(FDReader::chunkBytes);
    UniqueFd file = open();
    std::int64_t size = 0;
    while (true) {
        const ssize_t count = ::read(readEnd.get(), buffer.data(), buffer.size());
        if (count <= 0) return;
        if (::write(file.get(), buffer.data(), static_cast<std::size_t>(count)) != count) {
            throw std::runtime_error("not written");
        }
        size += count;
        if (size < NodeLog::defaultCap) continue;
        file.reset();
        ::unlink(older.c_str());
        ::rename(path.c_str(), older.c_str());
        file = open();
        size = 0;
    }
}

using Copy = void (*)(const std::string&, std::int64_t);

Cost costOf(Copy copy, std::int64_t bytes) {
    const Folder folder;
    const double processor = processorTime(usageOfThisProcess());
    const TimePoint began = steadyNow();
    copy(folder.log(), bytes);
    return {Seconds(steadyNow() - began).count(), processorTime(usageOfThisProcess()) - processor};
}

Cost costOfCat(std::int64_t bytes) {
    const Folder folder;
    const UniqueFd file(::open(folder.log().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const TimePoint began = steadyNow();
    auto [readEnd, writeEnd] = pipe();
    feed(std::move(writeEnd), bytes);
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no cat");
    if (child == 0) {
        ::dup2(readEnd.get(), STDIN_FILENO);
        ::dup2(file.get(), STDOUT_FILENO);
        ::execl("/bin/cat", "cat", nullptr);
        ::_exit(127);
    }
    int status = 0;
    struct rusage usage = {};
    while (::wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {}
    if (status != 0) throw std::runtime_error("cat failed");
    return {Seconds(steadyNow() - began).count(), processorTime(usage)};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each round measures all three in a row and compares them with each other, so that other load on the machine
// affects all alike. The first two take turns.
void logCopy(benchmark::State& state) {
    const std::int64_t bytes = state.range(0);
    std::vector<double> wall, processor, catWall, catProcessor;
    costOf(copyThroughLog, bytes / 4);
    const auto before = usageOfThisProcess().ru_maxrss;
    bool logFirst = false;
    for (auto _ : state) {
        logFirst = !logFirst;
        std::optional<Cost> log;
        if (logFirst) log = costOf(copyThroughLog, bytes);
        const Cost bare = costOf(copyInBareLoop, bytes);
        if (!log) log = costOf(copyThroughLog, bytes);
        const Cost cat = costOfCat(bytes);
        state.SetIterationTime(log->wall);
        wall.push_back(log->wall / bare.wall);
        processor.push_back(log->processor / bare.processor);
        catWall.push_back(log->wall / cat.wall);
        catProcessor.push_back(log->processor / cat.processor);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["wall/bare"] = median(wall);
    state.counters["cpu/bare"] = median(processor);
    state.counters["wall/cat"] = median(catWall);
    state.counters["cpu/cat"] = median(catProcessor);
    const auto after = usageOfThisProcess().ru_maxrss;  // KiB on Linux
    state.counters["peakKiB"] = static_cast<double>(after);
    state.counters["grownKiB"] = static_cast<double>(after - before);
}

BENCHMARK(logCopy)->Arg(1 << 30)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(logCopy)->Arg(256 << 20)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
