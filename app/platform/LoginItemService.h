#pragma once

#include <expected>
#include <functional>
#include <string>

namespace tarnik {

// The state of this program in the system's list of programs that start at login.
enum class LoginItemState {
    off,
    on,
    waiting  // on the list, but the user has to allow it in the system's settings
};

// The user's choice whether this program starts at login.
enum class LoginItemChoice { off, on };

// The system's list of programs that start at login. The operations are absent if the system has no list, or
// if this copy of the program isn't the installed one. All but `openSettings` may block for seconds, so call
// them on a background thread, one at a time.
struct LoginItemService {
    std::function<LoginItemState()> state;

    // Adds the program, unless the system shows that the user has removed it. Returns true on success.
    std::function<bool()> registerItem;

    // Carries out the user's choice. Returns the system's message on failure.
    std::function<std::expected<void, std::string>(LoginItemChoice)> choose;

    // Opens the system's settings for the list. Absent if `state` never returns `waiting`. Returns at once.
    // Main thread only.
    std::function<void()> openSettings;
};

}  // namespace tarnik
