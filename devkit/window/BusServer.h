#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QSocketNotifier>
#include <cstdlib>
#include <iostream>
#include <string>

#include <unistd.h>

#include "devkit/window/LineProtocol.h"

namespace devkit {

// Runs a server of the session bus until the end of standard input, and passes it the lines of the input.
// Prints "ready" when the server has started. Returns the program's exit status.
template <class Server>
int runBusServer(int argc, char** argv, const char* role) {
    const QCoreApplication application(argc, argv);
    Server server;
    if (!server.start()) {
        std::cerr << "can't be " << role << ": "
                  << QDBusConnection::sessionBus().lastError().message().toStdString() << '\n';
        return EXIT_FAILURE;
    }
    say({{"ready", true}});
    StandardInput commands;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        if (!commands.read([&](const std::string& line) { server.obey(line); })) QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}

}  // namespace devkit
