#include "app/control/ControlClients.h"

#include <tuple>
#include <utility>

#include "app/control/LocalSocket.h"
#include "app/texts/ControlTexts.h"

namespace tarnik {

ControlClients::ControlClients(Handlers handlers, ControlLimits limits)
    : handlers_(std::move(handlers)), limits_(limits) {}

void ControlClients::add(UniqueFd socket) {
    if (!LocalSocket::isSameUser(socket.get())) return;
    if (clients_.size() < maxClients) {
        clients_.emplace(++lastClient_, Connected{ControlConnection(std::move(socket), limits_)});
        return;
    }
    // A new socket has room for one line.
    LocalSocket::send(socket.get(),
                      ControlProtocol::printError(0, {std::string(ControlErrors::tooMany),
                                                      std::string(ControlTexts::tooManyClients)}) +
                          "\n");
}

void ControlClients::appendEntries(std::vector<pollfd>& entries) const {
    for (const auto& [number, client] : clients_) {
        const short events = client.connection.events();
        // Without events, poll() would report a hang-up again and again.
        entries.push_back({events != 0 ? client.connection.descriptor() : -1, events, 0});
    }
}

std::optional<TimePoint> ControlClients::due() const {
    std::optional<TimePoint> next;
    for (const auto& [number, client] : clients_) {
        const auto due = client.connection.due();
        if (due && (!next || *due < *next)) next = due;
    }
    return next;
}

void ControlClients::serve(const std::vector<Answer>& answers, const pollfd* ready) {
    for (const auto& answer : answers) {
        const auto found = clients_.find(answer.client);
        if (found != clients_.end()) found->second.connection.add(answer.line, answer.id, answer.position);
    }
    for (auto& [number, client] : clients_) {
        if (((ready++)->revents & ~POLLOUT) != 0) client.connection.read();
        client.connection.write();
        execute(number, client);
    }
    std::erase_if(clients_, [&, now = steadyNow()](const auto& entry) {
        if (!entry.second.connection.isOver(now)) return false;
        if (entry.second.hasAsked) handlers_.onClosed(entry.first);
        return true;
    });
}

void ControlClients::execute(Client number, Connected& client) const {
    while (const auto line = client.connection.nextLine()) {
        const auto request = ControlProtocol::parseRequest(*line);
        if (request) {
            if (!client.connection.beginRequest(request->id)) return;
            client.hasAsked = true;
            return handlers_.onRequest(number, *request);
        }
        const auto& refused = request.error();
        client.connection.add(
            ControlProtocol::printError(refused.id, std::get<ControlError>(refused.content)), refused.id,
            ControlAnswer::Position::last);
        client.connection.write();
    }
}

}  // namespace tarnik
