#pragma once

#include <QBasicTimer>
#include <QProgressBar>

namespace tarnik {

// Says quietly that something is being worked on. Moves only while it can be seen, and not at all where the
// person wants no animations.
class Spinner : public QProgressBar {
public:
    Spinner(int side, int lineHeight, QWidget* parent = nullptr);

    QSize sizeHint() const override { return size(); }
    QSize minimumSizeHint() const override { return size(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    const int side_;
    QBasicTimer timer_;
    int step_ = 0;
};

}  // namespace tarnik
