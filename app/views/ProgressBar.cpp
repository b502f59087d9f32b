#include "app/views/ProgressBar.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>
#include <algorithm>

#include "app/views/Colours.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int stepMilliseconds = 33;
constexpr int travelMilliseconds = 1500;
constexpr int firstMilliseconds = 500;  // a bar that starts here doesn't look like a progress value
constexpr double segmentShare = 1.0 / 3;
constexpr double dashShare = 0.5;   // of the distance of two dashes
constexpr double dashDistance = 3;  // in multiples of the bar's thickness

void paintBar(QPainter& painter, const QRectF& bar, const QColor& colour) {
    const double radius = std::min(bar.height(), bar.width()) / 2;
    painter.setBrush(colour);
    painter.drawRoundedRect(bar, radius, radius);
}

}  // namespace

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    hide();
}

void ProgressBar::setProgress(const DownloadProgress& progress) {
    setRange(0, progress.permille ? 1000 : 0);
    if (progress.permille) setValue(*progress.permille);
    if (const auto text = qtText(progress.text); text != accessibleDescription())
        setAccessibleDescription(text);
    updateTimer();
}

bool ProgressBar::isAnimated() const {
    return style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
}

// A right-to-left layout mirrors the direction.
void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (layoutDirection() == Qt::RightToLeft) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    paintBar(painter, rect(), trackColour(palette()));
    if (!isIndeterminate()) {
        const double filled = std::max<double>(height(), width() * value() / 1000.0);
        if (value() > 0) paintBar(painter, QRectF(0, 0, filled, height()), accentColour(palette()));
    } else if (isAnimated()) {
        paintSegment(painter);
    } else {
        paintDashes(painter);
    }
}

void ProgressBar::paintSegment(QPainter& painter) const {
    const auto elapsed = travel_.isValid() ? travel_.elapsed() : 0;
    const double phase =
        static_cast<double>((elapsed + firstMilliseconds) % travelMilliseconds) / travelMilliseconds;
    // The segment enters at one end and leaves at the other.
    const double left = (phase * (1 + segmentShare) - segmentShare) * width();
    const QRectF segment = QRectF(left, 0, segmentShare * width(), height()).intersected(rect());
    paintBar(painter, segment, accentColour(palette()));
}

void ProgressBar::paintDashes(QPainter& painter) const {
    const double distance = dashDistance * height();
    for (double left = 0; left + distance * dashShare <= width(); left += distance)
        paintBar(painter, QRectF(left, 0, distance * dashShare, height()), accentColour(palette()));
}

void ProgressBar::showEvent(QShowEvent*) {
    travel_.start();
    updateTimer();
}

void ProgressBar::hideEvent(QHideEvent*) {
    timer_.stop();
}

void ProgressBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) return QProgressBar::timerEvent(event);
    update();
}

void ProgressBar::updateTimer() {
    // The children of a minimised window count as visible.
    const bool moves = isIndeterminate() && isVisible() && !window()->isMinimized() && isAnimated();
    if (moves == timer_.isActive()) return;
    if (moves) {
        timer_.start(stepMilliseconds, this);
    } else {
        timer_.stop();
    }
}

}  // namespace tarnik
