#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/MainThread.h"

namespace tarnik {

// Queues the desktop's requests (links to open and second starts) until their handlers are registered. Each
// link is delivered once, in order. Second starts that wait are merged into one.
//
// Shared by the operations that use it. Main thread only.
class OpenRequests : public std::enable_shared_from_this<OpenRequests> {
public:
    using OnLink = std::function<void(const std::string& link)>;
    using OnSecondOpen = std::function<void()>;

    // The capacity of the link queue. A full queue drops its oldest link.
    static constexpr std::size_t maxWaiting = 16;

    explicit OpenRequests(MainThread mainThread) : mainThread_(std::move(mainThread)) {}

    // Deliver or queue the request. A registered handler is called before they return, unless older links
    // wait.
    void open(const std::string& link);
    void secondOpen();

    // Queues the link. The handler is called later, from the event loop.
    void openLater(const std::string& link);

    // Register the handler. It receives the queued requests later, from the event loop.
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
