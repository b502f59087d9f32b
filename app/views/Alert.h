#pragma once

#include <string>

namespace tarnik {

// Shows a message with one button, "OK", in front of all windows of the application, and returns at once.
// Main thread.
void showAlert(const std::string& title, const std::string& text);

}  // namespace tarnik
