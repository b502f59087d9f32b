#pragma once

#include <cstddef>
#include <string>

#include <sys/types.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Reads what is appended to a log file, across rotations, as `tail -F` does.
//
// Not thread-safe. Follows no link and never blocks on a pipe. A file that is missing counts as empty until
// it appears.
class LogFollower {
public:
    static constexpr std::size_t maxRead = 1 << 20;  // bytes of one call of read()

    // Starts at the current end of the file.
    explicit LogFollower(std::string path);

    // Returns the last whole lines before the start and, before them, those of the older copy at path + ".1":
    // at most `maxBytes` in all. A last line without a line feed is included.
    std::string tail(std::size_t maxBytes) const;

    // Returns what was appended since the last call, at most maxRead bytes; an empty text if nothing was. If
    // the file was replaced or cut, the rest of the old file comes first.
    std::string read();

    // The open file, which is borrowed; empty if it is missing.
    const UniqueFd& file() const { return file_; }

private:
    std::string readOpenFile();
    bool isOpenAt(const std::string& path) const;

    const std::string path_;
    UniqueFd file_;
    off_t offset_ = 0;
    off_t start_ = 0;
};

}  // namespace tarnik
