#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// A desktop entry in an "autostart" folder, read as sessions read it at login.
//
// A value. Changes keep all other lines as they are. Of several lines with the same key, the last one counts,
// as in GLib and systemd.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string_view text);

    // Returns true if the entry describes a program and has a command line.
    bool isProgram() const;

    // Returns the program without which the entry is ignored: a path, or a name to find in PATH.
    std::optional<std::string> tryExec() const;

    // Returns the keys because of which a session of `desktops` ignores the entry. `desktops` are the names
    // in XDG_CURRENT_DESKTOP, the first one first.
    std::vector<std::string> disablingKeys(const std::vector<std::string>& desktops) const;

    void remove(std::string_view key);
    void hide();  // sets Hidden=true; without a group [Desktop Entry] has no effect

    std::string text() const;

private:
    struct Line {
        std::string text;  // with its line end
        std::string key;   // empty for other lines, and outside the group [Desktop Entry]
        std::string value;
    };

    std::string_view value(std::string_view key) const;  // with its escape sequences

    std::vector<Line> lines_;
    std::optional<std::size_t> header_;  // the index of the line [Desktop Entry]
};

}  // namespace tarnik
