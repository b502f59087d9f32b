#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

#include "app/model/DownloadProgress.h"

namespace tarnik {

// A thin progress bar. While the total is unknown, a segment travels along the bar. If the user has disabled
// animations, the bar is a row of dashes instead.
class ProgressBar : public QProgressBar {
public:
    explicit ProgressBar(QWidget* parent);

    void setProgress(const DownloadProgress& progress);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool isIndeterminate() const { return maximum() == 0; }
    bool isAnimated() const;
    void updateTimer();
    void paintSegment(QPainter& painter) const;
    void paintDashes(QPainter& painter) const;

    QBasicTimer timer_;  // runs only while the segment moves
    QElapsedTimer travel_;
};

}  // namespace tarnik
