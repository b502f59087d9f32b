#include "app/views/TroubleLabel.h"

#include <QTimerEvent>
#include <chrono>

namespace tarnik {
namespace {

constexpr int secondMilliseconds = 1000;

}  // namespace

void TroubleLabel::setTrouble(const std::optional<HelperTrouble>& trouble) {
    trouble_ = trouble;
    write();
}

void TroubleLabel::write() {
    setPlainText(trouble_ ? trouble_->sentenceAt(std::chrono::system_clock::now()) : std::string());
}

void TroubleLabel::showEvent(QShowEvent*) {
    write();
    second_.start(secondMilliseconds, Qt::CoarseTimer, this);
}

void TroubleLabel::hideEvent(QHideEvent*) {
    second_.stop();
}

void TroubleLabel::timerEvent(QTimerEvent* event) {
    if (event->timerId() == second_.timerId()) write();
}

}  // namespace tarnik
