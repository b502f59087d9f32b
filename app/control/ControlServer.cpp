#include "app/control/ControlServer.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "app/control/LocalSocket.h"
#include "core/foundation/ThreadName.h"

namespace tarnik {

namespace {

constexpr Seconds acceptPause = Seconds(1);

}  // namespace

std::expected<std::unique_ptr<ControlServer>, std::string> ControlServer::start(
    const std::vector<std::string>& folders, Handlers handlers, ControlLimits limits) {
    auto listener = ControlListener::open(folders);
    if (!listener) return std::unexpected(describe(listener.error()));
    auto wake = Spawner::pipe();
    if (!wake) return std::unexpected(describe(wake.error()));
    std::unique_ptr<ControlServer> server(
        new ControlServer(*std::move(listener), *std::move(wake), std::move(handlers), limits));
    try {
        server->thread_ = std::thread([running = server.get()] {
            setThreadName("tarnik.control");
            running->run();
        });
    } catch (const std::system_error& error) {
        return std::unexpected(std::string("no thread for the control socket: ") + error.what());
    }
    return server;
}

ControlServer::ControlServer(ControlListener listener, Spawner::Pipe wake, Handlers handlers,
                             ControlLimits limits)
    : listener_(std::move(listener)), wake_(std::move(wake)), clients_(std::move(handlers), limits) {}

ControlServer::~ControlServer() {
    if (!thread_.joinable()) return;
    ending_ = true;
    wake();
    thread_.join();
}

void ControlServer::answer(Client client, std::int64_t id, const std::string& result,
                           ControlAnswer::Position position) {
    send({client, id, position, ControlProtocol::printResult(id, result, position)});
}

void ControlServer::refuse(Client client, std::int64_t id, const ControlError& error) {
    send({client, id, ControlAnswer::Position::last, ControlProtocol::printError(id, error)});
}

// An update replaces an earlier one that the thread has not seen yet.
void ControlServer::send(ControlClients::Answer answer) {
    using enum ControlAnswer::Position;
    {
        const MutexLock lock(mutex_);
        const auto replaced = std::ranges::find_if(answers_, [&](const auto& waiting) {
            return waiting.client == answer.client && waiting.id == answer.id && waiting.position == update &&
                   answer.position == update;
        });
        if (replaced != answers_.end()) {
            *replaced = std::move(answer);
            return;
        }
        answers_.push_back(std::move(answer));
        if (answers_.size() > 1) return;  // the first one has woken the thread
    }
    wake();
}

void ControlServer::wake() const {
    const char byte = 0;
    while (::write(wake_.writeEnd.get(), &byte, 1) < 0 && errno == EINTR) {}
}

void ControlServer::run() {
    std::vector<pollfd> entries;
    while (!ending_) {
        entries = {pollfd{wake_.readEnd.get(), POLLIN, 0},
                   pollfd{acceptsAgain_ ? -1 : listener_.descriptor(), POLLIN, 0}};
        clients_.appendEntries(entries);
        if (::poll(entries.data(), static_cast<nfds_t>(entries.size()), millisecondsToNextDue()) < 0)
            continue;  // EINTR
        if (acceptsAgain_ && steadyNow() >= *acceptsAgain_) acceptsAgain_.reset();
        char byte = 0;  // send() writes one for all waiting answers
        if (entries[0].revents != 0) (void)!::read(wake_.readEnd.get(), &byte, 1);
        clients_.serve(takeAnswers(), entries.data() + 2);
        if (entries[1].revents != 0) acceptClient();
    }
    entries.clear();
    clients_.appendEntries(entries);
    clients_.serve(takeAnswers(), entries.data());  // the last answers
}

int ControlServer::millisecondsToNextDue() const {
    auto next = clients_.due();
    if (acceptsAgain_ && (!next || *acceptsAgain_ < *next)) next = acceptsAgain_;
    if (!next) return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*next - steadyNow()).count();
    return static_cast<int>(std::clamp<decltype(wait)>(wait, 0, INT_MAX));
}

std::vector<ControlClients::Answer> ControlServer::takeAnswers() {
    const MutexLock lock(mutex_);
    return std::exchange(answers_, {});
}

void ControlServer::acceptClient() {
    UniqueFd socket = LocalSocket::accept(listener_.descriptor());
    if (socket) return clients_.add(std::move(socket));
    const bool isLasting = errno != EAGAIN && errno != EINTR && errno != ECONNABORTED;
    if (isLasting) acceptsAgain_ = after(steadyNow(), acceptPause);
}

}  // namespace tarnik
