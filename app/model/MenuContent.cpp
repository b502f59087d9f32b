#include "app/model/MenuContent.h"

#include "app/model/WindowTexts.h"

namespace tarnik {

MenuContent MenuContent::with(UpdateCheck updates) {
    MenuContent menu;
    menu.entries.push_back({WindowTexts::openWindow, Action::openWindow, {}});
    if (updates == UpdateCheck::available)
        menu.entries.push_back({WindowTexts::checkForUpdates, Action::checkForUpdates, {}});
    menu.entries.push_back({});
    menu.entries.push_back({WindowTexts::quit, Action::quit, "q"});
    return menu;
}

}  // namespace tarnik
