#include <array>
#include <cerrno>
#include <expected>
#include <string>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "app/commands/Commands.h"
#include "app/commands/RunningProgram.h"
#include "app/console/PairingTranscript.h"
#include "app/control/PairingProgress.h"
#include "app/options/StandardOptions.h"
#include "app/texts/RunningTexts.h"
#include "app/texts/WindowTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/pairing/JoinLink.h"

namespace tarnik {
namespace {

using Failure = ControlClient::Failure;

// Reads to the end of the line or of the input. Returns std::nullopt at the end of the input.
std::optional<std::string> readLine(int fd) {
    std::string line;
    char byte = 0;
    while (line.size() <= JoinLink::maxTextBytes) {
        const ssize_t count = ::read(fd, &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return line.empty() ? std::nullopt : std::optional(line);
        if (byte == '\n') return line;
        line += byte;
    }
    return line;
}

// Returns the link of the command line or of standard input, so that it need not be visible to other users.
std::string linkOf(const CommandOptions& options, CommandOutput& output) {
    if (!options.arguments().empty()) return options.arguments().front();
    const bool isAsking = output.onTerminal() && ::isatty(STDIN_FILENO) != 0;
    if (isAsking) output.write(RunningTexts::pasteLink);
    const auto line = readLine(STDIN_FILENO);
    if (isAsking && !line) output.line("");
    return std::string(trimWhitespace(line.value_or("")));
}

// The terminal on which the user can be asked, also if standard input is a pipe.
UniqueFd openTerminal() {
    return UniqueFd(::open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY));
}

PairingPhase phaseOf(const PairingProgress& progress) {
    if (progress.phase == PairingWord::waitingForYes) return PairingPhases::WaitingForYes{};
    if (progress.phase == PairingWord::connecting) return PairingPhases::Connecting{};
    if (progress.phase == PairingWord::connected) return PairingPhases::Connected{};
    if (progress.phase == PairingWord::ended) return PairingPhases::Ended{ExitStatus::exited(0)};
    return PairingPhases::Starting{};
}

// Follows one pairing of the running program: shows the helper's output, asks the user, and confirms.
class Pairing {
public:
    // `terminal` is empty if the user isn't asked.
    Pairing(ControlClient& client, const CommandDeps& deps, UniqueFd terminal)
        : client_(client), deps_(deps), terminal_(std::move(terminal)) {}

    ExitCode run(const std::string& link, ControlRequest::Replace replace) {
        const auto sent =
            client_.send({.kind = ControlRequest::Kind::connect, .link = link, .replace = replace});
        if (!sent) return RunningProgram::report(deps_, sent.error());
        while (true) {
            if (isAsking_ && client_.waitForInput(terminal_.get())) {
                if (!readLine(terminal_.get())) {
                    deps_.output.error(RunningTexts::notConfirmed);
                    return ExitCode::failed;  // closing the connection cancels the pairing
                }
                if (const auto code = confirm()) return *code;
                continue;
            }
            const auto answer = client_.receive(std::nullopt);
            if (!answer) return RunningProgram::report(deps_, answer.error());
            // The answer to a confirmation, which may be too late because the window was quicker. An error
            // about the connection has the id 0.
            if (answer->id != *sent && answer->id != 0) continue;
            if (const auto* error = std::get_if<ControlError>(&answer->content))
                return RunningProgram::report(deps_, *error);
            if (const auto code = show(std::get<Json>(answer->content), answer->position)) return *code;
        }
    }

private:
    std::optional<ExitCode> confirm() {
        isAsking_ = false;
        const auto sent = client_.send({.kind = ControlRequest::Kind::confirm});
        if (!sent) return RunningProgram::report(deps_, sent.error());
        return std::nullopt;
    }

    // Returns the exit code if the pairing is over.
    std::optional<ExitCode> show(const Json& result, ControlAnswer::Position position) {
        const auto progress = PairingProgress::parse(result);
        if (!progress) return RunningProgram::report(deps_, Failure::malformed);
        if (progress->phase == PairingWord::checking) {
            deps_.output.note(RunningTexts::checkingLink);
            return std::nullopt;
        }
        const auto news = transcript_.update({.sessionID = {},
                                              .phase = phaseOf(*progress),
                                              .text = progress->text,
                                              .textStart = progress->textStart});
        for (const auto& line : news.lines) deps_.output.line(line);
        const bool isNewPhase = news.phase.has_value();
        if (position == ControlAnswer::Position::last) return end(*progress);
        if (isNewPhase) isAsking_ = false;
        if (isNewPhase && progress->phase == PairingWord::connecting)
            deps_.output.note(RunningTexts::connecting);
        if (!isNewPhase || progress->phase != PairingWord::waitingForYes) return std::nullopt;
        if (!terminal_) return confirm();
        isAsking_ = true;
        ::tcflush(terminal_.get(), TCIFLUSH);  // drops an Enter that was typed before the question
        deps_.output.note(RunningTexts::pressEnter);
        return std::nullopt;
    }

    ExitCode end(const PairingProgress& progress) const {
        if (progress.phase == PairingWord::connected) {
            deps_.output.line(WindowTexts::pairingConnected);
            return ExitCode::done;
        }
        deps_.output.error(WindowTexts::pairingEnded);
        return ExitCode::notConnected;
    }

    ControlClient& client_;
    const CommandDeps& deps_;
    const UniqueFd terminal_;
    PairingTranscript transcript_;
    bool isAsking_ = false;
};

}  // namespace

ExitCode runConnect(const CommandOptions& options, const CommandDeps& deps) {
    if (const auto found = RunningProgram::find(deps); !found)
        return RunningProgram::report(deps, found.error());
    UniqueFd terminal;
    if (!options.has(StandardOptions::yes.name)) {
        terminal = openTerminal();
        if (!terminal) {
            deps.output.error(RunningTexts::cantAsk);
            return ExitCode::wrongUse;
        }
    }
    const auto link = linkOf(options, deps.output);
    if (link.empty()) {
        deps.output.error(RunningTexts::noLink);
        return ExitCode::wrongUse;
    }
    // A new connection, because the program closes one that is silent while the user types.
    auto client = RunningProgram::find(deps);
    if (!client) return RunningProgram::report(deps, client.error());
    const auto replace = options.has("replace") ? ControlRequest::Replace::yes : ControlRequest::Replace::no;
    return Pairing(*client, deps, std::move(terminal)).run(link, replace);
}

}  // namespace tarnik
