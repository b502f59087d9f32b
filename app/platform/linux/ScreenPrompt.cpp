#include "app/platform/linux/ScreenPrompt.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QUrl>
#include <QVariantMap>
#include <utility>

#include <unistd.h>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/OwnPicture.h"
#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

constexpr Seconds portalBound = std::chrono::seconds(30);  // it may have to be started

QString requestInterface() {
    return QStringLiteral("org.freedesktop.portal.Request");
}

}  // namespace

ScreenPrompt::ScreenPrompt(const QDBusConnection& bus, std::vector<std::string> pictureFolders)
    : bus_(bus), pictureFolders_(std::move(pictureFolders)) {
    patience_.setSingleShot(true);
    patience_.setInterval(std::chrono::duration_cast<std::chrono::milliseconds>(patience));
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] {
        bus_.send(busCall({desktopPortal().service, request_}, requestInterface(), QStringLiteral("Close")));
        done(false);
    });
}

void ScreenPrompt::ask(OnDone onDone) {
    onDone_ = std::move(onDone);
    const QString token = QStringLiteral("tarnik%1_%2").arg(::getpid()).arg(++count_);
    const QString sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    // The answer may come before we are told where it will.
    listen(desktopPortal().path + QStringLiteral("/request/%1/%2").arg(sender, token));
    patience_.start();

    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("modal"), true},
                              {QStringLiteral("interactive"), false}};
    auto call = busCall(desktopPortal(), QStringLiteral("org.freedesktop.portal.Screenshot"),
                        QStringLiteral("Screenshot"), {QString(), options});
    call.setAutoStartService(true);
    call_ = std::make_unique<QObject>();
    callBusAsync(bus_, call, portalBound, *call_, [this](const QDBusMessage& answer) {
        if (answer.type() != QDBusMessage::ReplyMessage) return done(false);
        const auto path = answer.arguments().value(0).value<QDBusObjectPath>().path();
        if (!path.isEmpty() && path != request_) listen(path);  // a portal of before 2017
    });
}

void ScreenPrompt::listen(const QString& request) {
    request_ = request;
    // Nobody else may say that the person agreed, or which file is to be removed.
    const BusSignal::Match match{.path = request,
                                 .interface = requestInterface(),
                                 .name = QStringLiteral("Response"),
                                 .service = desktopPortal().service};
    response_ = std::make_unique<BusSignal>(bus_, match,
                                            [this](const QDBusMessage& response) { responded(response); });
}

void ScreenPrompt::responded(const QDBusMessage& response) {
    constexpr uint success = 0;
    const bool permitted = response.arguments().value(0, 2U).toUInt() == success;
    const auto results = qdbus_cast<QVariantMap>(response.arguments().value(1));
    const QUrl picture(results.value(QStringLiteral("uri")).toString());
    if (picture.isLocalFile()) removeScreenshot(picture.toLocalFile().toStdString(), pictureFolders_);
    done(permitted);
}

void ScreenPrompt::done(bool permitted) {
    patience_.stop();
    if (response_) response_.release()->deleteLater();  // we may be inside it
    if (const auto onDone = std::exchange(onDone_, nullptr)) onDone(permitted);
}

}  // namespace tarnik
