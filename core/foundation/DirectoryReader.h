#pragma once

#include <memory>

#include <dirent.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Reads the names in a directory. Not thread-safe.
class DirectoryReader {
public:
    // Takes ownership of the directory's descriptor. If the descriptor is empty or refers to another type of
    // file, hasFailed() returns true.
    explicit DirectoryReader(UniqueFd directory);

    // Returns the next name other than "." and "..", or null at the end and after a failure. The name is
    // valid until the next call.
    const char* next();

    // Returns true after a failure. Some names may be missing then.
    bool hasFailed() const { return failed_; }

    // Returns the directory's descriptor, which the reader keeps, or -1 if the constructor failed.
    int descriptor() const { return stream_ ? ::dirfd(stream_.get()) : -1; }

private:
    struct Close {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Close> stream_;
    bool failed_ = false;
};

}  // namespace tarnik
