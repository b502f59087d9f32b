#include "app/relocation/Relocator.h"

#include <utility>

#include "app/relocation/RelocationRun.h"

namespace tarnik {

Relocator::Relocator(RelocatorDeps deps)
    : deps_(std::move(deps)),
      record_(deps_.applicationSupport),
      handedLink_(deps_.applicationSupport),
      queue_(deps_.bundles.ownCopy ? deps_.makeQueue("tarnik.relocator") : nullptr) {}

Relocator::~Relocator() {
    if (!queue_) return;
    ending_ = true;
    deps_.sleep.interrupt();
    queue_->close();
}

void Relocator::relocateIfNeeded(std::function<void(Outcome)> done) {
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    if (!queue_) return post([done = std::move(done)] { done(RelocationOutcomes::Stay{}); });
    queue_->post([this, post, done = std::move(done)] {
        const RelocationRun::IsCancelled isCancelled = [this] { return ending_.load(); };
        post([done, outcome = RelocationRun(deps_, record_, isCancelled).perform()] { done(outcome); });
    });
}

void Relocator::recordWindow(const std::string& reason) {
    if (!queue_) return;
    queue_->post([this, line = Relocation::windowLine(reason, deps_.now())] { record_.append(line); });
}

void Relocator::handLinkOn(const std::string& link) const {
    if (queue_) handedLink_.put(link, deps_.now());
}

std::optional<std::string> Relocator::takeHandedLink() const {
    return queue_ ? handedLink_.take(deps_.now()) : std::nullopt;
}

}  // namespace tarnik
