#pragma once

#include <string_view>

// The words of the states in the JSON of `status`. They never change between versions; see docs/control.md.
namespace tarnik {

namespace ConnectionState {

inline constexpr std::string_view connected = "connected";
inline constexpr std::string_view reconnecting = "reconnecting";
inline constexpr std::string_view pairing = "pairing";
inline constexpr std::string_view offer = "offer";  // a link for another account waits for an answer
inline constexpr std::string_view link = "link";    // waits for a link
inline constexpr std::string_view installing = "installing";
inline constexpr std::string_view problem = "problem";
inline constexpr std::string_view stopping = "stopping";
inline constexpr std::string_view notRunning = "notRunning";

}  // namespace ConnectionState

namespace HelperState {

inline constexpr std::string_view running = "running";
inline constexpr std::string_view restarting = "restarting";
inline constexpr std::string_view pairing = "pairing";
inline constexpr std::string_view waitingForLink = "waitingForLink";
inline constexpr std::string_view notInstalled = "notInstalled";
inline constexpr std::string_view stopped = "stopped";

}  // namespace HelperState

namespace DriverState {

inline constexpr std::string_view ready = "ready";
inline constexpr std::string_view starting = "starting";
inline constexpr std::string_view restarting = "restarting";
inline constexpr std::string_view off = "off";  // a switch is off
inline constexpr std::string_view stopped = "stopped";
inline constexpr std::string_view absent = "absent";  // this build has no driver

}  // namespace DriverState

namespace SwitchState {

inline constexpr std::string_view on = "on";
inline constexpr std::string_view off = "off";
inline constexpr std::string_view stale = "stale";  // off, although the settings may show it on

}  // namespace SwitchState

namespace PolicyState {

inline constexpr std::string_view inForce = "inForce";
inline constexpr std::string_view ignored = "ignored";  // all files
inline constexpr std::string_view damaged = "damaged";  // so the settings aren't used

}  // namespace PolicyState

namespace UpdateState {

inline constexpr std::string_view unavailable = "unavailable";  // the system installs updates
inline constexpr std::string_view none = "none";
inline constexpr std::string_view waiting = "waiting";

}  // namespace UpdateState

namespace InstallState {

inline constexpr std::string_view running = "running";
inline constexpr std::string_view failed = "failed";
inline constexpr std::string_view done = "done";
inline constexpr std::string_view missing = "missing";

}  // namespace InstallState

}  // namespace tarnik
