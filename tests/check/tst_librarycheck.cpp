// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>
#include <QtCore/QProcess>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include <kora/dev/diagnosis/plugindiagnosis.h>

#include <loader/pluginfolders.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include "check/librarycheck.h"
#include "check/metadatacheck.h"
#include "check/rules.h"

using namespace KORA::DEV;

namespace {

using Diagnose = std::function<Findings(const PluginFolders &)>;

const QString id = pluginId(1);

QByteArray goodLibrary()
{
    return patched(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_good), builtId(), id.toLatin1());
}

// The library with other bytes behind the first @p mark.
QByteArray withBytes(const QByteArray &library, const QByteArray &mark, int offset, const QByteArray &bytes)
{
    QByteArray result = library;
    return result.replace(library.indexOf(mark) + offset, bytes.size(), bytes);
}

QByteArray withHeaderByte(int offset, char byte)
{
    return goodLibrary().replace(offset, 1, QByteArray(1, byte));
}

Diagnose diagnoseFolderWith(const QByteArray &library)
{
    return [library](const PluginFolders &folders) {
        folders.put(id, library);
        return diagnosePluginFolder(folders.folder(id));
    };
}

Diagnose explainLoad(const char *text)
{
    return [text](const PluginFolders &folders) {
        return diagnoseLoadFailure(folders.put(id, goodLibrary()), QString::fromLatin1(text));
    };
}

Findings checkedFolder(const PluginFolders &folders, const LibraryCheckOptions &options,
                       bool complete = false)
{
    CheckReport report;
    checkPluginFolder(folders.folder(id), options, complete, report);
    return report.findings;
}

struct Result
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

Result kora(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(KORA_COMMAND), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
        return {-1, {}, process.errorString().toUtf8()};
    }
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QStringList withFormat(QStringList arguments, const char *format)
{
    return arguments << QStringLiteral("--format") << QLatin1String(format);
}

} // namespace

Q_DECLARE_METATYPE(Diagnose)

class tst_LibraryCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goodFolderHasNoFindings();
    void metadataIsReadAsQtReadsIt();
    void eachRuleFindsItsFixture_data();
    void eachRuleFindsItsFixture();
    void findingsTellTheCause_data();
    void findingsTellTheCause();
    void damagedLibrariesAreSafeToRead();
    void loadFailuresNameTheCause();
    void codeOfThePluginIsNotRun();
    void librariesOfOtherProcessorsAreChecked();
    void checkTellsWhatComesNext();
    void exitStatusDoesNotDependOnTheFormat_data();
    void exitStatusDoesNotDependOnTheFormat();
    void formatsForPrograms();
    void explain();
};

void tst_LibraryCheck::goodFolderHasNoFindings()
{
    const PluginFolders folders;
    folders.put(id, goodLibrary());
    QVERIFY(diagnosePluginFolder(folders.folder(id)).isEmpty());
    QVERIFY(diagnoseLoadFailure(folders.libraryPath(id)).isEmpty());
}

void tst_LibraryCheck::metadataIsReadAsQtReadsIt()
{
    const PluginFolders folders;
    const QString path = folders.put(id, goodLibrary());
    QJsonObject ofQt = QPluginLoader(path).metaData();
    ofQt.remove(QStringLiteral("debug")); // from the flags, as the next
    ofQt.remove(QStringLiteral("version"));
    ofQt.remove(QStringLiteral("archreq"));
    const LibraryMetaData metaData = readLibraryMetaData(path);
    QVERIFY(metaData.isValid);
    QCOMPARE(metaData.object, ofQt);
    QCOMPARE(metaData.qtMinor, QT_VERSION_MINOR);
}

