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

// The relocation of one launch, from the facts to the outcome. Runs on the relocator's queue. Blocks while
// signatures are checked, bundles are copied, and another copy quits.
//
//   decision                  action                                                    outcome
//   stay                      clear quarantine below the install path                   stay
//   openInstalled             the same, then open the installed copy                    moving
//   install                   move into place, open, put the original into the trash    moving
//   cannotInstall, runHere    none                                                      a message
//
// Every failure ends in the message, which says what the user can do by hand. An installed copy whose
// signature doesn't prove that it is ours is neither opened nor replaced, and a running one is not asked to
// quit.
class RelocationRun {
public:
    using IsCancelled = std::function<bool()>;  // the program ends, so that nothing new may start

    // The arguments outlive this.
    RelocationRun(const RelocatorDeps& deps, const RelocationRecord& record, const IsCancelled& isCancelled);

    RelocationOutcome perform();

private:
    using Fields = std::vector<std::string>;

    Relocation::Decision decide() const;
    bool isOurs(const std::string& bundle) const;

    // Returns true if the decision leaves the installed copy alone, or if that copy is ours.
    bool mayCarryOut(const Relocation::Decision& decision) const;

    // Returns the outcome if another running copy ends this launch.
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
