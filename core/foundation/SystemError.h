#pragma once

#include <string>

namespace tarnik {

// A system call that failed.
struct SystemError {
    std::string call;  // with its subject, if any: "pipe", "mkdir /x", "posix_spawn /usr/bin/tar"
    int code = 0;      // an errno value

    // Takes the code from errno. Call this right after the failed call.
    static SystemError last(const char* call, const std::string& subject);
    bool operator==(const SystemError&) const = default;
};

// Returns a text such as "mkdir /x failed: Permission denied".
std::string describe(const SystemError& error);

// Returns the system's message for an errno value, such as "No such file or directory". Safe on any thread.
std::string systemMessage(int code);

}  // namespace tarnik
