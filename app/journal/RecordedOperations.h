#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/journal/Journal.h"
#include "app/platform/SystemEvents.h"
#include "app/platform/UpdateFramework.h"
#include "app/relocation/RelocationOutcome.h"
#include "core/node/NodeInstaller.h"

namespace tarnik {

// Return the operations with a record of each call added. Nothing else about them changes.
NodeInstallerDeps recorded(const std::shared_ptr<Journal>& journal, NodeInstallerDeps installer);
UpdateFramework recorded(const std::shared_ptr<Journal>& journal, UpdateFramework framework);
SystemEvents recorded(const std::shared_ptr<Journal>& journal, SystemEvents events);

// Return a callback that records the outcome and passes it to `done`.
using OnRelocated = std::function<void(RelocationOutcome)>;
using OnHomeTaken = std::function<void(const std::optional<std::string>& inUse)>;
OnRelocated recordedOutcome(const std::shared_ptr<Journal>& journal, OnRelocated done);
OnHomeTaken recordedOwner(const std::shared_ptr<Journal>& journal, OnHomeTaken done);

// Record the start and the end of the program. The end waits until the journal is written, for up to a
// second.
void recordStart(Journal& journal, const std::optional<std::string>& homeError);
void recordEnd(Journal& journal, int exitStatus);

}  // namespace tarnik
