#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/relocation/QuarantineWalk.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/RelocationRecord.h"
#include "app/relocation/RelocatorDeps.h"
#include "core/relocation/Relocation.h"
#include "core/relocation/RelocationMessages.h"

namespace tarnik {

// One launch's relocation, from the facts to the outcome. On the relocator's queue: it blocks for as long as
// signatures, copying and another copy's end take.
//
//   decision                  what is done                                         outcome
//   stay                      quarantine cleared below the install path            stay
//   openInstalled             the same, then the installed copy opened             moving
//   install                   moved into place, opened, the original to the trash  moving
//   cannotInstall, runHere    nothing                                              the message why
//
// Whatever fails ends in the message; the person can do by hand what we couldn't. An installed copy that
// isn't proven to be ours is neither opened nor replaced, and a running one is not made to quit.
class RelocationRun {
public:
    using IsCancelled = std::function<bool()>;  // the program ends: nothing may be begun any more

    // The arguments outlive it.
    RelocationRun(const RelocatorDeps& deps, const RelocationRecord& record, const IsCancelled& isCancelled);

    RelocationOutcome perform();

private:
    using Fields = std::vector<std::string>;

    Relocation::Decision decide() const;
    bool isOurs(const std::string& bundle) const;

    // Whether the installed copy is left alone by the decision, or is ours.
    bool mayCarryOut(const Relocation::Decision& decision) const;

    // What ends the launch, where another copy that runs does.
    std::optional<RelocationOutcome> settleWith(const std::vector<OtherCopy>& others,
                                                const Relocation::Decision& decision) const;
    std::optional<RelocationOutcome> takeOver(const OtherCopy& other) const;

    RelocationOutcome carryOut(const Relocation::Decision& decision) const;
    RelocationOutcome stay() const;
    RelocationOutcome openInstalled() const;
    RelocationOutcome install(Relocation::Decisions::Install how) const;
    // Opens the installed copy once we are gone.
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
