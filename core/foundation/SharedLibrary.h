#pragma once

#include <optional>
#include <string>

namespace tarnik {

// A shared library that is loaded at its first use instead of at the program's start. The library is never
// unloaded, so its functions remain valid after this object is destroyed.
//
// Made on the stack by the one source that wraps the library. Loading may block on the disk.
class SharedLibrary {
public:
    // File names of the libraries that we load, in the versions that match their headers.
    static const char* const curlFile;
    static const char* const cryptoFile;  // of OpenSSL

    // A file name without a folder is searched for in the system's library folders.
    explicit SharedLibrary(const std::string& file);

    // Sets `function` to the library's function of this name. On failure sets `function` to null. failure()
    // then returns a message.
    template <class Function>
    void find(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(symbol(name));
    }

    // Returns the loader's message for the first failure, or std::nullopt if nothing failed.
    const std::optional<std::string>& failure() const { return failure_; }

private:
    void* symbol(const char* name);
    void noteFailure();

    void* handle_;
    std::optional<std::string> failure_;
};

}  // namespace tarnik
