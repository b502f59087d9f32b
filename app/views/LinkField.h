#pragma once

#include <QLineEdit>
#include <QTimer>

namespace tarnik {

// Where a link is typed. Its caret blinks as it does on this desktop, and stands still when for a while
// nothing was done with it: a window that is left open wakes nobody. One at a time, since the toolkit has one
// rate for all carets.
class LinkField : public QLineEdit {
public:
    explicit LinkField(QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    QTimer rest_;
};

}  // namespace tarnik
