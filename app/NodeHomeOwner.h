#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "app/platform/MainThread.h"
#include "app/platform/SystemLog.h"
#include "core/node/NodeHomeLock.h"

namespace tarnik {

// Locks the node home for this program. A second program on the same home would end the first program's
// driver and run a second helper on the same account.
//
// Owned by Application, one per run. Destroy it only after the model has stopped. Main thread only.
class NodeHomeOwner {
public:
    static constexpr Seconds lockTimeout = Seconds(3);  // gives another program time to end

    enum class Face { window, console, service };
    static std::string_view wordOf(Face face);  // "window", "console" or "service"

    // The process that locked a home. That process writes a note into the application support folder.
    struct Owner {
        pid_t pid = 0;
        Face face = Face::window;
    };

    struct Deps {
        MainThread mainThread;
        SystemLog log;
        std::string applicationSupport;  // contains the folder of the note
        Face face = Face::window;
        std::function<std::expected<NodeHomeLock, NodeHomeLock::Failure>(const NodeHome&)> lock =
            &NodeHomeLock::take;
    };

    // If `home` is std::nullopt, take() succeeds without a lock.
    NodeHomeOwner(std::optional<NodeHome> home, Deps deps);
    ~NodeHomeOwner();
    NodeHomeOwner(const NodeHomeOwner&) = delete;
    NodeHomeOwner& operator=(const NodeHomeOwner&) = delete;

    // Calls `done` once, possibly before take() returns. Passes std::nullopt if this program has locked the
    // home, or if the system can't lock the home. Passes a sentence for the user if another program holds the
    // lock for lockTimeout.
    void take(std::function<void(const std::optional<std::string>& inUse)> done);

    // Return the process that the note names, if it runs. Change nothing.
    static std::optional<Owner> noted(const NodeHome& home, const std::string& applicationSupport);
    static std::optional<Owner> notedIn(const std::string& note);

    // Returns the file name of the home's note, or std::nullopt if the home doesn't exist.
    static std::optional<std::string> noteName(const NodeHome& home);

private:
    using Done = std::function<void(const std::optional<std::string>&)>;

    bool acquire();  // returns false if another program holds the lock
    void retry(const Done& done);
    void noteOwner() const;
    std::string inUse() const;

    const std::optional<NodeHome> home_;
    const Deps deps_;
    std::optional<NodeHomeLock> lock_;
    std::optional<RepeatingTimer> retryTimer_;
    int triesLeft_ = 0;
};

}  // namespace tarnik
