#include "app/views/ButtonRow.h"

#include <algorithm>
#include <utility>

#include "app/views/Grid.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

constexpr int buttonHeight = 32;  // in points
constexpr int rowGap = 8;

}  // namespace

ButtonRow::ButtonRow(OnButton onButton, QWidget* parent) : QWidget(parent), onButton_(std::move(onButton)) {
    hide();
}

void ButtonRow::setButtons(const std::vector<WindowContent::Button>& buttons) {
    auto spare = std::exchange(buttons_, {});
    for (const auto& button : buttons) {
        buttons_.push_back(takeOrMake(button.intent, spare));
        buttons_.back()->setButton(button);
    }
    for (auto* unused : spare) {
        unused->hide();
        unused->deleteLater();  // not deleted now, because this code may run in the button's click handler
    }
    for (auto* button : buttons_) {
        button->raise();  // so that screen readers read the buttons in the order of the content
        button->show();
    }
    setVisible(!buttons_.empty());
}

std::vector<IntentButton*> ButtonRow::inTabOrder() const {
    auto ordered = buttons_;
    std::ranges::stable_partition(ordered, [](const auto* button) { return button->isFor(Key::defaultKey); });
    return ordered;
}

IntentButton* ButtonRow::buttonFor(Key key) const {
    const auto found =
        std::ranges::find_if(buttons_, [key](const auto* button) { return button->isFor(key); });
    return found == buttons_.end() ? nullptr : *found;
}

IntentButton* ButtonRow::takeOrMake(const UserIntent& intent, std::vector<IntentButton*>& from) {
    const auto found =
        std::ranges::find_if(from, [&](const auto* button) { return button->intent() == intent; });
    if (found == from.end()) return new IntentButton(onButton_, this);
    auto* button = *found;
    from.erase(found);
    return button;
}

int ButtonRow::arrange(const Grid& grid, int top, int earliest) {
    const int height = grid.scaled(buttonHeight);
    const int pitch = height + rowGap;
    const auto* const primary = buttonFor(Key::defaultKey);
    const int primaryWidth = primary ? std::min(primary->sizeHint().width(), grid.columnWidth()) : 0;

    // Rows of the other buttons from top to bottom, and the place of each button in its row.
    struct Spot {
        IntentButton* button;
        int left;
        int row;
        int width;
    };
    std::vector<Spot> spots;
    int left = 0;
    int row = 0;
    for (auto* button : buttons_) {
        if (button == primary) continue;
        const int width = std::min(button->sizeHint().width(), grid.columnWidth());
        if (left > 0 && left + width > grid.columnWidth()) {
            left = 0;
            ++row;
        }
        spots.push_back({button, left, row, width});
        left += width + rowGap;
    }
    const bool needsOwnRow = primary && !spots.empty() && left + primaryWidth > grid.columnWidth();
    const int last = row + (needsOwnRow ? 1 : 0);
    const int first = std::max(earliest, top - last * pitch);

    const int total = last * pitch + height;
    place(*this, {0, first, parentWidget()->width(), total});
    for (const auto& spot : spots)
        place(*spot.button, {grid.columnLeft() + spot.left, spot.row * pitch, spot.width, height});
    if (auto* button = buttonFor(Key::defaultKey))
        place(*button,
              {grid.columnLeft() + grid.columnWidth() - primaryWidth, last * pitch, primaryWidth, height});
    return first + total;
}

}  // namespace tarnik
