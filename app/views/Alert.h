#pragma once

#include <QMessageBox>
#include <functional>
#include <memory>
#include <string>

namespace tarnik {

// A message with one button, "OK", that is to be answered before anything else in the application. Not shown
// yet. Main thread, as below.
std::unique_ptr<QMessageBox> makeAlert(const std::string& title, const std::string& text);

// Shows one in front of all windows of the application, and returns at once. Calls `seen` when it is closed.
void showAlert(const std::string& title, const std::string& text, std::function<void()> seen = {});

}  // namespace tarnik
