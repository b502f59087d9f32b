#pragma once

#include <QLineEdit>
#include <QTimer>

namespace tarnik {

// The input field for a link. Its caret blinks at the desktop's rate and stops 10 s after the last input, so
// an open window does not wake the processor. Only one field may exist, because Qt has one rate for all
// carets.
class LinkField : public QLineEdit {
public:
    explicit LinkField(QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    QTimer inputTimeout_;
};

}  // namespace tarnik
