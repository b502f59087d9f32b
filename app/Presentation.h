#pragma once

#include <functional>
#include <string>

#include "app/model/MenuContent.h"

namespace tarnik {

// The operations that AppDelegate calls to show something. Each face (the window and the console) provides
// them. Main thread only. Each call returns at once.
struct Presentation {
    std::function<void(const MenuContent&)> makeStatusItem;

    // Brings the window to the front of all applications and gives it the keyboard focus. The first call
    // centres the window on the screen. Later calls show the window at its last position.
    std::function<void()> showWindow;

    // Shows an alert with one button, "OK", in front of all applications.
    std::function<void(const std::string& title, const std::string& text)> showAlert;

    // Puts a link that has to wait into the link field, so that the user can connect with one click later.
    std::function<void(const std::string& link)> fillLinkField;

    // Shows the reason why the program can't start. Calls `seen` after the user has closed the message.
    std::function<void(const std::string& why, std::function<void()> seen)> refuse;

    // Returns true if the face shows a notice about a failed install while the window is closed. May be
    // absent.
    std::function<bool()> showsNotices = {};

    // Ends the event loop.
    std::function<void(int exitStatus)> end;
};

}  // namespace tarnik
