#include "app/console/WindowLines.h"

namespace tarnik {
namespace {

std::string buttonText(const WindowContent::Button& button) {
    return "[" + button.title + "]" + (button.enabled ? "" : " (not now)");
}

std::string rowText(const WindowContent::SwitchRow& row) {
    std::string text = (row.on ? "(x) " : "( ) ") + row.title + ": " + row.description;
    if (row.button) text += " " + buttonText(*row.button);
    if (row.hint) text += " " + *row.hint;
    return text;
}

std::string boxText(const WindowContent::CheckBox& box) {
    using State = WindowContent::CheckBox::State;
    const char* const mark = box.state == State::on ? "[x] " : box.state == State::off ? "[ ] " : "[-] ";
    return mark + box.title;
}

}  // namespace

std::vector<std::string> windowLines(const WindowContent& content, WallTime now) {
    std::vector<std::string> lines;
    const auto add = [&](const std::string& text) {
        if (!text.empty()) lines.push_back(text);
    };
    add(content.heading);
    for (const auto& paragraph : content.paragraphs) add(paragraph);
    if (content.trouble) add(content.trouble->sentenceAt(now));
    if (content.card)
        for (const auto& [label, value] : content.card->rows)
            add(std::string(label).append(": ").append(value));
    if (content.linkField) add("<" + content.linkField->placeholder + ">");
    if (content.message) add(content.message->text);
    if (content.message && content.message->cause) add(*content.message->cause);
    std::string buttons;
    for (const auto& button : content.buttons) buttons += (buttons.empty() ? "" : " ") + buttonText(button);
    add(buttons);
    add(content.switches.heading);
    add(content.switches.text);
    for (const auto& row : content.switches.rows) add(rowText(row));
    if (content.startAtLogin) add(boxText(*content.startAtLogin));
    return lines;
}

std::string menuLine(const MenuContent& menu) {
    std::string text;
    for (const auto& entry : menu.entries) {
        if (!entry.isSeparator()) text += (text.empty() ? "" : " | ") + std::string(entry.title);
    }
    return text;
}

}  // namespace tarnik