void tst_LibraryCheck::eachRuleFindsItsFixture_data()
{
    QTest::addColumn<Diagnose>("diagnose");
    const QByteArray good = goodLibrary();
    const QByteArray magic = "QTMETADATA !";
    QTest::newRow("folder-missing") << Diagnose(
        [](const PluginFolders &folders) { return diagnosePluginFolder(folders.folder(id)); });
    QTest::newRow("folder-name") << Diagnose([](const PluginFolders &folders) {
        folders.put(QStringLiteral("boiler"), goodLibrary());
        return diagnosePluginFolder(folders.folder(QStringLiteral("boiler")));
    });
    QTest::newRow("folder-empty") << Diagnose([](const PluginFolders &folders) {
        return QDir().mkpath(folders.folder(id)) ? diagnosePluginFolder(folders.folder(id)) : Findings();
    });
    QTest::newRow("library-missing") << Diagnose([](const PluginFolders &folders) {
        folders.makeFolder(id);
        return diagnosePluginFolder(folders.folder(id));
    });
    QTest::newRow("library-not-file") << Diagnose([](const PluginFolders &folders) {
        QDir().mkpath(folders.libraryPath(id));
        return diagnosePluginFolder(folders.folder(id));
    });
    QTest::newRow("library-unreadable") << Diagnose([](const PluginFolders &folders) {
        QFile::setPermissions(folders.put(id, goodLibrary()), QFileDevice::Permissions());
        return diagnosePluginFolder(folders.folder(id));
    });
    QTest::newRow("library-text") << diagnoseFolderWith("version https://git.example/spec\noid 1\n");
    QTest::newRow("library-not-elf") << diagnoseFolderWith(QByteArray("PK\x03\x04\0\0", 6));
    QTest::newRow("library-truncated") << diagnoseFolderWith(good.left(good.size() / 2));
    QTest::newRow("library-32-bit") << diagnoseFolderWith(withHeaderByte(4, 1));
    QTest::newRow("library-64-bit") << Diagnose([](const PluginFolders &folders) {
        return diagnoseLibrary(folders.put(id, goodLibrary()), id, QStringLiteral("linux/arm32"));
    });
    QTest::newRow("library-wrong-cpu") << diagnoseFolderWith(withHeaderByte(18, 8));
    QTest::newRow("library-big-endian") << diagnoseFolderWith(withHeaderByte(5, 2));
    QTest::newRow("library-not-shared") << diagnoseFolderWith(withHeaderByte(16, 1));
    QTest::newRow("library-no-plugin")
        << diagnoseFolderWith(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_noiid));
    QTest::newRow("library-metadata-broken") << diagnoseFolderWith(withBytes(good, magic, 16, "\xff"));
    QTest::newRow("library-no-iid") << diagnoseFolderWith(withBytes(good, "\x02\x78\x1borg.Vako", 0, "\x0a"));
    QTest::newRow("library-wrong-iid")
        << diagnoseFolderWith(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_wrongiid));
    QTest::newRow("library-no-metadata") << diagnoseFolderWith(withBytes(good,
                                                                         "\x66"
                                                                         "author",
                                                                         -2, "\x0b"));
    QTest::newRow("library-newer-qt") << diagnoseFolderWith(withBytes(good, magic, 14, "\x63"));
    QTest::newRow("library-id-differs")
        << diagnoseFolderWith(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_good));
    QTest::newRow("load-missing-library")
        << explainLoad("Cannot load library x.so: (libboiler.so.1: cannot open shared object file: No such "
                       "file or directory)");
    QTest::newRow("load-undefined-symbol")
        << explainLoad("Cannot load library x.so: (x.so: undefined symbol: f)");
    QTest::newRow("load-old-library")
        << explainLoad("(/lib/libc.so.6: version `GLIBC_2.99' not found (required by x.so))");
    QTest::newRow("load-failed") << explainLoad("cannot allocate memory in static TLS block");
    QTest::newRow("source-differs") << Diagnose([](const PluginFolders &folders) {
        folders.put(id, goodLibrary());
        Findings findings = checkedFolder(folders, {id, QStringLiteral(KORA_TEST_DATA_DIR "/boiler.json")});
        return findings.mid(0, 1); // the library's own follow
    });
    QTest::newRow("platform-missing") << Diagnose([](const PluginFolders &folders) {
        folders.put(id, goodLibrary());
        return checkedFolder(folders, {}, true).mid(1, 1); // behind the one of the library's widget
    });
    QTest::newRow("debug-build") << Diagnose([magic](const PluginFolders &folders) {
        const QString path = libraryPathInFolder(folders.folder(id), QStringLiteral("linux/arm32"));
        QDir().mkpath(QFileInfo(path).path());
        PluginFolders::writeFile(path, withBytes(goodLibrary(), magic, 15, "\x01"));
        Findings findings = checkedFolder(folders, {}, true);
        findings.erase(
            std::remove_if(findings.begin(), findings.end(),
                           [](const Finding &f) { return f.rule != QLatin1String("debug-build"); }),
            findings.end());
        return findings;
    });
    QTest::newRow("csv-unreadable") << Diagnose([](const PluginFolders &) {
        MetadataCheckOptions options;
        options.translationFiles = QStringList{QStringLiteral("/nowhere/it-IT.csv")};
        const QString path = QStringLiteral(KORA_TEST_DATA_DIR "/boiler.json");
        return checkMetadata(PluginFolders::readFile(path.toUtf8().constData()), path, options);
    });
    QTest::newRow("id-differs") << Diagnose([](const PluginFolders &) {
        MetadataCheckOptions options;
        options.expectedId = id;
        const QString path = QStringLiteral(KORA_TEST_DATA_DIR "/boiler.json");
        return checkMetadata(PluginFolders::readFile(path.toUtf8().constData()), path, options);
    });
    QTest::newRow("input-unreadable") << Diagnose([](const PluginFolders &folders) {
        const Result result = kora(withFormat({QStringLiteral("check"), folders.folder(id)}, "json"));
        const QJsonArray problems = QJsonDocument::fromJson(result.out)[QLatin1String("problems")].toArray();
        Finding finding;
        finding.rule = problems.at(0)[QLatin1String("rule")].toString();
        finding.message = finding.hint = problems.at(0)[QLatin1String("hint")].toString();
        return Findings{finding};
    });
}

