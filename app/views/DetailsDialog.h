#pragma once

#include <QDialog>
#include <functional>
#include <string>

class QPushButton;

namespace tarnik {

class Announcer;
class FocusRing;
class ProgressBar;
class TerminalBox;
class TextLabel;

// Shows a report before the user copies it, so that nothing leaves this machine unseen. Not modal.
class DetailsDialog : public QDialog {
public:
    explicit DetailsDialog(QWidget* parent);

    // Shows the report and enables "Copy". Until then the dialog shows that the report is being made.
    void setReport(const std::string& report);
    bool hasReport() const;

    // Shows a sentence that says why no report could be made.
    void setFailure(const std::string& sentence);

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void say(const std::string& sentence);

    QString report_;  // what "Copy" copies

    // Children.
    TextLabel* text_;
    ProgressBar* progress_;
    TerminalBox* box_;
    QPushButton* copy_;
    Announcer* announcer_;
    FocusRing* ring_;
};

}  // namespace tarnik
