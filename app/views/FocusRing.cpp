#include "app/views/FocusRing.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPainter>

#include "app/views/Colours.h"
#include "app/views/PlainStyle.h"

namespace tarnik {
namespace {

constexpr int outset = 4;
constexpr double ringWidth = 2;

}  // namespace

FocusRing::FocusRing(QWidget* page) : QWidget(page) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

void FocusRing::update() {
    const auto* button = dynamic_cast<const QAbstractButton*>(window()->focusWidget());
    // A style of the system draws its own ring.
    const bool shows = button && parentWidget()->isAncestorOf(button) && button->isVisible() &&
                       window()->isActiveWindow() && window()->testAttribute(Qt::WA_KeyboardFocusChange) &&
                       dynamic_cast<const PlainStyle*>(style());
    if (shows) {
        const QRect rect(button->mapTo(parentWidget(), QPoint()), button->size());
        setGeometry(rect.adjusted(-outset, -outset, outset, outset));
        raise();
    }
    setVisible(shows);
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accentColour(palette()), ringWidth));
    const double inset = ringWidth / 2;
    constexpr double radius = 10;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}

}  // namespace tarnik
