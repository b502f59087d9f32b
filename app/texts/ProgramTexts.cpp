#include "app/texts/ProgramTexts.h"

namespace tarnik::ProgramTexts {

std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner) {
    const std::string uses = " uses the node folder " + home + ": ";
    if (!owner) return "Another tarnik" + uses + "quit that one first.";
    const std::string process = "Another tarnik (process " + std::to_string(owner->pid);
    switch (owner->face) {
        case NodeHomeOwner::Face::window:
            return process + ", with a window)" + uses + "use that one, or quit it first.";
        case NodeHomeOwner::Face::console:
            return process + ", in a terminal)" + uses + "type quit there first.";
        case NodeHomeOwner::Face::service:
            return process + ", in the background)" + uses + "stop it with tarnik quit first.";
    }
    return process + ")" + uses + "quit it first.";
}

}  // namespace tarnik::ProgramTexts
