#include "app/texts/ProgramTexts.h"

namespace tarnik::ProgramTexts {

std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner) {
    const std::string uses = " uses the node folder " + home + ". ";
    if (!owner) return "Another tarnik" + uses + "Quit it first.";
    const std::string process = "Another tarnik (process " + std::to_string(owner->pid);
    switch (owner->face) {
        case NodeHomeOwner::Face::window:
            return process + ", with a window)" + uses + "Use that one, or quit it first.";
        case NodeHomeOwner::Face::console:
            return process + ", in a terminal)" + uses + "Type quit there first.";
        case NodeHomeOwner::Face::service:
            return process + ", in the background)" + uses + "End it with tarnik quit first.";
    }
    return process + ")" + uses + "Quit it first.";
}

}  // namespace tarnik::ProgramTexts
