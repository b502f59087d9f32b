#include "app/platform/DesktopEntry.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr std::string_view hidden = "Hidden";
constexpr std::string_view enabled = "X-GNOME-Autostart-enabled";  // systemd reads it for every desktop
constexpr std::string_view onlyShowIn = "OnlyShowIn";
constexpr std::string_view notShowIn = "NotShowIn";

// Resolves the escape sequences that a path can contain.
std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
            text += value[i] == 's' ? ' ' : value[i];
        } else {
            text += value[i];
        }
    }
    return text;
}

// Returns true if a list such as "GNOME;KDE;" contains the name.
bool contains(std::string_view list, std::string_view name) {
    while (!list.empty()) {
        const auto end = std::min(list.find(';'), list.size());
        if (trimWhitespace(list.substr(0, end)) == name) return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

}  // namespace

DesktopEntry::DesktopEntry(std::string_view text) {
    bool inGroup = false;
    while (!text.empty()) {
        const auto size = std::min(text.find('\n'), text.size() - 1) + 1;
        const auto line = trimWhitespace(text.substr(0, size));
        const auto equals = line.find('=');
        Line parsed{.text = std::string(text.substr(0, size)), .key = {}, .value = {}};
        text.remove_prefix(size);
        if (line.starts_with('[')) {
            inGroup = line == "[Desktop Entry]";
            if (inGroup && !header_) header_ = lines_.size();
        } else if (inGroup && !line.starts_with('#') && equals != std::string_view::npos) {
            parsed.key = trimWhitespace(line.substr(0, equals));
            parsed.value = trimWhitespace(line.substr(equals + 1));
        }
        lines_.push_back(std::move(parsed));
    }
}

std::string_view DesktopEntry::value(std::string_view key) const {
    const auto found = std::ranges::find(lines_.rbegin(), lines_.rend(), key, &Line::key);
    return found != lines_.rend() ? std::string_view(found->value) : std::string_view();
}

bool DesktopEntry::isProgram() const {
    return value("Type") == "Application" && !value("Exec").empty();
}

std::optional<std::string> DesktopEntry::tryExec() const {
    const auto program = value("TryExec");
    return program.empty() ? std::nullopt : std::optional(unescaped(program));
}

std::vector<std::string> DesktopEntry::disablingKeys(const std::vector<std::string>& desktops) const {
    std::vector<std::string> keys;
    if (value(hidden) == "true" || value(hidden) == "1") keys.emplace_back(hidden);
    if (value(enabled) == "false" || value(enabled) == "0") keys.emplace_back(enabled);
    // The first desktop that one of the lists contains decides.
    for (const auto& desktop : desktops) {
        if (contains(value(onlyShowIn), desktop)) return keys;
        if (!contains(value(notShowIn), desktop)) continue;
        keys.emplace_back(notShowIn);
        break;
    }
    if (!value(onlyShowIn).empty()) keys.emplace_back(onlyShowIn);
    return keys;
}

void DesktopEntry::remove(std::string_view key) {
    std::erase_if(lines_, [&](const Line& line) { return line.key == key; });
}

void DesktopEntry::hide() {
    if (!header_) return;
    remove(hidden);
    auto& header = lines_[*header_].text;
    if (!header.ends_with('\n')) header += '\n';
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(*header_) + 1,
                  {.text = std::string(hidden) + "=true\n", .key = std::string(hidden), .value = "true"});
}

std::string DesktopEntry::text() const {
    std::string text;
    for (const auto& line : lines_) text += line.text;
    return text;
}

}  // namespace tarnik
