#include "app/uninstall/UninstallPlan.h"

#include "app/platform/AutostartEntry.h"
#include "app/platform/DefaultsFile.h"
#include "app/texts/UninstallTexts.h"
#include "core/foundation/Paths.h"

namespace tarnik {
namespace {

const char* reasonOfPreference(const std::string& path, const SystemFolders& folders) {
    const auto file = DefaultsFile::pathIn(folders);
    if (path == file || path == file + std::string(DefaultsFile::asideSuffix))
        return UninstallTexts::preferences;
    return path == AutostartEntry::markerPath(folders) ? UninstallTexts::autostartNote : nullptr;
}

}  // namespace

void addDesktopItems(UninstallPlan& plan, const SystemFolders& folders) {
    const auto folder = parentFolder(DefaultsFile::pathIn(folders));
    addFile(plan, AutostartEntry::entryPath(folders), UninstallTexts::autostart);
    addFolder(plan,
              {.path = folder,
               .reason = [&](const auto& name) { return reasonOfPreference(folder + "/" + name, folders); },
               .why = UninstallTexts::preferencesFolder});
}

}  // namespace tarnik
