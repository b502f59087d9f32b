#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include "app/model/DownloadProgress.h"

namespace tarnik {

// A thin progress bar. While the total is unknown, a segment moves along it, unless the user disabled
// animations. It keeps its place in a layout while it is hidden.
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
    int phase_ = 350;    // in thousandths of a period; the initial one doesn't look like a progress value
};

}  // namespace tarnik
