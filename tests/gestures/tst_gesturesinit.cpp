// SPDX-License-Identifier: Apache-2.0
#include <QtTest/QTest>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QGestureRecognizer>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

#include <kora/gestures/gestures.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

namespace {

// The first recogniser that is registered afterwards gets the number behind the framework's.
bool nextTypeIs(int type)
{
    class Recognizer : public QGestureRecognizer
    {
    public:
        Result recognize(QGesture *, QObject *, QEvent *) override { return Ignore; }
    };
    return QGestureRecognizer::registerRecognizer(new Recognizer) == static_cast<Qt::GestureType>(type);
}

// Recognisers are registered once per process, so each case has a process of its own.
bool holdsInChild(const std::function<bool()> &check)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(check() ? 0 : 1);
    }
    int status = -1;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int argumentCount = 1;
char programName[] = "tst_gesturesinit";
char *arguments[] = {programName, nullptr};

} // namespace

class TestGesturesInit : public QObject
{
    Q_OBJECT

private slots:
    void registersOncePerProcess();
    void withoutApplicationItMayBeRepeated();
    void lateCallIsLogged();
};

void TestGesturesInit::registersOncePerProcess()
{
    QVERIFY(holdsInChild([] {
        QApplication app(argumentCount, arguments);
        return KORA::koraGesturesInit() && KORA::koraGesturesInit() && nextTypeIs(264);
    }));
}

void TestGesturesInit::withoutApplicationItMayBeRepeated()
{
    QVERIFY(holdsInChild([] {
        if (KORA::koraGesturesInit()) {
            return false;
        }
        {
            QCoreApplication app(argumentCount, arguments);
            if (KORA::koraGesturesInit()) {
                return false;
            }
        }
        QApplication app(argumentCount, arguments);
        return KORA::koraGesturesInit() && nextTypeIs(264);
    }));
}

void TestGesturesInit::lateCallIsLogged()
{
    QVERIFY(holdsInChild([] {
        QApplication app(argumentCount, arguments);
        LogRecorder log;
        return nextTypeIs(257) && KORA::koraGesturesInit() && log.takeMessages().size() == 1;
    }));
}

// No application here: the children have their own.
int main(int argc, char **argv)
{
    KORA::TestKit::useOffscreenPlatform();
    // Without it the children's applications warn.
    const QTemporaryDir runtimeDir;
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
    }
    QStringList args;
    for (int i = 0; i < argc; ++i) {
        args.append(QString::fromLocal8Bit(argv[i]));
    }
    TestGesturesInit test;
    return runKoraTest(test, args);
}

#include "tst_gesturesinit.moc"
