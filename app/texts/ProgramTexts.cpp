#include "app/texts/ProgramTexts.h"

#include "core/foundation/Placeholders.h"

namespace tarnik::ProgramTexts {
namespace {

Text homeInUseBy(NodeHomeOwner::Face face) {
    switch (face) {
        case NodeHomeOwner::Face::window: return homeInUseByWindow;
        case NodeHomeOwner::Face::console: return homeInUseByConsole;
        case NodeHomeOwner::Face::service: break;
    }
    return homeInUseByService;
}

}  // namespace

std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner) {
    if (!owner) return filled(homeInUse, {{"home", home}});
    return filled(homeInUseBy(owner->face), {{"process", std::to_string(owner->pid)}, {"home", home}});
}

}  // namespace tarnik::ProgramTexts
