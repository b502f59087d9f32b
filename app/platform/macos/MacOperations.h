#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/platform/Activity.h"
#include "app/platform/BundleOperations.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/NativeStatusItem.h"
#include "app/platform/SwitchOperations.h"
#include "app/platform/SystemEvents.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"
#include "app/platform/UserNotices.h"

// The macOS operations that MacDesktop.cpp puts into a DesktopPlatform. Each operation is defined in a source
// with a similar name. For example, MacSwitches.cpp defines macSwitches.
namespace tarnik {

// The switches that the system keeps for this program's code signature.
SwitchOperations macSwitches();

// Opens the address in the program that the user chose for its scheme. Ignores a malformed address. Returns
// at once. Main thread only.
void openInWorkspace(std::string_view url);

// The unified log with our bundle identifier as subsystem. Messages are public and persistent.
SystemLog macLog(const std::string& category);

// The login item of this application.
LoginItemService macLoginItem();

// The update framework Sparkle. The operations are absent in a build without Sparkle.
UpdateFramework macUpdates();

// Has no operations if the program runs outside a bundle, because such a program can't be moved.
BundleOperations macBundles(const std::optional<std::string>& ownBundle);
CodeSignatures macSignatures();
BundleFiles macBundleFiles();
OtherCopies macCopies();

// Call it when the application object exists and before the event loop runs.
SystemEvents macEvents();

// The user's notification centre. The first notice asks the user for permission. Has no operations if the
// program runs outside a bundle, because the system identifies a program by its bundle.
UserNotices macNotices(const MainThread& mainThread, const std::optional<std::string>& ownBundle);

// Shows a status item in the menu bar. Main thread only.
NativeStatusItem makeMacStatusItem(const NativeStatusItem::Content& content);

// Shows the application in the menu bar only, without a Dock icon, even if it runs outside a bundle. Call on
// the main thread when the application object exists.
void becomeAccessory();

// Activates the application and brings it to the front. Main thread only.
void activateApplication();

// Lets the application and the session end while a modal window is open. Call once, on the main thread, when
// the application object exists.
void letModalWindowsQuit();

// Returns an operation that turns App Nap off while the program is busy. Without it the system delays the
// timers of a program without a visible window. The system may still sleep. Main thread only.
std::function<void(Activity)> macActivity();

}  // namespace tarnik
