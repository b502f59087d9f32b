#include <array>
#include <cstring>
#include <future>
#include <string>

#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <unistd.h>

#include "core/pairing/PairingSession.h"
#include "core/pairing/TerminalBuffer.h"
#include "core/pairing/TerminalText.h"

namespace {

using Text = std::string (*)(std::size_t bytes);
using Work = std::string (*)(std::string_view text);

std::string repeated(const std::string& lines, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += lines;
    text.resize(bytes);
    return text;
}

std::string plain(std::size_t bytes) {
    return repeated(
        "2026-01-05 10:32:07 connected to the service, waiting for the next job to come in\n"
        "a short line\n"
        "and one with an umlaut, \xC3\xBC, a tab\there, and some more words behind it to make it long\n",
        bytes);
}

// Turns every line feed into CR LF, like a terminal.
std::string terminalLines(std::size_t bytes) {
    return repeated(
        "2026-01-05 10:32:07 connected to the service, waiting for the next job to come in\r\n"
        "a short line\r\n"
        "and one with an umlaut, \xC3\xBC, a tab\there, and some more words behind it to make it long\r\n",
        bytes);
}

std::string coloured(std::size_t bytes) {
    return repeated(
        "\x1B[1;32mok\x1B[0m \x1B[38;5;244m10:32:07\x1B[0m \x1B[36mnode\x1B[0m: connected to "
        "\x1B[4;34mthe service\x1B[0m\x1B[K\r\n\x1B[2m\xE2\x94\x94\x1B[22m \x1B[1mwaiting\x1B[22m\r\n",
        bytes);
}

// The floor: the rule as a plain loop over the bytes. It is correct for the texts above.
std::string byteLoop(std::string_view text) {
    enum class State { plain, escape, control, command, commandEscape };
    std::string cleaned;
    cleaned.reserve(text.size());
    State state = State::plain;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        switch (state) {
            case State::plain:
                if (byte == 27) {
                    state = State::escape;
                } else if (byte >= 32 || byte == 9 || byte == 10) {
                    cleaned.push_back(character);
                }
                break;
            case State::escape:
                state = byte == '[' ? State::control : byte == ']' ? State::command : State::plain;
                break;
            case State::control:
                if (byte >= 64 && byte <= 126) state = State::plain;
                break;
            case State::command:
            case State::commandEscape:
                if (byte == 7 || (state == State::commandEscape && byte == '\\')) {
                    state = State::plain;
                } else {
                    state = byte == 27 ? State::commandEscape : State::command;
                }
                break;
        }
    }
    return cleaned;
}

std::string copied(std::string_view text) {
    std::string copy;
    copy.resize_and_overwrite(text.size(), [text](char* out, std::size_t bytes) {
        std::memcpy(out, text.data(), bytes);
        return bytes;
    });
    return copy;
}

void over(benchmark::State& state, Work work, Text make) {
    const std::string text = make(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::string result = work(text);
        benchmark::DoNotOptimize(result.data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16 << 10)->Arg(1 << 20);
}

BENCHMARK_CAPTURE(over, memcpy, copied, plain)->Apply(sizes);
BENCHMARK_CAPTURE(over, byteLoop_plain, byteLoop, plain)->Apply(sizes);
BENCHMARK_CAPTURE(over, clean_plain, tarnik::TerminalText::clean, plain)->Apply(sizes);
BENCHMARK_CAPTURE(over, byteLoop_terminalLines, byteLoop, terminalLines)->Apply(sizes);
BENCHMARK_CAPTURE(over, clean_terminalLines, tarnik::TerminalText::clean, terminalLines)->Apply(sizes);
BENCHMARK_CAPTURE(over, byteLoop_coloured, byteLoop, coloured)->Apply(sizes);
BENCHMARK_CAPTURE(over, clean_coloured, tarnik::TerminalText::clean, coloured)->Apply(sizes);

constexpr int bytesOneByOne = 20'000;

// A program that prints single bytes. The floor is its snapshots: a copy of the text for each byte.
void oneByteChunksFloor(benchmark::State& state) {
    for (auto _ : state) {
        std::string text;
        for (int i = 0; i < bytesOneByOne; ++i) {
            text += 'a';
            if (text.size() > tarnik::TerminalBuffer::maxTextBytes)
                text.erase(0, text.size() - tarnik::TerminalBuffer::keptCharacters);
            std::string snapshot = text;
            benchmark::DoNotOptimize(snapshot.data());
        }
    }
}

void oneByteChunks(benchmark::State& state, Text make) {
    const std::string text = make(bytesOneByOne);
    for (auto _ : state) {
        tarnik::TerminalBuffer buffer;
        for (const char& byte : text) {
            buffer.append({&byte, 1});
            std::string snapshot = buffer.text();
            benchmark::DoNotOptimize(snapshot.data());
        }
    }
}

// Measures a session and its reader. Each message of the socket is one chunk.
void oneByteChunksRead(benchmark::State& state) {
    using namespace tarnik;
    const std::string text = terminalLines(bytesOneByOne);
    for (auto _ : state) {
        std::array<int, 2> ends{-1, -1};
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()) != 0)
            return state.SkipWithError("socketpair");
        UniqueFd master(ends[0]);
        UniqueFd farSide(ends[1]);
        ChildProcess::OnExit exited;
        std::promise<void> ended;
        PairingSession::Setup setup{.request = {},
                                    .spawnPty =
                                        [&](const SpawnRequest&, ChildProcess::OnExit onExit) {
                                            exited = std::move(onExit);
                                            constexpr pid_t noProcess = 1 << 29;
                                            return std::make_shared<PtyProcess>(
                                                std::make_shared<ChildProcess>(noProcess, [](pid_t, int) {}),
                                                std::move(master));
                                        },
                                    .now = steadyNow,
                                    .joined = [] { return false; },
                                    .connectedAfter = Seconds(0),
                                    .callAfter = [](Seconds, const std::function<void()>&) {},
                                    .onUpdate = {},
                                    .onExit = [&](ExitStatus) { ended.set_value(); }};
        const auto session = PairingSession::start(std::move(setup));
        for (const char& byte : text) {
            if (::write(farSide.get(), &byte, 1) != 1) return state.SkipWithError("write");
        }
        farSide.reset();
        exited(ExitStatus::exited(0));
        ended.get_future().wait();
    }
}

BENCHMARK(oneByteChunksFloor)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(oneByteChunks, lines, terminalLines)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(oneByteChunks, coloured, coloured)->Unit(benchmark::kMillisecond);
BENCHMARK(oneByteChunksRead)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
