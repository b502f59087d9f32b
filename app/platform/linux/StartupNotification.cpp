#include "app/platform/linux/StartupNotification.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>

namespace tarnik {

// The toolkit has taken the click's name out of the process's environment, and tells the desktop when the
// first window is shown. This one is beside the screen, no window manager hears of it, and it goes at once.
void endStartupNotification(const Environment& environment) {
    if (environmentValue(environment, "DESKTOP_STARTUP_ID").empty()) return;
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return;
    if (std::ranges::any_of(QGuiApplication::topLevelWindows(), &QWindow::isVisible)) return;
    QWindow window;
    window.setFlags(Qt::Window | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    window.setGeometry(-2, -2, 1, 1);
    window.show();
}

}  // namespace tarnik
