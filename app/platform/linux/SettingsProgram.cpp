#include "app/platform/linux/SettingsProgram.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/platform/SearchPath.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

struct Page {
    std::string_view desktop;  // the desktop's name in XDG_CURRENT_DESKTOP
    Switch which;
    std::string_view program;
    std::string_view argument;
};

constexpr Page pages[] = {
    {"GNOME", Switch::accessibility, "gnome-control-center", "universal-access"},
    {"GNOME", Switch::screenRecording, "gnome-control-center", "applications"},
    {"Unity", Switch::accessibility, "unity-control-center", "universal-access"},
    {"KDE", Switch::accessibility, "systemsettings", "kcm_access"},
    {"KDE", Switch::accessibility, "systemsettings5", "kcm_access"},
    {"KDE", Switch::screenRecording, "systemsettings", "kcm_app-permissions"},
    {"XFCE", Switch::accessibility, "xfce4-accessibility-settings", ""},
    {"X-Cinnamon", Switch::accessibility, "cinnamon-settings", "universal-access"},
    {"MATE", Switch::accessibility, "mate-at-properties", ""},
    {"Budgie", Switch::accessibility, "budgie-control-center", "universal-access"},
    {"Budgie", Switch::screenRecording, "budgie-control-center", "applications"},
};

}  // namespace

void openSettingsProgram(Switch which, const Environment& environment) {
    const auto desktops = splitVariable(environment, "XDG_CURRENT_DESKTOP");
    const auto path = splitVariable(environment, "PATH");
    const auto isOfThisDesktop = [&](const Page& page) {
        return std::ranges::find(desktops, page.desktop) != desktops.end();
    };
    for (const bool own : {true, false}) {  // the settings of other desktops are the fallback
        for (const Page& page : pages) {
            if (page.which != which || isOfThisDesktop(page) != own) continue;
            const auto program = findProgram(page.program, path);
            if (!program) continue;
            SpawnRequest request{.executable = *program, .environment = environment};
            if (!page.argument.empty()) request.arguments.emplace_back(page.argument);
            if (Spawner::spawn(request)) return;
        }
    }
}

}  // namespace tarnik
