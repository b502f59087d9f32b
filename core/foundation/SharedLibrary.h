#pragma once

#include <optional>
#include <string>

namespace tarnik {

// A library that is loaded when something first needs it, not with the program. Once loaded it stays for the
// rest of the run, whatever becomes of this object: what was found in it never goes away.
//
// Made on the stack by the one source that wraps the library. Opening may wait for the disk.
class SharedLibrary {
public:
    // A file name without a folder is looked for where the system keeps its libraries.
    explicit SharedLibrary(const std::string& file);

    // Points `function` to the library's one of this name; to nothing, and has a failure, if there is none.
    template <class Function>
    void find(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(symbol(name));
    }

    // The loader's words for the first thing that wasn't there; none while everything was.
    const std::optional<std::string>& failure() const { return failure_; }

private:
    void* symbol(const char* name);
    void noteFailure();

    void* handle_;
    std::optional<std::string> failure_;
};

}  // namespace tarnik
