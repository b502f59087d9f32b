#include "app/views/ScreenGallery.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "app/views/Alert.h"
#include "app/views/DetailsDialog.h"
#include "app/views/MainWindow.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int failed = 1;
constexpr int misused = 2;

int fail(int status, const QString& text) {
    std::fprintf(stderr, "tarnik: %s\n", text.toUtf8().constData());
    return status;
}

enum class Visibility { onScreen, hidden };

// A palette, and what is added to the names of its pictures.
struct Look {
    const char* suffix;
    Appearance appearance;
    Contrast contrast = Contrast::usual;
};

constexpr Look looks[] = {{"-light", Appearance::light},
                          {"-dark", Appearance::dark},
                          {"-light-contrast", Appearance::light, Contrast::higher},
                          {"-dark-contrast", Appearance::dark, Contrast::higher}};

// Makes the window in the state, or only the alert or the details if the screen has them. The window's
// buttons do nothing.
std::unique_ptr<QWidget> makeScreen(const SampleScreen& screen, const Url& webOrigin, Visibility visibility) {
    if (screen.alert) {
        auto alert = makeAlert(screen.alert->title, screen.alert->body);
        alert->setAttribute(Qt::WA_DontShowOnScreen, visibility == Visibility::hidden);
        alert->show();
        return alert;
    }
    if (!screen.details.empty()) {
        auto details = std::make_unique<DetailsDialog>(nullptr);
        details->setAttribute(Qt::WA_DontShowOnScreen, visibility == Visibility::hidden);
        details->setReport(std::string(screen.details));
        details->show();
        return details;
    }
    auto state = screen.state;
    if (auto& trouble = state.helper.trouble) {  // its sentence follows the clock
        const auto passed = std::chrono::system_clock::now() - sampleTime();
        trouble->at += passed;
        if (trouble->nextTry) *trouble->nextTry += passed;
    }
    const auto content =
        WindowContent::of(state, {.webOrigin = webOrigin, .closing = screen.closing, .now = sampleTime()});
    auto before = content;  // the field selects its text when it becomes refused
    if (before.linkField) before.linkField->refused = false;
    auto window = std::make_unique<MainWindow>(before, [](const auto&, const auto&) {});
    window->setAttribute(Qt::WA_DontShowOnScreen, visibility == Visibility::hidden);
    window->fillLinkField(std::string(screen.typed));
    window->present();
    window->setContent(content);
    return window;
}

// Renders the window with `scale` pixels per point.
QImage picture(QWidget& window, int scale) {
    QPixmap pixmap(window.size() * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(window.palette().color(QPalette::Window));
    window.render(&pixmap);
    return pixmap.toImage();
}

// Uses the size for which the window is designed, so that the pictures are the same on every system.
void useDesignedFont() {
    constexpr int designSize = 13;
    QFont font = QApplication::font();
    font.setPixelSize(designSize);
    QApplication::setFont(font);
}

}  // namespace

int ScreenGallery::showScreen(std::string_view name, Appearance appearance) const {
    const auto found = std::ranges::find(screens, name, &SampleScreen::name);
    if (found == screens.end())
        return fail(misused, "there is no screen named " + qtText(name) + "; --list-screens names them");

    QApplication::setPalette(paletteFor(appearance));
    const auto window = makeScreen(*found, webOrigin, Visibility::onScreen);
    return QApplication::exec();
}

int ScreenGallery::writeScreens(const std::string& folder) const {
    const QDir place(qtText(folder));
    if (!place.mkpath(".")) return fail(failed, "the folder " + place.path() + " can't be made");
    useDesignedFont();
    QApplication::setDoubleClickInterval(0);  // so that no button waits

    for (const auto& look : looks) {
        QApplication::setPalette(paletteFor(look.appearance, {.contrast = look.contrast}));
        for (const auto& screen : screens) {
            const auto window = makeScreen(screen, webOrigin, Visibility::hidden);
            QApplication::processEvents();
            for (const int scale : {1, 2}) {
                const auto file =
                    place.filePath(qtText(screen.name) + look.suffix + (scale == 2 ? "@2x.png" : ".png"));
                if (!picture(*window, scale).save(file)) return fail(failed, file + " can't be written");
            }
        }
    }
    return 0;
}

}  // namespace tarnik
