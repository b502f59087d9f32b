#include "app/views/ProgressBar.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>
#include <cmath>

#include "app/views/Colours.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int thickness = 4;
constexpr int stepMilliseconds = 40;
constexpr int phaseStep = 16;
constexpr double segmentShare = 0.28;

void paintBar(QPainter& painter, const QRectF& bar, const QColor& colour) {
    painter.setBrush(colour);
    painter.drawRoundedRect(bar, thickness / 2.0, thickness / 2.0);
}

}  // namespace

ProgressBar::ProgressBar(int height, QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setFixedHeight(height);
    auto policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    hide();
}

void ProgressBar::setProgress(const DownloadProgress& progress) {
    setRange(0, progress.permille ? 1000 : 0);
    if (progress.permille) setValue(*progress.permille);
    if (const auto text = qtText(progress.text); text != accessibleDescription())
        setAccessibleDescription(text);
    updateTimer();
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const int top = (height() - thickness) / 2;  // a whole pixel
    const QRectF track(0, top, width(), thickness);
    paintBar(painter, track, lineColour(palette()));

    QRectF filled(track);
    if (isIndeterminate()) {
        const double position = 0.5 - 0.5 * std::cos(phase_ / 1000.0 * 2 * M_PI);
        filled.setLeft(width() * (1 - segmentShare) * position);
        filled.setWidth(width() * segmentShare);
    } else {
        if (value() == 0) return;
        filled.setWidth(std::max<double>(thickness, width() * value() / 1000.0));
    }
    paintBar(painter, filled, accentColour(palette()));
}

void ProgressBar::showEvent(QShowEvent*) {
    updateTimer();
}

void ProgressBar::hideEvent(QHideEvent*) {
    timer_.stop();
}

void ProgressBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) return QProgressBar::timerEvent(event);
    phase_ = (phase_ + phaseStep) % 1000;
    update();
}

void ProgressBar::updateTimer() {
    const bool moves = isIndeterminate() && isVisible() &&
                       style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (moves == timer_.isActive()) return;
    if (moves) {
        timer_.start(stepMilliseconds, this);
    } else {
        timer_.stop();
    }
}

}  // namespace tarnik
