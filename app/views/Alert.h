#pragma once

#include <QMessageBox>
#include <functional>
#include <memory>
#include <string>

namespace tarnik {

// Makes an application-modal message box with one button, "OK". The box is not shown yet. Main thread only.
std::unique_ptr<QMessageBox> makeAlert(const std::string& title, const std::string& text);

// Shows an alert in front of all windows of the application and returns at once. Calls `closed` when the user
// closes the alert. Main thread only.
void showAlert(const std::string& title, const std::string& text, std::function<void()> closed = {});

}  // namespace tarnik
