#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/MainThread.h"

namespace tarnik {

// What the desktop asks of the application, on its way to whoever handles it: links that were opened, and the
// wish to see the window. What comes before its handler waits for it. Each comes out once, links in order.
//
// Held by the operations that use it. Main thread.
class OpenRequests : public std::enable_shared_from_this<OpenRequests> {
public:
    using OnLink = std::function<void(const std::string& link)>;
    using OnSecondOpen = std::function<void()>;

    // Of more links that wait the first ones are dropped.
    static constexpr std::size_t mostWaiting = 16;

    explicit OpenRequests(MainThread mainThread) : mainThread_(std::move(mainThread)) {}

    // These hand it on before they return, when they can.
    void open(const std::string& link);
    void secondOpen();

    // Hands it on later.
    void openLater(const std::string& link);

    // What waits is handed on later.
    void onLink(OnLink handler);
    void onSecondOpen(OnSecondOpen handler);

private:
    void handOnLater();
    void handOn();

    const MainThread mainThread_;
    OnLink onLink_;
    OnSecondOpen onSecondOpen_;
    std::vector<std::string> links_;  // that wait
    bool secondOpenWaits_ = false;
};

}  // namespace tarnik
