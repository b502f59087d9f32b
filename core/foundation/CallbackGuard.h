#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tarnik {

// Disables the callbacks of an object when the object is destroyed.
//
// Declare the guard as the owner's last field, so that the guard is destroyed first. Destroy the owner on the
// thread that runs the callbacks.
class CallbackGuard {
public:
    using Task = std::function<void()>;

    CallbackGuard() = default;
    ~CallbackGuard() = default;
    CallbackGuard(const CallbackGuard&) = delete;
    CallbackGuard& operator=(const CallbackGuard&) = delete;

    // Returns a function that calls `callback`. After the guard is destroyed, the function only returns a
    // default value.
    template <typename Callback>
    auto wrap(Callback callback) const {
        return [alive = std::weak_ptr(alive_), callback = std::move(callback)](auto&&... arguments) {
            using Result = std::invoke_result_t<const Callback&, decltype(arguments)...>;
            if (alive.expired()) return Result();
            return callback(std::forward<decltype(arguments)>(arguments)...);
        };
    }

    // Returns a function that posts a task with `post`. The task does nothing if the guard is destroyed
    // before the task runs. Call the function from any thread, even after the owner is destroyed.
    std::function<void(Task)> wrapPost(std::function<void(Task)> post) const {
        return [alive = std::weak_ptr(alive_), post = std::move(post)](Task task) {
            post([alive, task = std::move(task)] {
                if (!alive.expired()) task();
            });
        };
    }

private:
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace tarnik
