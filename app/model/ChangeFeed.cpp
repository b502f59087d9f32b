#include "app/model/ChangeFeed.h"

#include <utility>

namespace tarnik {

ChangeFeed::ChangeFeed(const std::shared_ptr<AppModel>& model, MainThread mainThread,
                       std::function<void(const AppState&)> onChange)
    : pending_(std::make_shared<Pending>(Pending{.onChange = std::move(onChange)})) {
    model->observe([pending = std::weak_ptr(pending_), model = std::weak_ptr(model),
                    post = std::move(mainThread.post)](const AppState&, const AppState&) {
        const auto strong = pending.lock();
        if (!strong || std::exchange(strong->posted, true)) return;
        post([pending, model] {
            const auto view = pending.lock();
            const auto shown = model.lock();
            if (!view || !shown) return;
            view->posted = false;
            view->onChange(shown->state());
        });
    });
}

}  // namespace tarnik
