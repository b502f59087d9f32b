#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include "app/model/DownloadProgress.h"

namespace tarnik {

// A thin progress bar. While the total is unknown, a segment moves along the bar, unless the user has
// disabled animations. A hidden bar keeps its place in a layout.
class ProgressBar : public QProgressBar {
public:
    // The bar is painted in the middle of `height`.
    ProgressBar(int height, QWidget* parent);

    void setProgress(const DownloadProgress& progress);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool isIndeterminate() const { return maximum() == 0; }
    void updateTimer();

    QBasicTimer timer_;  // runs only while the segment moves
    int phase_ = 350;    // in thousandths of a period; the first phase doesn't look like a progress value
};

}  // namespace tarnik
