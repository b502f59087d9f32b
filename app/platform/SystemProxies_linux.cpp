#include "app/platform/SystemProxies.h"

namespace tarnik {

ProxyLookup systemProxies() {
    return {};
}

}  // namespace tarnik
