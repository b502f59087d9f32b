#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "app/model/WindowContent.h"

class QScrollArea;

namespace tarnik {

class Announcer;
class LinkField;
class Page;

// The contents of the window. Draws a WindowContent and reports the intents of clicks and keys. Parts that
// don't change keep their widgets with focus, selection and scroll position. Main thread only.
class MainView : public QWidget {
public:
    // `pasted` is the current text of the link field.
    using OnIntent = std::function<void(const UserIntent& intent, const std::string& pasted)>;

    MainView(const WindowContent& content, OnIntent onIntent);

    void setContent(const WindowContent& content);

    // Sets the text of the link field without reporting an edit.
    void fillLinkField(const std::string& link);

protected:
    // The next key dismisses a refusal. The controls still get the key.
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Handles Return and Escape for the whole window, and the scroll keys that the focused control ignores.
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    LinkField* field() const;
    void draw();
    void updateTabOrder();
    void updateFocus(QWidget* before);
    bool isInView(const QWidget* widget) const;
    void scrollToFocus();
    void handleReturn();
    void dismissRefusal(const QKeyEvent& key);
    void report(const UserIntent& intent);

    const OnIntent onIntent_;
    WindowContent content_;
    Page* page_;  // a child; the widgets below are also children
    Announcer* announcer_;
    QScrollArea* const scroll_;
};

}  // namespace tarnik
