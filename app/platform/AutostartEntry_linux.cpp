#include "app/platform/AutostartEntry.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <utility>

#include <sys/stat.h>

#include "app/platform/AtomicWrite.h"
#include "app/platform/DesktopEntry.h"
#include "app/platform/SearchPath.h"
#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr std::size_t maxEntryBytes = 65536;

// Quotes a path for an Exec line. A backslash is escaped twice: once for the quotes, and once for the value
// of a desktop entry.
std::string quotedForExec(std::string_view path) {
    std::string word = "\"";
    for (const char character : path) {
        if (character == '\\') {
            word += R"(\\\\)";
        } else if (std::string_view("\"`$").contains(character)) {
            word += std::string(R"(\\)") + character;
        } else {
            word += character;
            if (character == '%') word += '%';
        }
    }
    return word + '"';
}

// Escapes the value of a string key.
std::string escapedValue(std::string_view text) {
    std::string value;
    for (const char character : text) value += character == '\\' ? R"(\\)" : std::string(1, character);
    return value;
}

// The entry may outlive the program. TryExec then makes desktops ignore the entry.
std::string entryText(const std::string& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=tarnik\n"
           "Icon=" +
           std::string(TarnikIdentity::bundleIdentifier) +
           "\n"
           "TryExec=" +
           escapedValue(program) +
           "\n"
           "Exec=" +
           quotedForExec(program) + " " + AutostartEntry::argument +
           "\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

// Returns the path of the entry in a folder of preferences.
std::string entryIn(const std::string& preferences) {
    return preferences + "/autostart/" + std::string(TarnikIdentity::bundleIdentifier) + ".desktop";
}

bool entryExists(const std::string& path) {
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0;
}

}  // namespace

std::string AutostartEntry::entryPath(const SystemFolders& folders) {
    return entryIn(folders.preferences);
}

std::string AutostartEntry::markerPath(const SystemFolders& folders) {
    return folders.preferences + "/tarnik/autostart-entry-written";
}

AutostartEntry::AutostartEntry(const SystemFolders& folders, const Environment& environment,
                               std::string program)
    : entry_(entryPath(folders)),
      marker_(markerPath(folders)),
      desktops_(splitVariable(environment, "XDG_CURRENT_DESKTOP")),
      programFolders_(splitVariable(environment, "PATH")),
      program_(std::move(program)) {
    auto systemFolders = splitVariable(environment, "XDG_CONFIG_DIRS");
    if (systemFolders.empty()) systemFolders = {"/etc/xdg"};
    for (const auto& folder : systemFolders)
        if (folder.starts_with('/')) systemEntries_.push_back(entryIn(standardize(folder)));
}

// Returns the text of the entry that counts. Returns std::nullopt if no entry exists or the first one can't
// be read. Links are followed here, as the session follows them.
std::optional<std::string> AutostartEntry::current() const {
    if (entryExists(entry_)) return readFile(entry_, maxEntryBytes);
    const auto found = std::ranges::find_if(systemEntries_, entryExists);
    return found != systemEntries_.end() ? readFile(*found, maxEntryBytes) : std::nullopt;
}

bool AutostartEntry::isStarted(const std::string& text) const {
    const DesktopEntry entry(text);
    if (!entry.isProgram() || !entry.disablingKeys(desktops_).empty()) return false;
    const auto needed = entry.tryExec();
    if (!needed) return true;
    if (needed->contains('/')) return needed->starts_with('/') && isExecutableFile(*needed);
    return findProgram(*needed, programFolders_).has_value();
}

LoginItemState AutostartEntry::state() const {
    const auto text = current();
    return text && isStarted(*text) ? LoginItemState::on : LoginItemState::off;
}

bool AutostartEntry::write() const {
    // An entry of the system that is off was turned off by the administrator.
    if (entryExists(entry_) || entryExists(marker_) || std::ranges::any_of(systemEntries_, entryExists))
        return false;
    return replace(entryText(program_)).has_value();
}

std::expected<void, SystemError> AutostartEntry::choose(LoginItemChoice choice) const {
    const bool isOn = state() == LoginItemState::on;
    switch (choice) {
        case LoginItemChoice::off: return isOn ? turnOff() : std::expected<void, SystemError>();
        case LoginItemChoice::on: return isOn ? std::expected<void, SystemError>() : turnOn();
    }
    return {};
}

// A user who edited the entry keeps its command line. Only the keys that turn the entry off are removed. An
// entry that starts nothing even without these keys is replaced, because otherwise the choice had no effect.
std::expected<void, SystemError> AutostartEntry::turnOn() const {
    if (const auto text = readFile(entry_, maxEntryBytes)) {
        DesktopEntry entry(*text);
        for (const auto& key : entry.disablingKeys(desktops_)) entry.remove(key);
        if (isStarted(entry.text())) return replace(entry.text());
    }
    return replace(entryText(program_));
}

// The entry is hidden instead of deleted, because an entry of the system would replace a deleted one.
std::expected<void, SystemError> AutostartEntry::turnOff() const {
    DesktopEntry entry(current().value_or(""));
    entry.hide();
    return replace(entry.text());
}

std::expected<void, SystemError> AutostartEntry::replace(const std::string& text) const {
    const bool isValid = program_.starts_with('/') && program_.find_first_of("\n\r\t=") == std::string::npos;
    if (!isValid) return std::unexpected(SystemError{.call = "use " + program_, .code = EINVAL});
    // The entry is written before the marker. After a crash the entry may be written again, but isn't lost.
    if (auto done = writeFileAtomically(entry_, text); !done) return done;
    return writeFileAtomically(marker_, "");
}

LoginItemService AutostartEntry::operations() const {
    return {.state = [entry = *this] { return entry.state(); },
            .registerItem = [entry = *this] { return entry.write(); },
            .choose = [entry = *this](LoginItemChoice choice) -> std::expected<void, std::string> {
                const auto done = entry.choose(choice);
                if (!done) return std::unexpected(describe(done.error()));
                return {};
            },
            .openSettings = {}};
}

}  // namespace tarnik
