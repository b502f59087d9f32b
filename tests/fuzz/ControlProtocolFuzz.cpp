// For any line: a request survives printing and parsing, every refusal is a line that a client can read, and
// a status that can be read survives its own JSON and fits on a screen.

#include <string>

#include "app/control/ControlProtocol.h"
#include "app/control/PairingProgress.h"
#include "app/control/Status.h"
#include "app/control/StatusText.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

void checkLine(const std::string& line) {
    require(!line.contains('\n'));
    require(line.size() > ControlProtocol::maxAnswerBytes || ControlProtocol::parseAnswer(line).has_value());
}

void checkStatus(const Json& json) {
    const auto status = Status::of(json);
    if (!status) return;
    const auto again = Json::parse(status->json(), 1 << 24);
    require(again && Status::of(*again) == status);
    for (const auto& row : statusRows(*status, WallTime())) {
        for (const auto& line : row.lines) require(line.find_first_of("\n\x1b") == line.npos);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line(fuzz::textOf(data, size));
    if (const auto request = ControlProtocol::parseRequest(line)) {
        require(line.size() <= ControlProtocol::maxRequestBytes);
        const auto printed = ControlProtocol::print(*request);
        auto again = ControlProtocol::parseRequest(printed);
        const bool hasLink = request->kind == ControlRequest::Kind::connect;
        require(again && again->id == request->id && again->kind == request->kind);
        require(!hasLink || *again == *request);
    } else {
        const auto& refused = request.error();
        checkLine(ControlProtocol::printError(refused.id, std::get<ControlError>(refused.content)));
    }
    if (const auto answer = ControlProtocol::parseAnswer(line)) {
        if (const auto* result = std::get_if<Json>(&answer->content)) {
            checkLine(ControlProtocol::printResult(answer->id, result->text(), answer->position));
            if (const auto progress = PairingProgress::parse(*result))
                require(Json::parse(progress->json(), 1 << 24).has_value());
            checkStatus(*result);
        }
    }
    if (const auto json = Json::parse(line, ControlProtocol::maxAnswerBytes)) checkStatus(*json);
    return 0;
}
