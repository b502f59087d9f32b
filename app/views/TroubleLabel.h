#pragma once

#include <QBasicTimer>

#include "app/model/HelperTrouble.h"
#include "app/views/TextLabel.h"

namespace tarnik {

// Describes a trouble of the helper. The sentence contains ages and a countdown, so it is written again every
// second while the user can see it. A hidden or minimised window costs no wake-up.
class TroubleLabel : public TextLabel {
public:
    explicit TroubleLabel(QWidget* parent) : TextLabel(Role::body, parent) {}

    void setTrouble(const std::optional<HelperTrouble>& trouble);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void write();

    std::optional<HelperTrouble> trouble_;
    QBasicTimer second_;  // runs only while the label is visible
};

}  // namespace tarnik
