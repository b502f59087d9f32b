#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/journal/JournalEvent.h"
#include "app/platform/SystemFolders.h"
#include "core/foundation/Mutex.h"
#include "core/foundation/RotatingFile.h"
#include "core/foundation/SerialQueue.h"

namespace tarnik {

// The events of this run: the latest ones in memory, all of them in a bounded file of JSON lines.
//
// Owned by Application, one per run. Call from any thread. Never blocks the caller and never fails: the file
// is written on the queue "tarnik.journal", and lines that can't be written are lost. If the disk hangs, the
// oldest waiting lines are lost. Every text loses its secrets and control characters, and is cut to
// longestText characters.
class Journal {
public:
    // Called with each new event on the recording thread, with no lock held.
    using Observer = std::function<void(const JournalEvent&)>;

    static constexpr std::size_t keptEvents = 200;    // in memory
    static constexpr std::size_t waitingLines = 200;  // for the disk
    static constexpr std::size_t longestText = 400;
    static constexpr std::int64_t capBytes = 0x100000;  // of the file; one older file is kept
    static constexpr std::string_view fileName = "tarnik.log";

    struct Deps {
        std::function<WallTime()> now;
        std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;
        std::int64_t fileBytes = capBytes;

        static Deps production();
    };

    static std::string pathIn(const SystemFolders& folders);

    // `path` is absolute. Its folder is created when the first line is written.
    explicit Journal(const std::string& path, Deps deps = Deps::production());
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void record(EventCode code, std::string_view sentence, JournalEvent::Fields fields = {});

    // Returns the events in memory, the oldest first.
    std::vector<JournalEvent> events() const;

    // Passes each later event to `observer` for the rest of the run, and returns the events before, so that
    // no event is missed.
    std::vector<JournalEvent> observe(Observer observer);

    // Waits up to `timeout` until all recorded events are written. Call it before the program ends.
    void flush(Seconds timeout);

private:
    // A file whose lines a full disk may cut short.
    struct LineFile {
        RotatingFile file;
        const std::string path;
        // The last line was not written completely. Unknown until the first line of this run.
        std::optional<bool> lineIsOpen = std::nullopt;

        void append(const std::string& line);
    };

    void write();

    const Deps deps_;
    LineFile file_;  // on the queue

    mutable Mutex mutex_;
    Condition written_;  // notified when isWriting_ becomes false
    std::deque<JournalEvent> events_ TARNIK_GUARDED_BY(mutex_);
    std::deque<std::string> waiting_ TARNIK_GUARDED_BY(mutex_);  // lines for the file
    bool isWriting_ TARNIK_GUARDED_BY(mutex_) = false;           // write() is posted or runs
    std::vector<Observer> observers_ TARNIK_GUARDED_BY(mutex_);
    const std::shared_ptr<SerialQueue> queue_;
};

}  // namespace tarnik
