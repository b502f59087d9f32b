#include "app/views/Spinner.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

#include "app/views/Colours.h"

namespace tarnik {
namespace {

constexpr int spokes = 8;
constexpr int stepMilliseconds = 110;
constexpr int lift = 1;  // letters stand higher than the middle of their line

}  // namespace

Spinner::Spinner(int side, int lineHeight, QWidget* parent) : QProgressBar(parent), side_(side) {
    setRange(0, 0);
    setTextVisible(false);
    setFixedSize(side, std::max(side, lineHeight));
    hide();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0 - lift);
    const double radius = side_ * 0.4;
    const QColor ground = palette().color(QPalette::Window);
    const QColor front = mixed(palette().color(QPalette::WindowText), ground, 0.75);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (step_ - spoke + spokes) % spokes;  // 0 for the foremost
        const double share = std::max(0.18, 1.0 - age * 0.14);
        painter.setPen(QPen(mixed(front, ground, share), radius * 0.21, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.88));
        painter.rotate(360.0 / spokes);
    }
}

void Spinner::showEvent(QShowEvent*) {
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        timer_.start(stepMilliseconds, this);
}

void Spinner::hideEvent(QHideEvent*) {
    timer_.stop();
}

void Spinner::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) return QProgressBar::timerEvent(event);
    step_ = (step_ + 1) % spokes;
    update();
}

}  // namespace tarnik
