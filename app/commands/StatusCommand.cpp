#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>

#include "app/commands/CommandHome.h"
#include "app/commands/Commands.h"
#include "app/commands/RunningProgram.h"
#include "app/commands/TextWrap.h"
#include "app/control/StatusOnDisk.h"
#include "app/control/StatusText.h"
#include "app/options/StandardOptions.h"

namespace tarnik {
namespace {

constexpr std::size_t labelWidth = 16;
constexpr const char* clearScreen = "\x1b[H\x1b[2J";
constexpr Seconds redrawInterval = Seconds(1);  // the ages on the screen grow

WallTime now() {
    return std::chrono::system_clock::now();
}

CommandOutput::Style styleOf(const Status& status) {
    if (status.isConnected()) return CommandOutput::Style::green;
    return status.connection.state == ConnectionState::problem ? CommandOutput::Style::red
                                                               : CommandOutput::Style::yellow;
}

// Returns the lines of the row, divided at the width of the terminal.
std::vector<std::string> linesOf(const StatusRow& row, std::size_t terminalWidth) {
    const std::size_t indent = row.label.empty() ? 0 : labelWidth;
    const std::size_t width = terminalWidth > 2 * indent ? terminalWidth - indent : 0;
    std::vector<std::string> all;
    for (const auto& line : row.lines) {
        auto parts = wrappedLines(line, width);
        std::ranges::move(parts, std::back_inserter(all));
    }
    return all;
}

std::string screen(const Status& status, const CommandOutput& output) {
    std::string text;
    for (const auto& row : statusRows(status, now())) {
        // The first line of the first row is the main sentence.
        const auto mainLines = row.label.empty() ? wrappedLines(row.lines.front(), output.width()).size() : 0;
        std::size_t count = 0;
        for (const auto& line : linesOf(row, output.width())) {
            std::string label = count == 0 ? row.label : "";
            if (!row.label.empty()) label.resize(labelWidth, ' ');
            text += output.styled(CommandOutput::Style::dim, label);
            text += count++ < mainLines ? output.styled(styleOf(status), line) : line;
            text += '\n';
        }
        if (row.label.empty()) text += '\n';
    }
    return text;
}

// Shows one status after another in the form that the user chose.
class Display {
public:
    Display(const CommandOptions& options, CommandOutput& output)
        : output_(output), asJson_(options.has(StandardOptions::json.name)), watches_(options.has("watch")) {}

    // Returns false if the answer isn't a status.
    bool show(const Json& json) {
        auto status = Status::of(json);
        if (!status) return false;
        code_ = status->isConnected() ? ExitCode::done : ExitCode::notConnected;
        shown_ = std::move(status);
        if (asJson_) {
            output_.line(json.text());
        } else {
            draw();
        }
        return true;
    }

    void showOnDisk(const Status& status) {
        code_ = ExitCode::notRunning;
        if (asJson_) return output_.line(status.json());
        shown_ = status;
        draw();
    }

    // Draws the last status again, with the present ages. Only on a terminal.
    void redraw() {
        if (redraws() && shown_) draw();
    }

    bool redraws() const { return watches_ && !asJson_ && output_.onTerminal(); }
    ExitCode code() const { return code_; }

private:
    void draw() {
        output_.write((redraws() ? clearScreen : "") + screen(*shown_, output_) +
                      (watches_ && !redraws() ? "\n" : ""));
    }

    CommandOutput& output_;
    const bool asJson_;
    const bool watches_;
    std::optional<Status> shown_;
    ExitCode code_ = ExitCode::failed;
};

Status onDisk(const CommandOptions& options, const CommandDeps& deps) {
    return statusOnDisk(homeOf(options, deps.run), deps.run.place.folders, now(), deps.run.host().policy);
}

// Shows each new status until the program ends.
ExitCode watch(ControlClient& client, Display& display, const CommandOptions& options,
               const CommandDeps& deps) {
    using Failure = ControlClient::Failure;
    if (const auto sent = client.send({.kind = ControlRequest::Kind::watch}); !sent)
        return RunningProgram::report(deps, sent.error());
    while (!deps.output.hasFailed()) {
        const auto answer = client.receive(display.redraws() ? std::optional(redrawInterval) : std::nullopt);
        if (!answer && answer.error() == Failure::timedOut) {
            display.redraw();
            continue;
        }
        if (!answer && answer.error() == Failure::ended) break;
        if (!answer) return RunningProgram::report(deps, answer.error());
        if (const auto* error = std::get_if<ControlError>(&answer->content))
            return RunningProgram::report(deps, *error);
        if (!display.show(std::get<Json>(answer->content)))
            return RunningProgram::report(deps, Failure::malformed);
    }
    display.showOnDisk(onDisk(options, deps));
    return display.code();
}

}  // namespace

ExitCode runStatus(const CommandOptions& options, const CommandDeps& deps) {
    Display display(options, deps.output);
    auto client = RunningProgram::find(deps);
    if (!client && client.error() != ControlClient::Failure::notRunning)
        return RunningProgram::report(deps, client.error());
    if (!client) {
        display.showOnDisk(onDisk(options, deps));
        return display.code();
    }
    if (options.has("watch")) return watch(*client, display, options, deps);
    const auto answer = client->ask({.kind = ControlRequest::Kind::status});
    if (!answer) return RunningProgram::report(deps, answer.error());
    if (const auto* error = std::get_if<ControlError>(&answer->content))
        return RunningProgram::report(deps, *error);
    if (!display.show(std::get<Json>(answer->content)))
        return RunningProgram::report(deps, ControlClient::Failure::malformed);
    return display.code();
}

}  // namespace tarnik
