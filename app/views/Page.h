#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"
#include "app/views/Fade.h"

namespace tarnik {

class ConnectSection;
class FocusRing;
class LoginBox;
class SwitchesSection;
class TitleLine;

// The whole page in its scroll area: title line, connect section, divider, switches section, check box.
// Places its parts on the Grid for its width.
class Page : public QWidget {
public:
    explicit Page(const OnButton& onButton);

    // Sets the width of the view, which includes the scroll bar. The bar uses the margin of the page, so the
    // grid doesn't change when it appears.
    void setViewWidth(int width);

    // Returns true if the new controls differ from the previous controls.
    bool setContent(const WindowContent& content);

    ConnectSection* connect() const { return connect_; }
    std::vector<QWidget*> controls() const;  // in tab order

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void arrange();

    std::optional<WindowContent::Section> section_;  // std::nullopt before the first content
    int viewWidth_;
    // Children.
    TitleLine* title_;
    ConnectSection* connect_;
    QWidget* divider_;
    SwitchesSection* switches_;
    LoginBox* login_;
    FocusRing* ring_;

    Fade fade_;
};

}  // namespace tarnik
