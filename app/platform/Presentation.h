#pragma once

#include <functional>
#include <string>

#include "app/model/MenuContent.h"

namespace tarnik {

// What the shell lets the person see. Main thread; every call returns at once.
struct Presentation {
    std::function<void(const MenuContent&)> makeStatusItem;

    // Brings the one window to the front of all applications, with the keyboard; makes it the first time, in
    // the middle of the screen, and later shows it where it was.
    std::function<void()> showWindow;

    // One button, "OK", in front of all applications.
    std::function<void(const std::string& title, const std::string& text)> showAlert;

    // Puts a link that has to wait into the link field, where one press connects with it later.
    std::function<void(const std::string& link)> fillLinkField;

    // Says why the program ends before it has begun, and runs `seen` once the person has seen it.
    std::function<void(const std::string& why, std::function<void()> seen)> refuse;

    // Ends the program's loop.
    std::function<void(int exitStatus)> end;
};

}  // namespace tarnik
