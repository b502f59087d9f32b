#include "app/model/ChangeFeed.h"

#include <utility>

namespace tarnik {

ChangeFeed::ChangeFeed(const std::shared_ptr<AppModel>& model, MainThread mainThread,
                       std::function<void(const AppState&)> onChange)
    : model_(*model), mainThread_(std::move(mainThread)), onChange_(std::move(onChange)) {
    model->observe(guard_.wrap([this](const AppState&, const AppState&) { post(); }));
}

void ChangeFeed::post() {
    if (std::exchange(posted_, true)) return;
    mainThread_.post(guard_.wrap([this] {
        posted_ = false;
        onChange_(model_.state());
    }));
}

}  // namespace tarnik
