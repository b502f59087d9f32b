#include "app/commands/CommandOutput.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

#include "core/foundation/Files.h"

namespace tarnik {
namespace {

std::string_view escapeSequence(CommandOutput::Style style) {
    switch (style) {
        case CommandOutput::Style::plain: return "";
        case CommandOutput::Style::bold: return "\x1b[1m";
        case CommandOutput::Style::dim: return "\x1b[2m";
        case CommandOutput::Style::red: return "\x1b[31m";
        case CommandOutput::Style::green: return "\x1b[32m";
        case CommandOutput::Style::yellow: return "\x1b[33m";
    }
    return "";
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// SIGPIPE is ignored from the start, so that sockets and children can be written to.
void endByPipeSignal() {
    std::signal(SIGPIPE, SIG_DFL);
    ::raise(SIGPIPE);
}

}  // namespace

bool wantsColours(int fd) {
    const char* terminal = std::getenv("TERM");
    const bool isDumb = terminal != nullptr && std::string_view(terminal) == "dumb";
    return ::isatty(fd) != 0 && !isDumb && !isSet("NO_COLOR");
}

CommandOutput::CommandOutput() : CommandOutput(STDOUT_FILENO, STDERR_FILENO) {}

CommandOutput::CommandOutput(int out, int err)
    : out_(out), err_(err), onTerminal_(::isatty(out) != 0), coloured_(wantsColours(out)) {}

std::size_t CommandOutput::width() const {
    constexpr std::size_t usualWidth = 80;
    if (!onTerminal_) return 0;
    winsize size{};
    return ::ioctl(out_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usualWidth;
}

void CommandOutput::write(std::string_view text) {
    if (writeAll(out_, text) == text.size()) return;
    if (errno == EPIPE) endByPipeSignal();
    failed_ = true;
}

void CommandOutput::line(std::string_view text) {
    write(std::string(text) + "\n");
}

void CommandOutput::error(std::string_view message) {
    writeAll(err_, "tarnik: " + std::string(message) + "\n");
}

void CommandOutput::note(std::string_view message) {
    writeAll(err_, std::string(message) + "\n");
}

std::string CommandOutput::styled(Style style, std::string_view text) const {
    if (!coloured_ || style == Style::plain) return std::string(text);
    return std::string(escapeSequence(style)) + std::string(text) + "\x1b[0m";
}

}  // namespace tarnik
