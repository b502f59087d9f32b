#include "app/views/Fade.h"

#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QVariantAnimation>
#include <utility>

namespace tarnik {
namespace {

constexpr int calmMilliseconds = 300;

// Shows a picture that disappears, and deletes itself afterwards.
class Overlay : public QWidget {
public:
    Overlay(QPixmap picture, int milliseconds, QWidget* parent)
        : QWidget(parent), picture_(std::move(picture)) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        animation_.setStartValue(1.0);
        animation_.setEndValue(0.0);
        animation_.setDuration(milliseconds);
        animation_.setEasingCurve(QEasingCurve::OutCubic);
        connect(&animation_, &QVariantAnimation::valueChanged, this, [this] { update(); });
        connect(&animation_, &QVariantAnimation::finished, this, &QObject::deleteLater);
        animation_.start();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(animation_.currentValue().toDouble());
        painter.drawPixmap(0, 0, picture_);
    }

private:
    const QPixmap picture_;
    QVariantAnimation animation_;
};

}  // namespace

void Fade::start() {
    const int duration = widget_.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget_);
    const bool isCalm = !lastChange_.isValid() || lastChange_.elapsed() > calmMilliseconds;
    lastChange_.start();
    delete overlay_.data();  // a picture of an older page
    if (duration <= 0 || !isCalm || !widget_.isVisible()) return;
    QPixmap picture(widget_.size() * widget_.devicePixelRatioF());
    picture.setDevicePixelRatio(widget_.devicePixelRatioF());
    picture.fill(widget_.palette().color(QPalette::Window));
    widget_.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    overlay_ = new Overlay(std::move(picture), duration, widget_.parentWidget());
    overlay_->setGeometry(widget_.geometry());
    overlay_->show();
}

}  // namespace tarnik
