#pragma once

#include <QLineEdit>
#include <QTimer>

#include "app/views/ButtonRow.h"

namespace tarnik {

// The input field for a link, with a button that takes the link from the clipboard while the field is empty.
// Its caret blinks at the desktop's rate and stops 10 s after the last input, so an open window does not wake
// the processor. Only one field may exist, because Qt has one rate for all carets.
class LinkField : public QLineEdit {
public:
    LinkField(OnButton onButton, QWidget* parent);

    // A field that becomes refused gets its text selected.
    void setField(const WindowContent::LinkField& field);

    // The style draws a refused field in the colour of errors.
    bool isRefused() const { return refused_; }
    IntentButton* pasteButton() const { return paste_; }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updatePaste();

    // Initialised before the child, because making a child sends an event.
    bool canPaste_ = false;
    bool refused_ = false;
    QTimer inputTimeout_;
    const OnButton onIntent_;
    IntentButton* paste_;  // a child
};

}  // namespace tarnik
