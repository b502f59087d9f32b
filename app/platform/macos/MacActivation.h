#pragma once

// How the application stands among the others. Main thread, when the application object exists.
namespace tarnik::MacActivation {

// In the menu bar only, without an icon in the Dock, for a program outside a bundle too.
void becomeAccessory();

// Comes before all other applications.
void comeToFront();

}  // namespace tarnik::MacActivation
