#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/relocation/QuarantineWalk.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/RelocationRecord.h"
#include "app/relocation/Relocator.h"
#include "app/texts/RelocationTexts.h"
#include "core/relocation/Relocation.h"

namespace tarnik {

// The relocation of one launch, from the facts to the outcome. Runs on the relocator's queue. Blocks while it
// checks signatures, copies bundles, waits for another copy to quit, or moves the original to the trash.
//
//   decision                  action                                                    outcome
//   stay                      clear quarantine below the install path                   stay
//   openInstalled             the same, then open the installed copy                    moving
//   install                   copy into place, open, put the original into the trash    moving
//   cannotInstall, runHere    no action                                                 stay with a message
//
// A failure to install, to open or to end another copy results in a message. The message describes what the
// user can do by hand. A failure to clear quarantine or to use the trash is only recorded. An installed copy
// is opened or replaced only if isOurs() accepts it. The same applies to ending a running copy. A development
// build is never moved. A run that is cancelled before its last step has the outcome stay.
class RelocationRun {
public:
    using IsCancelled = std::function<bool()>;  // returns true once the program is ending

    // The arguments outlive this object.
    RelocationRun(const RelocatorDeps& deps, const RelocationRecord& record, const IsCancelled& isCancelled);

    RelocationOutcome perform();

private:
    using Fields = std::vector<std::string>;

    Relocation::Decision decide() const;
    bool isOurs(const std::string& bundle) const;

    // Returns true if the decision doesn't involve the installed copy or if isOurs() accepts that copy.
    bool mayCarryOut(const Relocation::Decision& decision) const;

    // Returns the outcome if another running copy determines it, or std::nullopt if this launch continues.
    std::optional<RelocationOutcome> settleWith(const std::vector<OtherCopy>& others,
                                                const Relocation::Decision& decision) const;
    std::optional<RelocationOutcome> takeOver(const OtherCopy& other) const;

    RelocationOutcome carryOut(const Relocation::Decision& decision) const;
    RelocationOutcome stay() const;
    RelocationOutcome openInstalled() const;
    RelocationOutcome install(Relocation::Decisions::Install how) const;
    // Opens the installed copy after this process has ended.
    RelocationOutcome relaunch(const Relocation::Decision& decision,
                               const QuarantineReport& quarantine) const;
    std::string trashOriginal() const;

    RelocationOutcome runHere() const;
    RelocationOutcome differentBuild(const Relocation::Decision& decision, const Fields& extra) const;
    void note(const Relocation::Decision& decision, std::optional<bool> healed, const Fields& extra) const;

    const RelocatorDeps& deps_;
    const RelocationRecord& record_;
    const IsCancelled& isCancelled_;
    Relocation::Launch launch_;
    std::string version_;  // of this copy
};

}  // namespace tarnik
