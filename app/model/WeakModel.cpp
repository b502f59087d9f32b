#include "app/model/WeakModel.h"

#include <utility>

#include "app/model/AppModel.h"

namespace tarnik {

void WeakModel::run(std::function<void(AppModel&)> task) const {
    post([weak = model, task = std::move(task)] {
        if (const auto strong = weak.lock()) task(*strong);
    });
}

}  // namespace tarnik
