#include "app/platform/AutostartEntry.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>

#include <sys/stat.h>

#include "app/platform/AtomicWrite.h"
#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr std::size_t maxEntryBytes = 65536;

// Returns the keys of the group [Desktop Entry], or an empty map if the group is absent.
std::map<std::string, std::string> desktopEntry(std::string_view text) {
    std::map<std::string, std::string> keys;
    bool inGroup = false;
    while (!text.empty()) {
        const std::string_view line = trimWhitespace(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
        if (line.starts_with('[')) inGroup = line == "[Desktop Entry]";
        const auto equals = line.find('=');
        if (!inGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
        keys.emplace(trimWhitespace(line.substr(0, equals)), trimWhitespace(line.substr(equals + 1)));
    }
    return keys;
}

bool hasValue(const std::map<std::string, std::string>& keys, const std::string& key,
              const std::string& value) {
    const auto found = keys.find(key);
    return found != keys.end() && found->second == value;
}

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

bool entryExists(const std::string& path) {
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0;
}

}  // namespace

std::string AutostartEntry::entryPath(const SystemFolders& folders) {
    return folders.preferences + "/autostart/" + std::string(TarnikIdentity::bundleIdentifier) + ".desktop";
}

std::string AutostartEntry::markerPath(const SystemFolders& folders) {
    return folders.preferences + "/tarnik/autostart-entry-written";
}

AutostartEntry::AutostartEntry(const SystemFolders& folders, std::string program)
    : entry_(entryPath(folders)), marker_(markerPath(folders)), program_(std::move(program)) {}

bool AutostartEntry::isEnabled() const {
    const auto text = readFile(entry_, maxEntryBytes);
    if (!text) return false;
    const auto keys = desktopEntry(*text);
    return keys.contains("Exec") && !hasValue(keys, "Hidden", "true") &&
           !hasValue(keys, "X-GNOME-Autostart-enabled", "false");
}

bool AutostartEntry::write() const {
    const bool isValid = program_.starts_with('/') && program_.find_first_of("\n\r\t=") == std::string::npos;
    if (!isValid || entryExists(entry_) || entryExists(marker_)) return false;
    // The entry is written before the marker. After a crash the entry may be written again, but isn't lost.
    return writeFileAtomically(entry_, entryText(program_)) && writeFileAtomically(marker_, "");
}

LoginItemService AutostartEntry::operations() const {
    return {.isEnabled = [entry = *this] { return entry.isEnabled(); },
            .registerItem = [entry = *this] { return entry.write(); }};
}

}  // namespace tarnik
