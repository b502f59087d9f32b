#include "app/views/LoginBox.h"

#include <QStyle>
#include <algorithm>

#include "app/views/Grid.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

using State = WindowContent::CheckBox::State;

Qt::CheckState stateOf(State state) {
    switch (state) {
        case State::off: return Qt::Unchecked;
        case State::on: return Qt::Checked;
        case State::waiting: return Qt::PartiallyChecked;
    }
    return Qt::Unchecked;
}

}  // namespace

LoginBox::LoginBox(OnButton onButton, QWidget* parent) : QCheckBox(parent) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QCheckBox::clicked, this,
            [this, onButton = std::move(onButton)] { onButton(UserIntent(intent_)); });
    hide();
}

void LoginBox::setBox(const std::optional<WindowContent::CheckBox>& box) {
    setVisible(box.has_value());
    if (!box) return;
    intent_ = box->intent;
    if (const auto title = qtText(box->title).replace('&', "&&"); title != text()) setText(title);
    updateAccessibleName(*this, box->title);
    setTristate(box->state == State::waiting);
    setCheckState(stateOf(box->state));
    setEnabled(box->enabled);
}

int LoginBox::arrange(const Grid& grid, int top) {
    const int indicator = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this);
    const QRect symbol = grid.symbol(0, indicator);
    const int height = std::max(indicator, fontMetrics().height());
    const int middle = top + indicator / 2;
    const int width = std::min(sizeHint().width(), grid.columnLeft() + grid.columnWidth() - symbol.left());
    place(*this, {symbol.left(), middle - height / 2, width, height});
    return top + indicator;
}

}  // namespace tarnik
