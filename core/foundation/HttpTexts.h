#pragma once

#include <string_view>

// The sentences of describe(HttpError), which are shown to the user.
namespace tarnik::HttpTexts {

using Text = std::string_view;

inline constexpr Text emptyAnswer = "The server sent an empty answer.";
inline constexpr Text badStatus = "The server answered with status {status}.";
inline constexpr Text tooLarge = "The server sent more than is allowed.";
inline constexpr Text cutShort = "The connection ended before everything had arrived.";
inline constexpr Text stalled = "The server didn't answer in time, or sent too slowly.";
inline constexpr Text notSaved = "The download couldn't be saved ({reason}).";
inline constexpr Text failed = "The connection failed ({reason}).";
inline constexpr Text failedThroughProxy = "The connection through the proxy {proxy} failed ({reason}).";
inline constexpr Text proxyLogin = "The proxy {proxy} requires a name and a password.";

}  // namespace tarnik::HttpTexts
