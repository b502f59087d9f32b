#include "app/console/Console.h"

#include <utility>

#include <unistd.h>

#include "app/console/PlainText.h"

namespace tarnik {
namespace {

constexpr const char* help =
    "a link (https://...) pairs this computer with it; Enter or confirm answers the pairing prompt; "
    "cancel ends the pairing; status; quit";

// The phase of a pairing run that is under way or has connected and goes on in the node's place.
std::string pairingWord(const PairingSession* session, std::optional<pid_t> pid) {
    if (session == nullptr || pid) return "none";
    const auto phase = session->phase();
    return std::holds_alternative<PairingPhases::Ended>(phase) ? "none" : describe(phase);
}

std::string statusLine(const NodeState& state, std::optional<pid_t> pid, const PairingSession* session,
                       int restarts, const std::optional<CuaDriverEndpoint>& endpoint,
                       const std::string& home) {
    return "state=" + describe(state) + " pid=" + (pid ? std::to_string(*pid) : "none") +
           " pairing=" + pairingWord(session, pid) + " restarts=" + std::to_string(restarts) +
           " endpoint=" + (endpoint ? endpoint->socketPath : "none") + " home=" + home;
}

}  // namespace

Console::Console(std::shared_ptr<ConsoleLoop> loop, NodeHome home, Environment inherited,
                 NodeSupervisorDeps deps)
    : loop_(std::move(loop)),
      homePath_(home.path),
      work_(SerialQueue::withThread("tarnik.console")),
      supervisor_(
          std::move(home), std::move(inherited), std::move(deps),
          [this](const std::string& text) { loop_->post([this, text] { output_.message(text); }); },
          [this](const NodeState& state) { loop_->post([this, state] { showState(state); }); }) {}

Console::~Console() {
    work_->close();
}

void Console::start() {
    work_->post([this] { supervisor_.start(); });
}

void Console::onLine(const std::string& line) {
    if (line.empty()) return confirm(false);
    if (line == "confirm") return confirm(true);
    if (line == "cancel") return cancel();
    if (line == "status") return showStatus();
    if (line == "quit") return quit();
    if (line == "help") return output_.line("help", help);
    if (line.starts_with("https://") || line.starts_with("http://")) return pair(line);
    showError("unknown command " + shown(line) + " (help lists them)");
}

void Console::onLineTooLong() {
    showError("that line is too long");
}

void Console::onSignal(int signal) {
    if (quitting_) ::_exit(128 + signal);
    quit();
}

void Console::quit() {
    if (std::exchange(quitting_, true)) return;
    loop_->closeInput();
    work_->post([this] {
        supervisor_.stop();
        loop_->quit();
    });
}

void Console::pair(const std::string& link) {
    work_->post([this, link] {
        auto transcript = std::make_shared<PairingTranscript>();
        auto show = [this, weak = std::weak_ptr(loop_),
                     transcript](const PairingSession::Snapshot& snapshot) {
            const auto loop = weak.lock();
            if (loop) loop->post([this, transcript, snapshot] { showUpdate(snapshot, *transcript); });
        };
        auto session = supervisor_.beginPairing(link, std::move(show));
        if (session) {
            session_ = *session;
        } else {
            loop_->post([this, text = describe(session.error())] { showError(text); });
        }
    });
}

// An empty line that answers nothing is only somebody leaning on the Enter key.
void Console::confirm(bool askedInWords) {
    work_->post([this, askedInWords] {
        if (session_ && session_->confirm()) return;
        if (askedInWords) loop_->post([this] { showError("there is nothing to confirm"); });
    });
}

void Console::cancel() {
    work_->post([this] {
        if (session_ && session_->isInProgress()) return session_->cancel();
        loop_->post([this] { showError("no pairing is in progress"); });
    });
}

void Console::showStatus() {
    work_->post([this] {
        const auto state = supervisor_.currentState();
        const auto pid = supervisor_.runningPID();
        const auto endpoint = supervisor_.currentEndpoint();
        loop_->post([this, state, pid, endpoint, session = session_] {
            output_.line("status", statusLine(state, pid, session.get(), restarts_, endpoint, homePath_));
        });
    });
}

void Console::showUpdate(const PairingSession::Snapshot& snapshot, PairingTranscript& transcript) {
    const auto news = transcript.update(snapshot);
    for (const auto& line : news.lines) output_.line("terminal", line);
    if (!news.phase) return;
    output_.line("pairing", describe(*news.phase));
    if (std::holds_alternative<PairingPhases::WaitingForYes>(*news.phase)) {
        output_.hint("Press Enter here to connect, or type cancel.");
    }
}

void Console::showState(const NodeState& state) {
    if (std::holds_alternative<NodeStates::Restarting>(state)) ++restarts_;
    output_.line("state", describe(state));
    if (std::holds_alternative<NodeStates::WaitingForLink>(state))
        output_.hint("Paste the link from your chat here.");
}

void Console::showError(const std::string& text) {
    output_.line("error", text);
}

}  // namespace tarnik
