#include "app/model/MenuContent.h"

#include "app/texts/MenuTexts.h"

namespace tarnik {

MenuContent MenuContent::with(UpdateCheck updates) {
    MenuContent menu;
    menu.entries.push_back({MenuTexts::openWindow, Action::openWindow, {}});
    if (updates == UpdateCheck::available)
        menu.entries.push_back({MenuTexts::checkForUpdates, Action::checkForUpdates, {}});
    menu.entries.push_back({});
    menu.entries.push_back({MenuTexts::quit, Action::quit, "q"});
    return menu;
}

}  // namespace tarnik
