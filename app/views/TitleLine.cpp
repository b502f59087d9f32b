#include "app/views/TitleLine.h"

#include <QPainter>
#include <QStyle>

#include "app/texts/WindowTexts.h"
#include "app/views/Grid.h"
#include "app/views/SymbolIcon.h"
#include "app/views/TextLabel.h"

namespace tarnik {

TitleLine::TitleLine(QWidget* parent)
    : QWidget(parent), icon_(applicationIcon()), name_(new TextLabel(TextLabel::Role::brand, this)) {
    name_->setPlainText(WindowTexts::product);
}

void TitleLine::arrange(const Grid& grid) {
    const int line = name_->lineHeight();
    place(*name_, grid.column((height() - line) / 2, line));
}

void TitleLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect square(Grid::margin, 0, height(), height());
    constexpr double margin = 3.0 / 58;  // of the icon, cropped
    const int crop = static_cast<int>(height() * margin);
    icon_.paint(&painter,
                QStyle::visualRect(layoutDirection(), rect(), square).adjusted(-crop, -crop, crop, crop));
}

}  // namespace tarnik
