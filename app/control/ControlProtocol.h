#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/foundation/Json.h"

namespace tarnik {

// A request of a client to the running program.
struct ControlRequest {
    enum class Kind { status, watch, connect, confirm, cancel, restart, open, quit };

    // Whether `connect` may replace the account of a machine that has joined one.
    enum class Replace { no, yes };

    std::int64_t id = 0;  // chosen by the client; each answer repeats it
    Kind kind = Kind::status;
    std::string link = {};  // of `connect`
    Replace replace = Replace::no;

    bool operator==(const ControlRequest&) const = default;
};

// The reason why a request was not executed.
struct ControlError {
    std::string code;     // stable: see ControlErrors
    std::string message;  // a sentence for the user

    bool operator==(const ControlError&) const = default;
};

// The codes of ControlError.
namespace ControlErrors {

inline constexpr std::string_view malformed = "malformed";
inline constexpr std::string_view version = "version";
inline constexpr std::string_view unknownRequest = "unknownRequest";
inline constexpr std::string_view tooLong = "tooLong";
inline constexpr std::string_view tooMany = "tooMany";
inline constexpr std::string_view busy = "busy";
inline constexpr std::string_view refused = "refused";
inline constexpr std::string_view joined = "joined";
inline constexpr std::string_view notJoined = "notJoined";
inline constexpr std::string_view cancelled = "cancelled";
inline constexpr std::string_view stopping = "stopping";

}  // namespace ControlErrors

// One answer to a request. A stream has several; each but the last is an update, which a newer one may
// replace before it is sent.
struct ControlAnswer {
    enum class Position { update, last };

    std::int64_t id = 0;
    std::variant<Json, ControlError> content;
    Position position = Position::last;
};

// The lines of the control socket: one JSON object a line, without the line feed. See docs/control.md.
namespace ControlProtocol {

inline constexpr std::int64_t version = 1;
inline constexpr std::size_t maxRequestBytes = 65'536;
inline constexpr std::size_t maxAnswerBytes = 262'144;

std::string print(const ControlRequest& request);

// Returns the error with the id of the request, or with 0 if the request has no valid id.
std::expected<ControlRequest, ControlAnswer> parseRequest(std::string_view line);

// `result` is a JSON object.
std::string printResult(std::int64_t id, std::string_view result, ControlAnswer::Position position);
std::string printError(std::int64_t id, const ControlError& error);

// Returns std::nullopt for anything that is not an answer of this version.
std::optional<ControlAnswer> parseAnswer(std::string_view line);

}  // namespace ControlProtocol

}  // namespace tarnik
