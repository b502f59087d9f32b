#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/MainThread.h"

namespace tarnik {

// Queues the requests of the desktop until their handlers are registered: links to open, and second starts.
// Each request is delivered once, links in order.
//
// Shared by the operations that use it. Main thread.
class OpenRequests : public std::enable_shared_from_this<OpenRequests> {
public:
    using OnLink = std::function<void(const std::string& link)>;
    using OnSecondOpen = std::function<void()>;

    // Capacity of the link queue. The oldest links are dropped.
    static constexpr std::size_t maxWaiting = 16;

    explicit OpenRequests(MainThread mainThread) : mainThread_(std::move(mainThread)) {}

    // These call the handler before they return if there is one.
    void open(const std::string& link);
    void secondOpen();

    // Always calls the handler later, from the event loop.
    void openLater(const std::string& link);

    // Registers the handler. It receives the queued requests later, from the event loop.
    void onLink(OnLink handler);
    void onSecondOpen(OnSecondOpen handler);

private:
    void postDelivery();
    void deliver();

    const MainThread mainThread_;
    OnLink onLink_;
    OnSecondOpen onSecondOpen_;
    std::vector<std::string> links_;  // the queue
    bool secondOpenWaits_ = false;
};

}  // namespace tarnik
