#include "app/platform/linux/SessionBusAddress.h"

#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace tarnik {
namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

std::string valueOf(const char* variable) {
    const char* value = ::getenv(variable);
    return value != nullptr ? value : "";
}

// The library takes no other socket there either.
bool isOwnSocket(const std::string& path) {
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 && S_ISSOCK(found.st_mode) && found.st_uid == ::getuid();
}

}  // namespace

void disableBusAutolaunch() {
    if (!valueOf(addressVariable).empty()) return;
    const std::string runtime = valueOf("XDG_RUNTIME_DIR");
    if (!runtime.empty() && isOwnSocket(runtime + "/bus")) return;
    ::setenv(addressVariable, "disabled:", 1);  // a way to a bus that no library knows
}

}  // namespace tarnik