void tst_LibraryCheck::eachRuleFindsItsFixture()
{
    QFETCH(Diagnose, diagnose);
    const QString rule = QString::fromLatin1(QTest::currentDataTag());
    if (rule == QLatin1String("library-unreadable") && geteuid() == 0) {
        QSKIP("root may read everything");
    }
    const PluginFolders folders;
    LogRecorder log;
    const Findings findings = diagnose(folders);
    log.takeLines();
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().rule, rule);
    QCOMPARE(findings.first().severity, findRule(rule)->severity);
    QVERIFY(!findings.first().message.isEmpty() && !findings.first().hint.isEmpty());
}

// Several causes share a rule.
void tst_LibraryCheck::findingsTellTheCause_data()
{
    QTest::addColumn<Diagnose>("diagnose");
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const Diagnose &diagnose, const char *rule, const char *message) {
        QTest::newRow(name) << diagnose << QString::fromLatin1(rule) << QString::fromLatin1(message);
    };
    row("an empty file", diagnoseFolderWith(QByteArray()), "library-truncated", "the file is empty");
    row("a library for Windows", diagnoseFolderWith(QByteArray("MZ\x90\0\x03", 5)), "library-not-elf",
        "for Windows");
    row("metadata that the parser refuses",
        diagnoseFolderWith(goodLibrary().replace("\x66"
                                                 "author",
                                                 "\x66"
                                                 "auteur")),
        "metadata", "author");
    row("a file instead of a folder", Diagnose([](const PluginFolders &folders) {
            return diagnosePluginFolder(folders.put(id, goodLibrary()));
        }),
        "folder-missing", "this is a file");
    row("a library under another name", Diagnose([](const PluginFolders &folders) {
            QFile::rename(folders.put(id, goodLibrary()), folders.libraryPath(id) + QStringLiteral(".1"));
            return diagnosePluginFolder(folders.folder(id));
        }),
        "library-missing", "; its place holds lib0a5e9c10-0000-4000-8000-000000000001.so.1");
    row("a library of another platform", Diagnose([](const PluginFolders &folders) {
            const QString path = libraryPathInFolder(folders.folder(id), QStringLiteral("linux/arm32"));
            QDir().mkpath(QFileInfo(path).path());
            PluginFolders::writeFile(path, goodLibrary());
            return diagnosePluginFolder(folders.folder(id));
        }),
        "library-missing", "; the folder has one for linux/arm32");
    row("a link that leads nowhere", Diagnose([](const PluginFolders &folders) {
            folders.makeFolder(id);
            QDir().mkpath(QFileInfo(folders.libraryPath(id)).path());
            QFile::link(QStringLiteral("/nowhere/libboiler.so"), folders.libraryPath(id));
            return diagnosePluginFolder(folders.folder(id));
        }),
        "library-missing", "the link leads nowhere (/nowhere/libboiler.so)");
    row("a pipe", Diagnose([](const PluginFolders &folders) {
            QDir().mkpath(QFileInfo(folders.libraryPath(id)).path());
            mkfifo(folders.libraryPath(id).toUtf8().constData(), 0600);
            return diagnosePluginFolder(folders.folder(id));
        }),
        "library-not-file", "not a regular file");
    row("a library that something else needs",
        explainLoad("(libboiler.so.1: cannot open shared object file: No such file or directory)"),
        "load-missing-library", "a library that it needs in turn is not there: libboiler.so.1");
}

