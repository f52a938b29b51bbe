// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

#include <kora/dev/session/benchsession.h>

#include <support/testmain.h>

#include "plantbench.h"

using namespace KORA::DEV;

class tst_Session : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void changesAreOnDiskWithinASecond();
    void sessionIsRestored();
    void damagedFilesAreKept_data();
    void damagedFilesAreKept();
    void anotherTakesOver();
    void failureIsToldOnce();
    void liesInTheStateFolder();

private:
    QString path(const QString &name = QStringLiteral("state/session.json")) const
    {
        return m_dir->filePath(name);
    }

    PlantLibrary m_library;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<BenchDocument> m_document;
    PlacedWidget *m_gauge = nullptr;
};

void tst_Session::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid() && m_library.data());
    m_document = std::make_unique<BenchDocument>(m_library.data());
    m_gauge = m_document->place(QStringLiteral("gauge"), QStringLiteral("1.0.0"), QPointF(100, 100));
}

void tst_Session::changesAreOnDiskWithinASecond()
{
    BenchSession session(path(), m_document.get());
    QElapsedTimer timer;
    timer.start();
    // Changes that never stop, as of a drag, do not put it off.
    for (int step = 0; !QFile::exists(path()) && timer.elapsed() < 3000; ++step) {
        m_document->setFieldValue(m_gauge, QStringLiteral("lowLimit"), step);
        QTest::qWait(20);
    }
    QVERIFY(QFile::exists(path()));
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    Scenario scenario;
    QString message;
    QCOMPARE(BenchSession::read(path(), scenario, message), BenchSession::Found::Session);
    QCOMPARE(QDir(path(QStringLiteral("state"))).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("session.json")});
}

void tst_Session::sessionIsRestored()
{
    BenchSession session(path(), m_document.get());
    session.setViewSource([] { return QJsonObject{{QStringLiteral("zoom"), 1.5}}; });
    m_document->setFieldValue(m_gauge, QStringLiteral("lowLimit"), 0.1 + 0.2);
    m_document->setMode(BenchMode::Runtime);
    QVERIFY(session.save());

    Scenario scenario;
    QString message;
    QCOMPARE(BenchSession::read(path(), scenario, message), BenchSession::Found::Session);
    QCOMPARE(scenario.view[QLatin1String("zoom")].toDouble(), 1.5);
    BenchDocument other(m_library.data());
    QStringList dropped;
    QCOMPARE(other.load(scenario, dropped), 1);
    QCOMPARE(dropped, QStringList());
    QCOMPARE(other.toScenario().toJson(), m_document->toScenario().toJson());
    QCOMPARE(other.widgets().first()->fieldValue(QStringLiteral("lowLimit")).toDouble(), 0.1 + 0.2);

    QVERIFY(BenchSession::setAside(path()));
    QCOMPARE(BenchSession::read(path(), scenario, message), BenchSession::Found::Nothing);
    QCOMPARE(BenchSession::read(path(QStringLiteral("state/session.previous.json")), scenario, message),
             BenchSession::Found::Session);
}

void tst_Session::damagedFilesAreKept_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half") << QByteArray(
        "{\"kora\": \"scenario\", \"schema\": 1, \"pluginId\": \"x\", \"widg");
    QTest::newRow("of a later bench")
        << QByteArray("{\"kora\": \"scenario\", \"schema\": 2, \"pluginId\": \"x\"}");
}

void tst_Session::damagedFilesAreKept()
{
    QFETCH(const QByteArray, content);
    for (int times = 1; times <= 2; ++times) { // within one second, under different names
        QVERIFY(QDir().mkpath(path(QStringLiteral("state"))));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        Scenario scenario;
        QString message;
        QCOMPARE(BenchSession::read(path(), scenario, message), BenchSession::Found::Damaged);
        QVERIFY(!QFile::exists(path()));
        const QDir folder(path(QStringLiteral("state")));
        const QStringList kept = folder.entryList({QStringLiteral("session.damaged-*.json")});
        QCOMPARE(kept.size(), times);
        QVERIFY2(message.contains(folder.path()), qPrintable(message));
        QFile last(folder.filePath(kept.last()));
        QVERIFY(last.open(QIODevice::ReadOnly));
        QCOMPARE(last.readAll(), content);
    }
}

void tst_Session::anotherTakesOver()
{
    BenchSession session(path(), m_document.get());
    QVERIFY(session.suspend());
    QVERIFY(QFile::remove(path()));
    m_document->setFieldValue(m_gauge, QStringLiteral("lowLimit"), 3);
    QVERIFY(session.save());
    QVERIFY(!QFile::exists(path()));
    session.resume();
    QTRY_VERIFY(QFile::exists(path()));
}

void tst_Session::failureIsToldOnce()
{
    QFile blocker(path(QStringLiteral("state")));
    QVERIFY(blocker.open(QIODevice::WriteOnly)); // where a folder is to be
    BenchSession session(path(), m_document.get());
    const QSignalSpy failures(&session, &BenchSession::failed);
    QVERIFY(!session.save());
    QVERIFY(!session.save());
    QCOMPARE(failures.size(), 1);
    QVERIFY(failures.first().first().toString().contains(path(QStringLiteral("state"))));
    QVERIFY(blocker.remove());
    QVERIFY(session.save());
    QVERIFY(QFile::exists(path()));
}

void tst_Session::liesInTheStateFolder()
{
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/var/state");
    QCOMPARE(BenchSession::defaultPath(QStringLiteral("x")), QStringLiteral("/var/state/kora/bench/x.json"));
    qputenv("XDG_STATE_HOME", "relative"); // to be passed over
    QCOMPARE(BenchSession::defaultPath(QStringLiteral("x")),
             QDir::homePath() + QStringLiteral("/.local/state/kora/bench/x.json"));
    before.isNull() ? qunsetenv("XDG_STATE_HOME") : qputenv("XDG_STATE_HOME", before);
}

KORA_TEST_MAIN(tst_Session)
#include "tst_session.moc"
