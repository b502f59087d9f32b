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
    if (links_.size() == mostWaiting) links_.erase(links_.begin());
    links_.push_back(link);
    handOnLater();
}

void OpenRequests::onLink(OnLink handler) {
    onLink_ = std::move(handler);
    handOnLater();
}

void OpenRequests::onSecondOpen(OnSecondOpen handler) {
    onSecondOpen_ = std::move(handler);
    handOnLater();
}

void OpenRequests::handOnLater() {
    mainThread_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handOn();
    });
}

void OpenRequests::handOn() {
    if (onLink_) {
        for (const auto& link : std::exchange(links_, {})) onLink_(link);
    }
    if (onSecondOpen_ && std::exchange(secondOpenWaits_, false)) onSecondOpen_();
}

}  // namespace tarnik