void tst_LibraryCheck::findingsTellTheCause()
{
    QFETCH(Diagnose, diagnose);
    QFETCH(QString, message);
    const PluginFolders folders;
    LogRecorder log;
    const Findings findings = diagnose(folders);
    log.takeLines();
    QCOMPARE(findings.size(), 1);
    QTEST(findings.first().rule, "rule");
    QVERIFY2(findings.first().message.contains(message, Qt::CaseInsensitive),
             qPrintable(findings.first().message));
}

void tst_LibraryCheck::damagedLibrariesAreSafeToRead()
{
    const QByteArray good = goodLibrary();
    const PluginFolders folders;
    for (int size = 0; size < good.size(); size += 1 + good.size() / 60) {
        const QString path = folders.put(id, good.left(size));
        QCOMPARE(diagnoseLibrary(path, id).size(), 1);
    }
    for (int offset = 16; offset < 64; ++offset) { // every byte of the header that holds an offset or a count
        const QString path = folders.put(id, withHeaderByte(offset, '\xff'));
        QVERIFY(diagnoseLibrary(path, id).size() <= 1);
        readLibraryMetaData(path);
    }
}

void tst_LibraryCheck::loadFailuresNameTheCause()
{
    const PluginFolders folders;
    const QByteArray symbol = "koraFixtureMissingFunction";
    const QByteArray mangled = "_ZN4KORA14missingHandlerEv";
    QString path = folders.put(
        id, patched(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_unresolvedsymbol), symbol, mangled));
    QPluginLoader loader(path);
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    QVERIFY(!loader.load());
    Findings findings = diagnoseLoadFailure(path, loader.errorString());
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().rule, QStringLiteral("load-undefined-symbol"));
    QVERIFY2(findings.first().message.contains(QLatin1String("KORA::missingHandler()")),
             qPrintable(findings.first().message));

    path = folders.put(pluginId(2), goodLibrary().replace("libQt5Core.so.5", "libQt5Cure.so.5"));
    findings = diagnoseLoadFailure(path);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().rule, QStringLiteral("load-missing-library"));
    QVERIFY(findings.first().message.contains(QLatin1String("needs libQt5Cure.so.5")));
}

void tst_LibraryCheck::codeOfThePluginIsNotRun()
{
    const QString path = QString::fromLocal8Bit(KORA_TEST_LIBRARY_check_aborts);
    const Result library = kora({QStringLiteral("check"), path, QStringLiteral("--strict")});
    QVERIFY2(library.exitCode == 0, library.out + library.err);
    QDir folder = QFileInfo(path).dir();
    QVERIFY(folder.cdUp() && folder.cdUp());
    const Result whole = kora({QStringLiteral("check"), folder.path(), QStringLiteral("--strict")});
    QVERIFY2(whole.exitCode == 0 && whole.out.contains(": fine\nNext: kora "), whole.out + whole.err);
}

void tst_LibraryCheck::librariesOfOtherProcessorsAreChecked()
{
    const PluginFolders folders;
    QByteArray library = goodLibrary();
    library.replace(18, 2, QByteArray("\xb7\0", 2)); // AArch64
    const QString path = libraryPathInFolder(folders.folder(id), QStringLiteral("linux/arm64"));
    QVERIFY(QDir().mkpath(QFileInfo(path).path()) && PluginFolders::writeFile(path, library));
    const Result result = kora(withFormat({QStringLiteral("check"), folders.folder(id)}, "json"));
    QCOMPARE(result.exitCode, 0);
    const QJsonArray problems = QJsonDocument::fromJson(result.out)[QLatin1String("problems")].toArray();
    QCOMPARE(problems.size(), 1); // its metadata is checked too
    QCOMPARE(problems.at(0)[QLatin1String("rule")].toString(), QStringLiteral("no-default-size"));
    QCOMPARE(problems.at(0)[QLatin1String("file")].toString(), path);
}

// After metadata that is fine; and with what cannot be checked.
void tst_LibraryCheck::checkTellsWhatComesNext()
{
    const PluginFolders folders;
    folders.put(id, goodLibrary());
    const QString dir = QFileInfo(folders.folder(id)).path();
    const auto check = [](const QString &path, const QStringList &more = {}) {
        return kora(QStringList{QStringLiteral("check"), path} + more);
    };
    Result result = check(QStringLiteral(KORA_TEST_DATA_DIR "/boiler.json"));
    QVERIFY2(result.exitCode == 0 && result.out.contains("\nNext: cmake --build "), result.out + result.err);

    QVERIFY(QDir().mkpath(dir + QStringLiteral("/other/empty")));
    result = check(dir + QStringLiteral("/other"));
    QVERIFY2(result.exitCode == 1 && result.out.contains("this is no plugin folder and holds none"),
             result.out + result.err);
    result = check(folders.folder(id), {QStringLiteral("--source"), QStringLiteral("/nowhere/tank.json")});
    QVERIFY2(result.exitCode != 0 && result.out.contains("the source file cannot be read"),
             result.out + result.err);
}

