#include "app/texts/ProgramTexts.h"

namespace tarnik::ProgramTexts {

std::string usage(CommandLine::Build build) {
    std::string text =
        "usage: tarnik [OPTION...] [LINK]\n"
        "       tarnik --console [OPTION...] [LINK]\n"
        "\n"
        "  LINK                       pair with this link; a copy that runs already is given it\n"
        "  --console                  run the whole machine in this terminal, without a window\n"
        "  --link LINK                the same as LINK\n"
        "  --node-home DIR            keep the helper in DIR instead of ~/.tarnik/node\n"
        "  --connected-after SECONDS  how long a pairing must last to count as connected (15)\n"
        "  --at-login                 the system starts it; the window comes only if it is needed\n"
        "  --list-screens             name every state of the window\n"
        "  --show-screen NAME         show that state, without doing anything; --dark in dark colours\n"
        "  --write-screens DIR        write a picture of each into DIR\n"
        "  --switches on|off          console: how the two simulated privacy switches stand (off)\n"
        "  --driver-output            console: show what the desktop driver prints\n";
    if (build == CommandLine::Build::development) {
        text +=
            "  --bundle DIR               take the settings and the driver from this bundle folder\n"
            "  --keep-awake PATH          what the helper runs to hold the machine awake\n";
    }
    return text +
           "  --version                  show the version and end\n"
           "  --help                     show this and end\n";
}

std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner) {
    const std::string uses = " uses the node folder " + home + ": ";
    if (!owner) return "Another tarnik" + uses + "quit that one first.";
    const std::string process = "Another tarnik (process " + std::to_string(owner->pid);
    return owner->face == NodeHomeOwner::Face::console
               ? process + ", in a terminal)" + uses + "type quit there first."
               : process + ", with a window)" + uses + "use that one, or quit it first.";
}

}  // namespace tarnik::ProgramTexts
