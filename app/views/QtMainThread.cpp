#include "app/views/QtMainThread.h"

#include <QMetaObject>
#include <QObject>
#include <QTimer>
#include <utility>

#include "core/foundation/Mutex.h"

namespace tarnik {
namespace {

RepeatingTimer repeat(Seconds interval, MainThread::Task task) {
    auto* timer = new QTimer;
    timer->setInterval(std::chrono::ceil<std::chrono::milliseconds>(interval));
    // The task may destroy the timer while the task runs, so the call shares the ownership of the task.
    const auto shared = std::make_shared<MainThread::Task>(std::move(task));
    QObject::connect(timer, &QTimer::timeout, timer, [shared] { (*std::shared_ptr(shared))(); });
    timer->start();
    return RepeatingTimer([timer] {
        timer->stop();
        timer->deleteLater();
    });
}

}  // namespace

// The receiver of posted tasks. It may outlive its QtMainThread, because other threads share it.
struct QtMainThread::Mailbox {
    Mutex mutex;
    std::unique_ptr<QObject> receiver TARNIK_GUARDED_BY(mutex) = std::make_unique<QObject>();
};

QtMainThread::QtMainThread() : mailbox_(std::make_shared<Mailbox>()) {}

QtMainThread::~QtMainThread() {
    std::unique_ptr<QObject> receiver;
    const MutexLock lock(mailbox_->mutex);
    receiver = std::move(mailbox_->receiver);
}

MainThread QtMainThread::operations() const {
    return {.post =
                [mailbox = mailbox_](MainThread::Task task) {
                    const MutexLock lock(mailbox->mutex);
                    if (!mailbox->receiver) return;
                    QMetaObject::invokeMethod(mailbox->receiver.get(), std::move(task), Qt::QueuedConnection);
                },
            .repeat = repeat};
}

}  // namespace tarnik
