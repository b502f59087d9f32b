#include "app/control/ControlFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik::ControlFolder {
namespace {

// Returns true if only this user can use the folder. Does not follow a link.
bool isPrivateFolder(const std::string& path) {
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & ALLPERMS) == S_IRWXU;
}

// Returns the user's runtime folder, or an empty text. A shell of cron, of su, or of an ssh server without
// PAM has no variable for it, but the service manager of the user has made it.
std::string runtimeFolder(const Environment& environment) {
    const std::string named = environmentValue(environment, "XDG_RUNTIME_DIR");
    if (!named.empty()) return named.starts_with('/') && isFolder(named) ? named : std::string();
    const std::string usual = "/run/user/" + std::to_string(::geteuid());
    return isPrivateFolder(usual) ? usual : std::string();
}

}  // namespace

std::vector<std::string> candidates(const Environment& environment, const SystemFolders& folders) {
    const std::string name = "/" + std::string(TarnikIdentity::appName);
    std::vector<std::string> found;
    if (const auto runtime = runtimeFolder(environment); !runtime.empty()) found.push_back(runtime + name);
    found.push_back(folders.applicationSupport + name);
    return found;
}

}  // namespace tarnik::ControlFolder
