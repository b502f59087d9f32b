#include "app/desktop/QuitRequests.h"

#include <QApplication>
#include <QFileOpenEvent>
#include <QTimer>
#include <vector>

#include <gtest/gtest.h>

#include "app/desktop/OpenedLinks.h"
#include "app/views/Alert.h"

namespace tarnik {
namespace {

void sendQuit() {
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    EXPECT_TRUE(quit.isAccepted());
}

// The second request arrives while the first one waits for the shutdown.
TEST(QuitRequests, waitForTheShutdownBelowAModalAlert) {
    int quits = 0;
    bool hasStopped = false;
    const QuitRequests requests({.isQuitting = [&] { return quits > 0; },
                                 .quit =
                                     [&] {
                                         ++quits;
                                         QTimer::singleShot(0, qApp, [&] {
                                             sendQuit();
                                             hasStopped = true;
                                             QCoreApplication::exit();
                                         });
                                     }});
    showAlert("title", "text");
    EXPECT_TRUE(QApplication::activeModalWidget());
    QTimer::singleShot(0, qApp, [&] {
        sendQuit();
        EXPECT_TRUE(hasStopped);
    });
    QApplication::exec();
    EXPECT_EQ(quits, 1);
}

TEST(OpenedLinks, keepTheLatestLinkForTheHandler) {
    OpenedLinks links;
    const auto open = [](const QUrl& url) {
        QFileOpenEvent event(url);
        QCoreApplication::sendEvent(qApp, &event);
    };
    open(QUrl("tarnik://connect?code=older"));
    open(QUrl("tarnik://connect?code=a%20b"));
    std::vector<std::string> opened;
    links.setHandler([&](const std::string& link) { opened.push_back(link); });
    open(QUrl::fromLocalFile("tarnik://[not a link"));
    EXPECT_EQ(opened, (std::vector<std::string>{"tarnik://connect?code=a%20b", "tarnik://[not a link"}));
}

}  // namespace
}  // namespace tarnik
