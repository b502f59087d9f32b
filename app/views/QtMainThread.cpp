#include "app/views/QtMainThread.h"

#include <QMetaObject>
#include <QObject>
#include <QTimer>
#include <mutex>
#include <utility>

namespace tarnik {
namespace {

RepeatingTimer repeat(Seconds interval, MainThread::Task task) {
    auto* timer = new QTimer;
    timer->setInterval(std::chrono::ceil<std::chrono::milliseconds>(interval));
    // The task may end the timer, which must not take the task away from under itself.
    const auto shared = std::make_shared<MainThread::Task>(std::move(task));
    QObject::connect(timer, &QTimer::timeout, timer, [shared] { (*std::shared_ptr(shared))(); });
    timer->start();
    return RepeatingTimer([timer] {
        timer->stop();
        timer->deleteLater();
    });
}

}  // namespace

// What other threads post to, which may outlive the loop.
struct QtMainThread::Mailbox {
    std::mutex mutex;
    std::unique_ptr<QObject> receiver = std::make_unique<QObject>();  // guarded by mutex
};

QtMainThread::QtMainThread() : mailbox_(std::make_shared<Mailbox>()) {}

QtMainThread::~QtMainThread() {
    std::unique_ptr<QObject> receiver;
    const std::lock_guard lock(mailbox_->mutex);
    receiver = std::move(mailbox_->receiver);
}

MainThread QtMainThread::operations() const {
    return {.post =
                [mailbox = mailbox_](MainThread::Task task) {
                    const std::lock_guard lock(mailbox->mutex);
                    if (!mailbox->receiver) return;
                    QMetaObject::invokeMethod(mailbox->receiver.get(), std::move(task), Qt::QueuedConnection);
                },
            .repeat = repeat};
}

}  // namespace tarnik
