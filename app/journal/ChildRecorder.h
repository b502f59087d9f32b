#pragma once

#include <memory>
#include <optional>

#include "app/journal/Journal.h"
#include "core/node/NodeHome.h"
#include "core/process/ChildEvent.h"

namespace tarnik {

// Return a callback that records the events of one child. Its calls must not overlap.
OnChildEvent recordHelper(const std::shared_ptr<Journal>& journal, std::optional<NodeHome> home);
OnChildEvent recordDriver(const std::shared_ptr<Journal>& journal);

}  // namespace tarnik
