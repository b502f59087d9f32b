#include "app/views/Announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "app/views/QtText.h"

class QAccessibleAnnouncementEvent;  // incomplete before Qt 6.8

namespace tarnik {
namespace {

// Gives the announcer the role of a notification. Screen readers speak a notification when it appears.
QAccessibleInterface* notificationFor(const QString&, QObject* object) {
    auto* announcer = dynamic_cast<Announcer*>(object);
    return announcer ? new QAccessibleWidget(announcer, QAccessible::Notification) : nullptr;
}

void notify(QAccessible::Event type, Announcer& announcer) {
    QAccessibleEvent event(&announcer, type);
    QAccessible::updateAccessibility(&event);
}

// Uses Qt's announcement event, which every screen reader speaks. Qt before 6.8 lacks this event. Then the
// new name of the notification is announced instead.
template <typename Announcement>
void announceText(Announcer& announcer, const QString& news) {
    if constexpr (requires { sizeof(Announcement); }) {
        Announcement announcement(&announcer, news);
        QAccessible::updateAccessibility(&announcement);
    } else {
        announcer.setAccessibleName(news);  // also notifies screen readers
        notify(QAccessible::ObjectShow, announcer);
        notify(QAccessible::Alert, announcer);
    }
}

}  // namespace

Announcer::Announcer(QWidget* parent) : QLabel(parent) {
    QAccessible::installFactory(notificationFor);  // ignores repeated calls
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(0, 0, 1, 1);
}

void Announcer::announce(std::string_view news) {
    announceText<QAccessibleAnnouncementEvent>(*this, qtText(news));
}

}  // namespace tarnik
