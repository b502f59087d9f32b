#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/MainThread.h"
#include "app/platform/SystemLog.h"
#include "core/node/NodeHomeLock.h"

namespace tarnik {

// Keeps the node home to this program: a second one, in whatever face and on whatever session bus, would end
// this one's driver and run a second helper on the same account.
//
// Owned by main(), one per run; kept until everything that uses the home has stopped. Main thread.
class NodeHomeOwner {
public:
    static constexpr int inUseStatus = 5;  // exit status of a program that found the node home in use
    static constexpr Seconds patience = Seconds(3);  // for another program that is about to end

    enum class Face { window, console };

    struct Deps {
        MainThread mainThread;
        SystemLog log;
        std::string applicationSupport;  // for the note that says who has the node home
        Face face = Face::window;
        std::function<std::expected<NodeHomeLock, NodeHomeLock::Failure>(const NodeHome&)> lock =
            &NodeHomeLock::take;
    };

    // Without a home there is nothing to keep.
    NodeHomeOwner(std::optional<NodeHome> home, Deps deps);
    ~NodeHomeOwner();
    NodeHomeOwner(const NodeHomeOwner&) = delete;
    NodeHomeOwner& operator=(const NodeHomeOwner&) = delete;

    // Calls `done` once the home is ours, or with a sentence for the person if another program keeps it.
    // Where no lock can be had it is taken for ours. At once if it can be told at once. Once.
    void take(std::function<void(const std::optional<std::string>& inUse)> done);

private:
    using Done = std::function<void(const std::optional<std::string>&)>;

    bool settled();  // the home is ours, or can't be locked
    void tryAgain(const Done& done);
    void noteOwner() const;
    std::string inUse() const;

    const std::optional<NodeHome> home_;
    const Deps deps_;
    std::optional<NodeHomeLock> lock_;
    std::optional<RepeatingTimer> retry_;
    int triesLeft_ = 0;
};

}  // namespace tarnik
