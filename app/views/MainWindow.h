#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "app/model/MenuContent.h"
#include "app/views/MainView.h"

namespace tarnik {

// The one window: 460 by 560, or as much of that as the screen has room for; the rest is scrolled to. It has
// a close and a minimise button. Closing hides it; it keeps its place. Main thread.
class MainWindow : public QWidget {
public:
    MainWindow(WindowContent content, MainView::OnIntent onIntent);

    void setContent(const WindowContent& content);

    // Shown whenever there is a link field.
    void fillLinkField(const std::string& link);

    // To the front, with the keyboard; in the middle of the screen the first time, later where it was. One
    // that is shown stays where it is.
    void present();

    // Runs each time the person closes it; it is hidden then unless `stays` says otherwise.
    struct OnClose {
        std::function<void()> closed;
        std::function<bool()> stays;
    };
    void setOnClose(OnClose onClose);

    // Makes the keys that the menu shows work in the window. Called once.
    void setMenuKeys(const MenuContent& menu, const std::function<void(MenuContent::Action)>& onAction);

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSize outerSize(QSize inner) const;
    QPoint placeToShow() const;

    void makeView();
    void fitScreen();
    void screenChanged();
    void moveIntoScreen();

    WindowContent content_;  // until there is a view
    std::string link_;       // until there is a view
    MainView::OnIntent onIntent_;
    MainView* view_ = nullptr;  // a child, once the window is on its way to the screen
    OnClose onClose_;
    std::optional<QPoint> place_;          // on the screen, once it has one
    QMetaObject::Connection areaChanges_;  // of the screen that the window is on
};

}  // namespace tarnik
