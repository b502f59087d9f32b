#include "app/views/TroubleLabel.h"

#include <QRegularExpression>
#include <QTimerEvent>
#include <chrono>

#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int secondMilliseconds = 1000;

}  // namespace

void TroubleLabel::setTrouble(const std::optional<HelperTrouble>& trouble) {
    if (trouble == trouble_) return;
    trouble_ = trouble;
    // Screen readers read the sentence of this moment. A name that follows the countdown would be read every
    // second.
    if (trouble_) updateAccessibleName(*this, trouble_->sentenceAt(std::chrono::system_clock::now()));
    write();
}

void TroubleLabel::write() {
    static const QRegularExpression afterNumber(QStringLiteral("(\\d) (?=\\S)"));
    auto text = qtText(trouble_ ? trouble_->sentenceAt(std::chrono::system_clock::now()) : std::string());
    // A line doesn't break between a number and its unit.
    text.replace(afterNumber, QStringLiteral("\\1\u00a0"));
    setPlainText(text.toStdString());
    if (isVisible() && heightForWidth(width()) != height()) onNewHeight_();
}

void TroubleLabel::showEvent(QShowEvent*) {
    write();
    if (!window()->isMinimized()) second_.start(secondMilliseconds, Qt::CoarseTimer, this);
}

void TroubleLabel::hideEvent(QHideEvent*) {
    second_.stop();
}

void TroubleLabel::timerEvent(QTimerEvent* event) {
    if (event->timerId() == second_.timerId()) write();
}

}  // namespace tarnik
