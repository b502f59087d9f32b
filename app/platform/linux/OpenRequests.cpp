#include "app/platform/linux/OpenRequests.h"

#include <utility>

namespace tarnik {

void OpenRequests::open(const std::string& link) {
    if (onLink_ && links_.empty()) return onLink_(link);
    openLater(link);
}

void OpenRequests::secondOpen() {
    if (onSecondOpen_) return onSecondOpen_();
    secondOpenWaits_ = true;
}

void OpenRequests::openLater(const std::string& link) {
    if (links_.size() == maxWaiting) links_.erase(links_.begin());
    links_.push_back(link);
    postDelivery();
}

void OpenRequests::onLink(OnLink handler) {
    onLink_ = std::move(handler);
    postDelivery();
}

void OpenRequests::onSecondOpen(OnSecondOpen handler) {
    onSecondOpen_ = std::move(handler);
    postDelivery();
}

void OpenRequests::postDelivery() {
    mainThread_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->deliver();
    });
}

void OpenRequests::deliver() {
    if (onLink_) {
        for (const auto& link : std::exchange(links_, {})) onLink_(link);
    }
    if (onSecondOpen_ && std::exchange(secondOpenWaits_, false)) onSecondOpen_();
}

}  // namespace tarnik
