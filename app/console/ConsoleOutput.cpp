#include "app/console/ConsoleOutput.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include <unistd.h>

#include "app/commands/CommandOutput.h"
#include "app/model/DownloadProgress.h"
#include "core/foundation/Files.h"

namespace tarnik {
namespace {

constexpr std::string_view dim = "\x1b[2m";
constexpr std::string_view bold = "\x1b[1m";
constexpr std::string_view red = "\x1b[31m";
constexpr std::string_view plain = "\x1b[0m";
constexpr std::string_view backToStart = "\r\x1b[K";  // also clears the line
constexpr Seconds betweenProgressLines = Seconds(2);
constexpr std::int64_t worthShowing = 1'000'000;  // in bytes; a smaller download is too short for a bar

// Returns the local time of day with milliseconds.
std::string timeOfDay() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t whole = system_clock::to_time_t(floor<seconds>(now));
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(now - floor<seconds>(now)).count();
    std::tm local{};
    ::localtime_r(&whole, &local);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<int>(milliseconds));
    return text.data();
}

std::string bar(const DownloadProgress& progress) {
    constexpr std::size_t width = 40;
    if (!progress.permille) return progress.text;
    const auto filled = static_cast<std::size_t>(*progress.permille) * width / 1000;
    return "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " + progress.text;
}

std::string painted(bool coloured, std::string_view colour, std::string_view text) {
    if (!coloured) return std::string(text);
    return std::string(colour) + std::string(text) + std::string(plain);
}

}  // namespace

ConsoleOutput::ConsoleOutput()
    : onTerminal_(::isatty(STDOUT_FILENO) != 0),
      coloured_(wantsColours(STDOUT_FILENO)),
      colouredMessages_(wantsColours(STDERR_FILENO)) {}

void ConsoleOutput::line(std::string_view word, std::string_view rest) {
    clearBar();
    const auto colour = word == "error" ? red : bold;
    writeAll(STDOUT_FILENO, painted(coloured_, dim, timeOfDay()) + " " + painted(coloured_, colour, word) +
                                " " + std::string(rest) + "\n");
}

void ConsoleOutput::message(std::string_view text) {
    clearBar();
    writeAll(STDERR_FILENO, painted(colouredMessages_, dim, timeOfDay()) + " " + std::string(text) + "\n");
}

void ConsoleOutput::hint(std::string_view text) {
    if (!onTerminal_) return;
    clearBar();
    writeAll(STDOUT_FILENO, painted(coloured_, dim, text) + "\n");
}

void ConsoleOutput::progress(const AppState::Download& download) {
    const auto& [received, total] = download;
    if (total && *total < worthShowing) return;
    const bool complete = total && received >= *total;
    const auto progress = DownloadProgress::of(download);
    if (onTerminal_) {
        writeAll(STDOUT_FILENO, std::string(backToStart) + bar(progress));
        barShown_ = true;
        if (complete) clearBar();
        return;
    }
    const TimePoint now = steadyNow();
    if (now < nextProgressLine_ && !complete) return;
    nextProgressLine_ = after(now, betweenProgressLines);
    line("install", progress.text);
}

void ConsoleOutput::clearBar() {
    if (barShown_) writeAll(STDOUT_FILENO, backToStart);
    barShown_ = false;
}

}  // namespace tarnik
