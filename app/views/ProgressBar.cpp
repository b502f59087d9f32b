#include "app/views/ProgressBar.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTimerEvent>
#include <cmath>

#include "app/views/Colours.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int thickness = 6;
constexpr int stepMilliseconds = 40;
constexpr int step = 16;  // in thousandths of a round
constexpr double piece = 0.28;

}  // namespace

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setFixedHeight(thickness);
    hide();
}

void ProgressBar::setProgress(const DownloadProgress& progress) {
    setRange(0, progress.permille ? 1000 : 0);
    if (progress.permille) setValue(*progress.permille);
    if (const auto text = qtText(progress.text); text != accessibleDescription())
        setAccessibleDescription(text);
    settleTimer();
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    QPainterPath groove;
    groove.addRoundedRect(QRectF(rect()), thickness / 2.0, thickness / 2.0);
    painter.fillPath(groove, lineColour(palette()));

    QRectF done(rect());
    if (isWandering()) {
        const double place = 0.5 - 0.5 * std::cos(wandered_ / 1000.0 * 2 * M_PI);
        done.setLeft(width() * (1 - piece) * place);
        done.setWidth(width() * piece);
    } else {
        done.setWidth(std::max<double>(thickness, width() * value() / 1000.0));
        if (value() == 0) return;
    }
    painter.setBrush(accentColour(palette()));
    painter.drawRoundedRect(done, thickness / 2.0, thickness / 2.0);
}

void ProgressBar::showEvent(QShowEvent*) {
    settleTimer();
}

void ProgressBar::hideEvent(QHideEvent*) {
    timer_.stop();
}

void ProgressBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) return QProgressBar::timerEvent(event);
    wandered_ = (wandered_ + step) % 1000;
    update();
}

void ProgressBar::settleTimer() {
    const bool moves = isWandering() && isVisible() &&
                       style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (moves == timer_.isActive()) return;
    if (moves)
        timer_.start(stepMilliseconds, this);
    else
        timer_.stop();
}

}  // namespace tarnik
