#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A log file of this user with a bounded size. One older copy is kept at path + ".1". A new folder gets mode
// 0700, and a new file gets mode 0600.
//
// Not thread-safe. Data that can't be written is lost, and the next append tries again. An append that makes
// the file reach the cap also rotates the file.
//
//   error                                 effect
//   the path is a link, or not a regular  the file is not opened; a FIFO never blocks
//     file of ours
//   file or folder deleted or replaced    noticed within checkInterval; the file is created or opened again,
//                                         and the older copy is kept
//   the file can't be renamed             the file is truncated; if that fails too, data is lost until a
//                                         rename or a truncation succeeds
//   disk full                             the rest of the data is lost; the file remains open
class RotatingFile {
public:
    using Clock = std::function<TimePoint()>;

    static constexpr Seconds checkInterval = Seconds(1);

    // Opens nothing. `path` is absolute. A cap below 1 counts as 1.
    RotatingFile(std::string path, std::int64_t capBytes, Clock now = steadyNow);

    // Opens the file if needed. Returns true if the file is open.
    bool isOpen();

    // Returns true if all of the data was written.
    bool append(std::string_view data);

private:
    bool reopen();
    bool open();
    bool isAtPath() const;
    void rotate();

    const std::string path_;
    const std::int64_t cap_;
    const Clock now_;
    UniqueFd file_;
    std::int64_t size_ = 0;
    TimePoint nextCheck_;
};

}  // namespace tarnik
