#include "app/platform/linux/ScreenPrompt.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QUrl>
#include <QVariantMap>
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SessionBus.h"
#include "core/foundation/Paths.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {
namespace {

constexpr Seconds portalTimeout = std::chrono::seconds(30);  // the portal may have to be started

QString requestInterface() {
    return QStringLiteral("org.freedesktop.portal.Request");
}

constexpr std::time_t maxScreenshotAge = 600;  // in seconds

// Resolves the links in `path` and opens the folder. Returns an empty descriptor unless the folder is one of
// `folders` or below one of them.
UniqueFd openFolder(const std::string& path, const std::vector<std::string>& folders) {
    const auto folder = realPath(path);
    const bool isBelow = folder && std::ranges::any_of(folders, [&](const std::string& other) {
                             const auto top = realPath(other);
                             return top && (*folder + "/").starts_with(*top + "/");
                         });
    return isBelow ? UniqueFd(::open(folder->c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC))
                   : UniqueFd();
}

}  // namespace

ScreenPrompt::ScreenPrompt(const QDBusConnection& bus, std::vector<std::string> pictureFolders)
    : bus_(bus), pictureFolders_(std::move(pictureFolders)) {
    timer_.setSingleShot(true);
    timer_.setInterval(std::chrono::duration_cast<std::chrono::milliseconds>(timeout));
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
        bus_.send(busCall({desktopPortal().service, request_}, requestInterface(), QStringLiteral("Close")));
        done(false);
    });
}

void ScreenPrompt::ask(OnDone onDone) {
    onDone_ = std::move(onDone);
    const QString token = QStringLiteral("tarnik%1_%2").arg(::getpid()).arg(++count_);
    const QString sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    // Subscribes before the call, because the response may arrive before the reply that names its path.
    subscribe(desktopPortal().path + QStringLiteral("/request/%1/%2").arg(sender, token));
    timer_.start();

    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("modal"), true},
                              {QStringLiteral("interactive"), false}};
    auto call = busCall(desktopPortal(), QStringLiteral("org.freedesktop.portal.Screenshot"),
                        QStringLiteral("Screenshot"), {QString(), options});
    call.setAutoStartService(true);
    call_ = std::make_unique<QObject>();
    callBusAsync(bus_, call, portalTimeout, *call_, [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage) return done(false);
        const auto path = reply.arguments().value(0).value<QDBusObjectPath>().path();
        if (!path.isEmpty() && path != request_) subscribe(path);  // portals before 2017 choose another path
    });
}

void ScreenPrompt::subscribe(const QString& request) {
    request_ = request;
    // Only the portal itself may grant the permission or name the file to delete.
    const BusSignal::Match match{.path = request,
                                 .interface = requestInterface(),
                                 .name = QStringLiteral("Response"),
                                 .service = desktopPortal().service};
    response_ = std::make_unique<BusSignal>(bus_, match,
                                            [this](const QDBusMessage& response) { responded(response); });
}

void ScreenPrompt::responded(const QDBusMessage& response) {
    constexpr uint success = 0;
    const bool granted = response.arguments().value(0, 2U).toUInt() == success;
    const auto results = qdbus_cast<QVariantMap>(response.arguments().value(1));
    const QUrl picture(results.value(QStringLiteral("uri")).toString());
    if (picture.isLocalFile()) removeScreenshot(picture.toLocalFile().toStdString(), pictureFolders_);
    done(granted);
}

void ScreenPrompt::done(bool granted) {
    timer_.stop();
    if (response_) response_.release()->deleteLater();  // not deleted now, because its handler may be running
    if (const auto onDone = std::exchange(onDone_, nullptr)) onDone(granted);
}

void removeScreenshot(const std::string& path, const std::vector<std::string>& folders) {
    const std::string plain = standardize(path);
    const UniqueFd folder = openFolder(parentFolder(plain), folders);
    const std::string name = plain.substr(plain.rfind('/') + 1);
    struct stat found{};
    if (!folder || ::fstatat(folder.get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return;
    const bool isOurs = S_ISREG(found.st_mode) && found.st_uid == ::getuid() && found.st_nlink == 1;
    const bool isFresh = std::abs(std::time(nullptr) - found.st_mtime) <= maxScreenshotAge;
    if (isOurs && isFresh) ::unlinkat(folder.get(), name.c_str(), 0);
}

}  // namespace tarnik
