#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "app/model/WindowContent.h"

class QBoxLayout;
class QScrollArea;

namespace tarnik {

class Announcer;
class ConnectSection;
class SwitchesSection;

// The contents of the window: draws a WindowContent from top to bottom and passes on what is clicked or
// typed. Main thread. What doesn't change from one content to the next keeps its widgets, with focus,
// selection and scrolling.
class MainView : public QWidget {
public:
    // `pasted` is what stands in the link field at that moment.
    using OnIntent = std::function<void(const WindowIntent& intent, const std::string& pasted)>;

    MainView(const WindowContent& content, OnIntent onIntent);

    void setContent(const WindowContent& content);

    // As if it had been typed.
    void fillLinkField(const std::string& link);

protected:
    // Return and Escape, whatever has the keyboard; scrolling, where no control has it.
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makePage();
    void draw();
    void settleTabOrder();
    void settleFocus(QWidget* before);
    bool isInView(const QWidget* widget) const;
    void scrollToFocus();
    void pressReturn();
    void ask(WindowIntent intent);

    const OnIntent onIntent_;
    WindowContent content_;
    ConnectSection* connect_ = nullptr;  // a child, like those below
    SwitchesSection* switches_ = nullptr;
    Announcer* announcer_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QBoxLayout* pageLayout_ = nullptr;
};

}  // namespace tarnik
