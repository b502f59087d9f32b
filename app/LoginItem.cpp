#include "app/LoginItem.h"

namespace tarnik::LoginItem {

void ensureRegistered(const LoginItemService& service) {
    if (!service.registerItem || service.isEnabled()) return;
    // Most often it fails because the person has taken it off the list, and knows.
    (void)service.registerItem();
}

}  // namespace tarnik::LoginItem
