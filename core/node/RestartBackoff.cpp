#include "core/node/RestartBackoff.h"

#include <algorithm>
#include <cstddef>

namespace tarnik {

Seconds RestartBackoff::next(Seconds ranFor) {
    if (ranFor >= healthyAfter) reset();
    const auto step = std::min(static_cast<std::size_t>(attempt), delays.size() - 1);
    ++attempt;
    return delays[step];
}

}  // namespace tarnik
