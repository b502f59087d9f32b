#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tarnik {

// Calls a handler for each link with our scheme that the system opens. Handles the system's Apple event
// itself, because some versions of Qt don't report it to the application.
//
// Main thread only. Create it before the event loop runs. The handler replaces Qt's when the application has
// finished Qt's part of its launch, and before the link that started the program is delivered. A link that
// arrives earlier reaches Qt's handler, and then OpenedLinks.
class LinkEvents {
public:
    explicit LinkEvents(std::function<void(const std::string& link)> handler);
    ~LinkEvents();
    LinkEvents(const LinkEvents&) = delete;
    LinkEvents& operator=(const LinkEvents&) = delete;

private:
    struct Receiver;
    const std::unique_ptr<Receiver> receiver_;
};

}  // namespace tarnik
