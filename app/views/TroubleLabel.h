#pragma once

#include <QBasicTimer>
#include <functional>
#include <utility>

#include "app/model/HelperTrouble.h"
#include "app/views/TextLabel.h"

namespace tarnik {

// Describes a trouble of the helper. The sentence contains ages and a countdown, so it is written again every
// second while the user can see it. A hidden or minimised window costs no wake-up.
class TroubleLabel : public TextLabel {
public:
    // `onNewHeight` is called when a sentence needs another height than the label has.
    TroubleLabel(std::function<void()> onNewHeight, QWidget* parent)
        : TextLabel(Role::body, parent), onNewHeight_(std::move(onNewHeight)) {}

    void setTrouble(const std::optional<HelperTrouble>& trouble);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void write();

    const std::function<void()> onNewHeight_;
    std::optional<HelperTrouble> trouble_;
    QBasicTimer second_;  // runs only while the label is visible
};

}  // namespace tarnik
