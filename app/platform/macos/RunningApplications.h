#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

// Applications as AppKit knows them. From any thread, as its NSRunningApplication allows; of those that have
// ended since, AppKit may not know yet.
namespace tarnik::RunningApplications {

struct Application {
    pid_t pid = 0;  // below 1 when it is gone
    std::string bundlePath;
};

std::vector<Application> withIdentifier(const std::string& bundleIdentifier);

// These do nothing where no application has the id, and don't wait.
void askToQuit(pid_t pid);
void forceToQuit(pid_t pid);
void bringToFront(pid_t pid);  // from macOS 14 on, when the system thinks that the person wants it

}  // namespace tarnik::RunningApplications
