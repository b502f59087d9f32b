#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "app/model/MenuContent.h"
#include "app/views/MainView.h"

namespace tarnik {

// The only window. Its size is 460 by 560 at a system font of 13 pixels, and grows with the font. On a
// smaller screen the window has the available size and its contents scroll. Closing hides the window. Main
// thread only.
class MainWindow : public QWidget {
public:
    MainWindow(WindowContent content, MainView::OnIntent onIntent);

    void setContent(const WindowContent& content);

    // The link appears as soon as the window shows a link field.
    void fillLinkField(const std::string& link);

    // Shows the window in front with the focus. The first call centres the window. Later calls restore
    // its last position, or centre it if that screen is gone. A visible window is not moved.
    void present();

    // Called in this order when the user closes the window.
    struct OnClose {
        std::function<void()> closed;
        std::function<bool()> stays;  // keeps the window visible if it returns true
    };
    void setOnClose(OnClose onClose);

    // `onSeen` is called when the window becomes active or is restored after it was minimised.
    void setOnSeen(std::function<void()> onSeen) { onSeen_ = std::move(onSeen); }

    // Makes the keyboard shortcuts of the menu work in the window. Call it once.
    void setMenuKeys(const MenuContent& menu, const std::function<void(MenuContent::Action)>& onAction);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSize outerSize(QSize inner) const;
    QPoint positionToShow() const;

    void makeView();
    void fitScreen();
    void screenChanged();
    void moveIntoScreen();

    WindowContent content_;  // used until the view exists
    std::string link_;       // used until the view exists
    MainView::OnIntent onIntent_;
    MainView* view_ = nullptr;  // a child, made when the window is first shown
    OnClose onClose_;
    std::function<void()> onSeen_;
    std::optional<QPoint> position_;       // std::nullopt before the window is shown
    QMetaObject::Connection areaChanges_;  // of the current screen
};

}  // namespace tarnik
