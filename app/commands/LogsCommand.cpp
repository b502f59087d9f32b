#include <algorithm>
#include <string_view>

#include <unistd.h>

#include "app/commands/Commands.h"
#include "app/commands/EventLine.h"
#include "app/journal/Journal.h"
#include "app/texts/LogTexts.h"
#include "core/foundation/FileWatch.h"
#include "core/foundation/LogFollower.h"
#include "core/foundation/LogTail.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/Utf8.h"
#include "core/pairing/TerminalText.h"

namespace tarnik {
namespace {

constexpr std::size_t defaultCount = 50;
constexpr std::size_t firstTail = 0x10000;      // bytes
constexpr std::size_t longestTail = 0x1000000;  // bytes; more than the helper's two files have
constexpr std::size_t longestLine = 0x10000;    // bytes; a longer line is split

enum class LogKind { journal, helper };

// Prints lines of one log. Escape sequences, control characters and marks of writing direction are removed,
// because they could change the user's terminal. Lines of the journal are printed as `tarnik history` prints
// them.
class LinePrinter {
public:
    LinePrinter(LogKind kind, CommandOutput& output) : kind_(kind), output_(output) {}

    // Prints the whole lines, and keeps the rest for the next call.
    void print(std::string_view text) {
        std::string lines;
        for (; !text.empty(); text.remove_prefix(1)) {
            const auto piece = text.substr(0, text.find('\n'));
            line_ += piece.substr(0, longestLine - std::min(longestLine, line_.size()));
            text.remove_prefix(piece.size());
            if (text.empty()) break;
            lines += readable() + "\n";
            line_.clear();
        }
        output_.write(lines);
    }

    // Prints a last line without a line feed.
    void finish() {
        if (!line_.empty()) print("\n");
    }

private:
    std::string readable() const {
        const auto event = kind_ == LogKind::journal ? JournalEvent::parse(line_) : std::nullopt;
        if (event) return eventLine(*event, output_);
        return sanitizedLine(TerminalText::clean(decodeLossy(line_)), longestLine);
    }

    const LogKind kind_;
    CommandOutput& output_;
    std::string line_;  // not complete yet
};

void follow(LogFollower& follower, const std::string& path, LinePrinter& printer) {
    FileWatch watch(path);
    while (watch.wait(follower.file(), STDOUT_FILENO) == FileWatch::Event::mayHaveChanged) {
        for (auto text = follower.read(); !text.empty(); text = follower.read()) printer.print(text);
    }
}

// Reads more only if the last lines are long.
std::string tailLines(const LogFollower& follower, std::size_t count) {
    for (std::size_t bytes = firstTail;; bytes *= 8) {
        const std::string tail = follower.tail(bytes);
        const auto lines = static_cast<std::size_t>(std::ranges::count(tail, '\n'));
        if (lines >= count || bytes >= longestTail) return std::string(lastLines(tail, count));
    }
}

}  // namespace

// SIGINT ends the command as it ends other programs: nothing has to be cleaned up.
ExitCode runLogs(const CommandOptions& options, const CommandDeps& deps) {
    const bool isJournal = !options.arguments().empty() && options.arguments().front() == "tarnik";
    const auto kind = isJournal ? LogKind::journal : LogKind::helper;
    const auto& folders = deps.run.place.folders;
    const auto path = isJournal ? Journal::pathIn(folders) : deps.run.host().nodeLog;
    const auto count = static_cast<std::size_t>(options.number("lines").value_or(defaultCount));
    LinePrinter printer(kind, deps.output);
    LogFollower follower(path);
    const auto tail = tailLines(follower, count);
    printer.print(tail);
    if (options.has("follow")) {
        follow(follower, path, printer);
        return ExitCode::done;
    }
    printer.finish();
    if (tail.empty()) deps.output.note(LogTexts::emptyLog(path));
    return ExitCode::done;
}

}  // namespace tarnik
