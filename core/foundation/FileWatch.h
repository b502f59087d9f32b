#pragma once

#include <string>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Waits until a file may have changed: it was written to, cut, replaced, created or removed.
//
// Uses inotify on the folder (Linux) or kqueue on the folder and the file (Darwin). Without them, and while
// the file is missing, each wait ends after retryInterval: the removal of a folder is not always reported.
// Not thread-safe.
class FileWatch {
public:
    static constexpr Seconds retryInterval = Seconds(0.25);

    enum class Event { mayHaveChanged, readerGone };

    // `path` is absolute.
    explicit FileWatch(std::string path);

    // Blocks until the file may have changed since the last call, or until the reader of the pipe or terminal
    // `output` has gone. `file` is the open file that the caller reads, or empty. Changes between two calls
    // are reported, also those before the caller's last read.
    Event wait(const UniqueFd& file, int output);

private:
    void open(const UniqueFd& file);
    void takeEvents() const;
    Event poll(int output) const;
    bool folderIsAtPath() const;

    const std::string path_;
    UniqueFd events_;  // empty without a watch
    int watchedFile_ = -1;
    UniqueFd folder_;  // the watched folder
};

}  // namespace tarnik