void tst_LibraryCheck::exitStatusDoesNotDependOnTheFormat_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    const QString data = QStringLiteral(KORA_TEST_DATA_DIR "/");
    const QString warned = QStringLiteral(KORA_TEST_DATA_DIR "/../../fixtures/good.json");
    QTest::newRow("fine") << QStringList{data + QStringLiteral("boiler.json")} << 0;
    QTest::newRow("errors") << QStringList{data + QStringLiteral("twelvefaults.json")} << 1;
    QTest::newRow("warnings") << QStringList{warned} << 0;
    QTest::newRow("strict warnings") << QStringList{warned, QStringLiteral("--strict")} << 1;
    QTest::newRow("another id") << QStringList{data + QStringLiteral("boiler.json"), QStringLiteral("--id"),
                                               id}
                                << 1;
    QTest::newRow("no such file") << QStringList{data + QStringLiteral("nothing.json")} << 3;
    QTest::newRow("no such file among others")
        << QStringList{data + QStringLiteral("boiler.json"), data + QStringLiteral("nothing.json")} << 3;
    QTest::newRow("no path") << QStringList() << 2;
}

void tst_LibraryCheck::exitStatusDoesNotDependOnTheFormat()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    arguments.prepend(QStringLiteral("check"));
    for (const char *format : {"text", "json", "sarif", "junit"}) {
        const Result result = kora(withFormat(arguments, format));
        QVERIFY2(result.exitCode == status, format);
    }
}

void tst_LibraryCheck::formatsForPrograms()
{
    const QStringList arguments{QStringLiteral("check"),
                                QStringLiteral(KORA_TEST_DATA_DIR "/twelvefaults.json")};
    const QJsonDocument json = QJsonDocument::fromJson(kora(withFormat(arguments, "json")).out);
    QCOMPARE(json[QLatin1String("tool")].toString(), QStringLiteral("kora"));
    QCOMPARE(json[QLatin1String("schema")].toInt(), 1);
    QCOMPARE(json[QLatin1String("ok")].toBool(true), false);
    QCOMPARE(json[QLatin1String("summary")][QLatin1String("errors")].toInt(), 12);
    QCOMPARE(json[QLatin1String("problems")].toArray().size(), 12);

    const QJsonDocument sarif = QJsonDocument::fromJson(kora(withFormat(arguments, "sarif")).out);
    QCOMPARE(sarif[QLatin1String("version")].toString(), QStringLiteral("2.1.0"));
    const QJsonValue results = sarif[QLatin1String("runs")][0][QLatin1String("results")];
    QCOMPARE(results.toArray().size(), 12);
    const QJsonValue region =
        results[1][QLatin1String("locations")][0][QLatin1String("physicalLocation")][QLatin1String("region")];
    QCOMPARE(region[QLatin1String("startLine")].toInt(), 3);

    QXmlStreamReader junit(kora(withFormat(arguments, "junit")).out);
    int failures = 0;
    while (!junit.atEnd()) {
        failures +=
            junit.readNext() == QXmlStreamReader::StartElement && junit.name() == QLatin1String("failure");
    }
    QVERIFY2(!junit.hasError(), qPrintable(junit.errorString()));
    QCOMPARE(failures, 12);
}

void tst_LibraryCheck::explain()
{
    const Result code = kora({QStringLiteral("explain"), QStringLiteral("10007")});
    QCOMPARE(code.exitCode, 0);
    QVERIFY(code.out.contains("MetaData/widgets/defaultSize attribute is not valid"));
    const Result rule = kora({QStringLiteral("explain"), QStringLiteral("unknown-key")});
    QVERIFY(rule.exitCode == 0 && rule.out.contains("Usual cause: "));
    const Result slip = kora({QStringLiteral("explain"), QStringLiteral("unknwon-key")});
    QCOMPARE(slip.exitCode, 2);
    QVERIFY(slip.err.contains("did you mean unknown-key?"));
}

KORA_TEST_MAIN(tst_LibraryCheck)
#include "tst_librarycheck.moc"
