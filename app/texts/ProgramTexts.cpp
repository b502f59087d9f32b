#include "app/texts/ProgramTexts.h"

namespace tarnik::ProgramTexts {

std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner) {
    const std::string uses = " uses the node folder " + home + ": ";
    if (!owner) return "Another tarnik" + uses + "quit that one first.";
    const std::string process = "Another tarnik (process " + std::to_string(owner->pid);
    return owner->face == NodeHomeOwner::Face::console
               ? process + ", in a terminal)" + uses + "type quit there first."
               : process + ", with a window)" + uses + "use that one, or quit it first.";
}

}  // namespace tarnik::ProgramTexts
