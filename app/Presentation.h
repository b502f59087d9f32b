#pragma once

#include <functional>
#include <string>

#include "app/model/MenuContent.h"

namespace tarnik {

// The operations with which AppDelegate shows something, filled in by a face. Main thread; every call returns
// at once.
struct Presentation {
    std::function<void(const MenuContent&)> makeStatusItem;

    // Brings the window to the front of all applications and gives it the keyboard. The first call makes the
    // window in the middle of the screen; later calls show it at its last place.
    std::function<void()> showWindow;

    // Shows an alert with one button, "OK", in front of all applications.
    std::function<void(const std::string& title, const std::string& text)> showAlert;

    // Puts a link that has to wait into the link field. The user connects with it later with one press.
    std::function<void(const std::string& link)> fillLinkField;

    // Shows why the program ends before it has started, and calls `seen` once the user has seen that.
    std::function<void(const std::string& why, std::function<void()> seen)> refuse;

    // Ends the program's loop.
    std::function<void(int exitStatus)> end;
};

}  // namespace tarnik
