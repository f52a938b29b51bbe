// SPDX-License-Identifier: Apache-2.0
#include "fuzztarget.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstdlib>

#include <kora/host.h>

namespace {

// Nothing of the library's may come to Qt's message handler.
void onQtMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    expect(false, qPrintable(QStringLiteral("message of Qt: ") + message));
}

void onLogMessage(int, const QString &, const QString &formatted, void *)
{
    static volatile int total = 0;
    total = total + formatted.size();
}

} // namespace

std::vector<FuzzTarget> &fuzzTargets()
{
    static std::vector<FuzzTarget> targets;
    return targets;
}

bool addFuzzTarget(const FuzzTarget &target)
{
    fuzzTargets().push_back(target);
    return true;
}

void expect(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "FIND: %s\n", what);
        std::abort();
    }
}

QString fuzzFolder()
{
    static const QTemporaryDir folder;
    expect(folder.isValid(), "no temporary folder");
    return folder.path();
}

QJsonObject jsonObject(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

void prepareFuzzing(int &argc, char **argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static const QApplication application(argc, argv);
    KORA::INTERNAL::koraInit(QIcon());
    qInstallMessageHandler(onQtMessage);
    KORA::koraInstallLogMessageHandlerPrivate(onLogMessage, nullptr);
}
