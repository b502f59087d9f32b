#include "app/model/PageParts.h"

#include <utility>

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"

namespace tarnik::PageParts {

WindowContent pageWith(WindowContent::Section section, std::string_view heading) {
    WindowContent content;
    content.section = section;
    content.headingInEnglish = heading;
    content.heading = content.announcement = translated(heading);
    return content;
}

void setSymbol(WindowContent& content, std::string_view name, std::string_view accessibleName) {
    content.symbol = {.name = std::string(name), .accessibleName = translated(accessibleName)};
}

void setBusy(WindowContent& content) {
    content.progress = WindowContent::Busy{};
    content.progressAccessibleName = translated(WindowTexts::busyName);
}

void addParagraph(WindowContent& content, std::string_view text) {
    content.paragraphs.push_back(translated(text));
}

void setTerminal(WindowContent& content, std::string text, std::string_view accessibleName) {
    if (text.empty()) return;
    content.terminal = {.text = std::move(text), .accessibleName = translated(accessibleName)};
}

WindowContent::Button button(std::string_view title, UserIntent::Kind intent, WindowContent::Key key) {
    return {.title = translated(title),
            .accessibleName = translated(title),
            .intent = {.kind = intent},
            .key = key};
}

WindowContent::Button cancelButton() {
    return button(WindowTexts::cancel, UserIntent::Kind::cancelPairing, WindowContent::Key::cancelKey);
}

}  // namespace tarnik::PageParts
