#include "app/views/QtMainThread.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QTimer>
#include <memory>
#include <mutex>
#include <utility>

namespace tarnik {
namespace {

// Guards the receiver of what other threads post: they may outlive it.
struct Mailbox {
    std::mutex mutex;
    QObject* receiver = nullptr;  // guarded by mutex
};

std::shared_ptr<Mailbox> makeMailbox() {
    auto mailbox = std::make_shared<Mailbox>();
    auto* receiver = new QObject(QCoreApplication::instance());  // goes with its parent
    mailbox->receiver = receiver;
    QObject::connect(receiver, &QObject::destroyed, [mailbox] {
        const std::lock_guard lock(mailbox->mutex);
        mailbox->receiver = nullptr;
    });
    return mailbox;
}

RepeatingTimer repeat(Seconds interval, MainThread::Task task) {
    auto* timer = new QTimer;
    timer->setInterval(std::chrono::ceil<std::chrono::milliseconds>(interval));
    // The task may end the timer, which must not take the task away from under itself.
    const auto shared = std::make_shared<MainThread::Task>(std::move(task));
    QObject::connect(timer, &QTimer::timeout, timer, [shared] {
        const auto running = shared;
        (*running)();
    });
    timer->start();
    return RepeatingTimer([timer] {
        timer->stop();
        timer->deleteLater();
    });
}

}  // namespace

MainThread qtMainThread() {
    const auto mailbox = makeMailbox();
    return {.post =
                [mailbox](MainThread::Task task) {
                    const std::lock_guard lock(mailbox->mutex);
                    if (!mailbox->receiver) return;
                    QMetaObject::invokeMethod(mailbox->receiver, std::move(task), Qt::QueuedConnection);
                },
            .repeat = repeat};
}

}  // namespace tarnik
