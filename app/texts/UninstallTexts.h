#pragma once

#include <string>

// The texts of `tarnik uninstall`.
namespace tarnik::UninstallTexts {

using Text = const char*;

// Why something is removed.
inline constexpr Text home = "the helper, with its connection to your account";
inline constexpr Text emptyFolder = "the folder around it, which is empty then";
inline constexpr Text helperLog = "the helper's log";
inline constexpr Text journal = "tarnik's log";
inline constexpr Text stateFolder = "the folder of the logs";
inline constexpr Text socket = "the socket for commands";
inline constexpr Text relocationLog = "the record of where tarnik was opened";
inline constexpr Text link = "a link that was passed on to another copy";
inline constexpr Text driverFolder = "the sockets of the desktop driver";
inline constexpr Text owner = "a note about the program that uses the helper";
inline constexpr Text supportFolder = "the folder of tarnik's own files";
inline constexpr Text autostart = "the login item, which starts tarnik when you log in";
inline constexpr Text autostartNote = "the note that the login item was written";
inline constexpr Text preferences = "tarnik's settings";
inline constexpr Text preferencesFolder = "the folder of the settings";

inline constexpr Text nothing = "Nothing of tarnik was found.";
inline constexpr Text willRemove = "tarnik will remove:";
inline constexpr Text wouldRemove = "tarnik would remove:";
inline constexpr Text leftAlone = "tarnik leaves alone:";
inline constexpr Text dryRunEnd = "Nothing was changed. Run it without --dry-run to remove these.";
inline constexpr Text runsNow = "tarnik is running. It is stopped first.";
inline constexpr Text stopping = "Stopping tarnik…";
inline constexpr Text question = "Remove all of this? Type yes: ";
inline constexpr Text needsYes = "uninstall asks before it removes anything; without a terminal, add --yes";
inline constexpr Text stillRunning =
    "the running tarnik didn't end; quit it, then run tarnik uninstall again";
inline constexpr Text ended = "Nothing more was removed. Run tarnik uninstall again to continue.";
inline constexpr Text done = "Nothing else was removed. The program itself is still installed.";
inline constexpr Text nothingRemoved = "Nothing was removed.";
inline constexpr Text mountsUnknown = "the mounted file systems can't be listed";
inline constexpr Text preferencesKept = "the settings couldn't be removed";

inline std::string notOurs(const std::string& path) {
    return path + " isn't from tarnik.";
}

inline std::string sharedFiles(const std::string& otherHome) {
    return "The logs, the settings and the login item belong to the helper in " + otherHome +
           ". To remove that one and them, leave out --node-home.";
}

inline std::string notRead(const std::string& path) {
    return path + " can't be read";
}

inline std::string mounted(const std::string& path) {
    return "a file system is mounted at " + path + "; unmount it first";
}

inline std::string notAFile(const std::string& path) {
    return path + " is a symbolic link, or belongs to another user.";
}

inline std::string notRemoved(const std::string& path) {
    return path + " couldn't be removed";
}

inline std::string removed(const std::string& path) {
    return "removed " + path;
}

inline std::string homeInUse(const std::string& path) {
    return "another tarnik uses " + path + "; quit it first";
}

inline std::string otherProgram(int process, const std::string& note) {
    return "another tarnik (process " + std::to_string(process) +
           ") uses the same logs and settings; quit it first. If that process isn't tarnik, delete " + note;
}

}  // namespace tarnik::UninstallTexts
