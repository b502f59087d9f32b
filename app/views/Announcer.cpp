#include "app/views/Announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "app/views/QtText.h"

class QAccessibleAnnouncementEvent;  // incomplete before Qt 6.8

namespace tarnik {
namespace {

// Screen readers speak a notification when it comes to be shown.
QAccessibleInterface* notificationFor(const QString&, QObject* object) {
    auto* announcer = dynamic_cast<Announcer*>(object);
    return announcer ? new QAccessibleWidget(announcer, QAccessible::Notification) : nullptr;
}

void tell(QAccessible::Event type, Announcer& announcer) {
    QAccessibleEvent event(&announcer, type);
    QAccessible::updateAccessibility(&event);
}

// The toolkit's own announcements, where it is new enough to have them: those are spoken everywhere.
template <typename Announcement>
void tellNews(Announcer& announcer, const QString& news) {
    if constexpr (requires { sizeof(Announcement); }) {
        Announcement announcement(&announcer, news);
        QAccessible::updateAccessibility(&announcement);
    } else {
        announcer.setAccessibleName(news);  // tells of the new name
        tell(QAccessible::ObjectShow, announcer);
        tell(QAccessible::Alert, announcer);
    }
}

}  // namespace

Announcer::Announcer(QWidget* parent) : QLabel(parent) {
    QAccessible::installFactory(notificationFor);  // once, however often it is called
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(0, 0, 1, 1);
}

void Announcer::announce(std::string_view news) {
    tellNews<QAccessibleAnnouncementEvent>(*this, qtText(news));
}

}  // namespace tarnik
