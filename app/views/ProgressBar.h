#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include "app/model/DownloadProgress.h"

namespace tarnik {

// How far a download has come: a thin bar, in which a piece wanders while nobody knows.
class ProgressBar : public QProgressBar {
public:
    explicit ProgressBar(QWidget* parent = nullptr);

    void setProgress(const DownloadProgress& progress);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool isWandering() const { return maximum() == 0; }
    void settleTimer();

    QBasicTimer timer_;
    int wandered_ = 350;  // in thousandths of a round; begins where it looks like no share of a whole
};

}  // namespace tarnik
