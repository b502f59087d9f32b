#pragma once

#include "app/platform/LoginItemService.h"

namespace tarnik::LoginItem {

// Puts the application on the list of what starts at login, if it isn't there. When that fails it is left
// until the next launch. Blocks, perhaps for seconds: for a background thread.
void ensureRegistered(const LoginItemService& service);

}  // namespace tarnik::LoginItem
