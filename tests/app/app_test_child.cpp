// A process that tests start, watch and kill.
//   write <folder> <tree> <count>           sets column widths, one after the other, and exits
//   write-and-stay <folder> <tree> <count>  the same, prints "put" and stays
//   instance <link> <text...>               primary: prints what it receives until "quit" comes;
//                                           secondary: sends its text and exits with 0 if received
//   refused <link>                          the same where secondaries are not allowed
//   hung <link>                             a primary that never turns its event loop

#include "app/app_settings.h"
#include "app/application_identity.h"
#include "app/instance_guard.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>

#ifdef __SANITIZE_THREAD__
// GLib and Qt are not built for the sanitizer, which therefore misses how event loops wake each
// other and how a QThread says that it has ended.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "race:libglib-2.0.so\nrace:~QWaitCondition\n";
}
#endif

namespace {
void print(const QByteArray& line) {
    std::fputs((line + '\n').constData(), stdout);
    std::fflush(stdout);
}

[[noreturn]] void stay() {
    for (;;)
        QThread::sleep(1000);
}

int write(const QStringList& arguments, bool isStaying) {
    DataFolder folder;
    folder.path = arguments.at(2);
    folder.applicationDir = arguments.at(2);
    AppSettings settings(folder);
    for (int n = 0; n < arguments.at(4).toInt(); ++n) {
        settings.setColumnWidth(arguments.at(3), n, n + 1);
        if (!isStaying && n % 10 == 0)
            settings.flush(); // many writes, so that the processes meet
    }
    if (isStaying) {
        print("put");
        stay();
    }
    return settings.flush(std::chrono::milliseconds(20000)) ? 0 : 1;
}

int serve(QCoreApplication& application, InstanceGuard& guard) {
    print("role=primary " + guard.serverName().toLatin1() + ' ' +
          QByteArray::number(guard.primaryPid()) + ' ' + guard.primaryUser().toUtf8());
    QObject::connect(&guard, &InstanceGuard::instanceStarted, [] { print("started"); });
    QObject::connect(&guard,
                     &InstanceGuard::receivedMessage,
                     &application,
                     [](quint32 instanceId, const QByteArray& message) {
                         print("received " + QByteArray::number(instanceId) + " <" +
                               message.left(40) + "> " + QByteArray::number(message.size()));
                         if (message == "quit")
                             QCoreApplication::quit();
                     });
    return QCoreApplication::exec();
}

int meet(QCoreApplication& application, const QStringList& arguments) {
    InstanceSetup setup;
    setup.isSecondaryAllowed = arguments.at(1) != QLatin1String("refused");
    setup.userData = QStringList(arguments.at(2));
    InstanceGuard guard(setup);
    if (guard.exitCode()) {
        print("exit");
        return *guard.exitCode();
    }
    if (guard.role() == InstanceGuard::Role::Primary) {
        if (arguments.at(1) == QLatin1String("hung")) {
            print("role=primary " + guard.serverName().toLatin1());
            stay();
        }
        return serve(application, guard);
    }
    const QByteArray text = arguments.value(3).toUtf8();
    const bool isSent = guard.sendMessage(text, std::chrono::milliseconds(1000));
    print((isSent ? "sent " : "lost ") + QByteArray::number(guard.primaryPid()) + ' ' +
          QByteArray::number(guard.instanceId()));
    return isSent ? 0 : 3;
}
} // namespace

int main(int argc, char** argv) {
    setApplicationIdentity();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString task = arguments.value(1);
    if (task == QLatin1String("write") || task == QLatin1String("write-and-stay"))
        return write(arguments, task == QLatin1String("write-and-stay"));
    return meet(application, arguments);
}
