#pragma once

#include <memory>

#include <dirent.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Reads the names in a directory. For one thread.
class DirectoryReader {
public:
    // Takes over the directory's descriptor. Without one, or if it can't be read, the reader has failed.
    explicit DirectoryReader(UniqueFd directory);

    // Returns the next name other than "." and "..", or null at the end and after a failure. The name is
    // valid until the next call.
    const char* next();

    // Returns true if the names are incomplete.
    bool hasFailed() const { return failed_; }

    // The directory's descriptor, borrowed; -1 if it could not be opened.
    int descriptor() const { return stream_ ? ::dirfd(stream_.get()) : -1; }

private:
    struct Close {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Close> stream_;
    bool failed_ = false;
};

}  // namespace tarnik
