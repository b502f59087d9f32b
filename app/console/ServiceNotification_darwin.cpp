#include "app/console/ServiceNotification.h"

namespace tarnik {

// launchd has no such protocol.
void ServiceNotification::send(std::string_view) const {}

}  // namespace tarnik
