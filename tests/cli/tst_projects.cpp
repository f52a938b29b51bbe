// SPDX-License-Identifier: Apache-2.0
//
// What authors start from and end with: new projects, translation files, archives.
#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <kora/core/pluginutils.h>
#include <kora/dev/model/scenario.h>
#include <kora/dev/providers/providers.h>
#include <support/testmain.h>

#include <functional>
#include <memory>

#include "project/pluginarchive.h"
#include "project/translationsheet.h"
#include "runkora.h"

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using KORA::DEV::Providers;
using KORA::DEV::Scenario;
using namespace KORA::INTERNAL;

Q_DECLARE_METATYPE(std::function<void(QByteArray &)>)

namespace {

const QString lampsId = QStringLiteral("5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11");
const QString italian = QStringLiteral("it-IT");
const QString english = QStringLiteral("en-US");

bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
           && file.write(content) == content.size();
}

QStringList rulesOf(const Findings &findings)
{
    QStringList rules;
    for (const Finding &finding : findings) {
        rules.append(finding.rule);
    }
    return rules;
}

// All texts of up to five of these characters.
QStringList textsOf(const QString &characters)
{
    QStringList texts{QString()};
    for (int i = 0; i < texts.size() && texts.at(i).size() < 5; ++i) {
        const QString text = texts.at(i);
        for (const QChar c : characters) {
            texts.append(text + c);
        }
    }
    return texts;
}

// A copy of the built plugin folder.
QString copyOfLamps(const QString &dir)
{
    const QDir source(QStringLiteral(KORA_TEST_PLUGINS_DIR "/") + lampsId);
    const QString library = QStringLiteral("%1/%2/lib%3.so")
                                .arg(QStringLiteral(KORA_PLATFORM_OS).toLower(),
                                     QStringLiteral(KORA_PLATFORM_ARCH).toLower(), lampsId);
    const QString folder = dir + QLatin1Char('/') + lampsId;
    return put(folder + QLatin1Char('/') + library, contentOf(source.filePath(library))) ? folder : QString();
}

} // namespace

class TestProjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void newProjectIsWhatWasAskedFor();
    void newProjectIsRefusedWhole_data();
    void newProjectIsRefusedWhole();
    void anyTextSurvivesATranslationFile();
    void updateLosesNoTranslation();
    void translationsNeedMetadata_data();
    void translationsNeedMetadata();
    void translationsAreChecked_data();
    void translationsAreChecked();
    void brokenTranslationFilesAreToldAndLeftAlone_data();
    void brokenTranslationFilesAreToldAndLeftAlone();
    void archivesAreEqualAndWhole();
    void changedArchivesAreRefused_data();
    void changedArchivesAreRefused();
    void whatIsNoPluginFolderIsNotPacked();
    void doctorTellsOfPlugins();
    void doctorTellsWhatTheMachineLacks();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QString csvPath() const { return path(QStringLiteral("p/translations/it-IT.csv")); }
    Result translations(const char *what) const
    {
        return kora({QStringLiteral("translations"), QLatin1String(what), path(QStringLiteral("p"))});
    }
    bool putMetaData(const QByteArray &texts) const
    {
        return put(
            path(QStringLiteral("p/metadata.json")),
            "{\"id\": \"5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11\", \"name\": \"Lamps\", \"author\": \"A\", "
            "\"version\": \"1.0.0\", \"translation\": [\"it-IT\"], "
                + texts + "}");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestProjects::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestProjects::newProjectIsWhatWasAskedFor()
{
    const Result made =
        kora({QStringLiteral("new"), QStringLiteral("tank-farm"), QStringLiteral("--dir"), m_dir->path(),
              QStringLiteral("--id"), lampsId, QStringLiteral("--author"), QStringLiteral("\"A\" & B"),
              QStringLiteral("--widget"), QStringLiteral("tank"), QStringLiteral("--widget"),
              QStringLiteral("3way_valve"), QStringLiteral("--language"), QStringLiteral("de-DE")});
    QCOMPARE(made.err, QString());
    QVERIFY(made.out.contains(QStringLiteral("cmake --preset host")));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("tank-farm")});
    const QDir project(path(QStringLiteral("tank-farm")));
    for (const char *name :
         {"CMakeLists.txt", "README.md", "src/widget3wayvalve.cpp", "src/tankfarmlibrary.cpp",
          "tests/tst_tank.cpp", "scenarios/default.json", "metadata.json"}) {
        const QByteArray content = contentOf(project.filePath(QLatin1String(name)));
        QVERIFY2(!content.isEmpty() && !content.contains("@") && !content.contains("SPDX"), name);
    }
    const Result check = kora({QStringLiteral("translations"), QStringLiteral("check"), project.path()});
    QVERIFY2(check.exitCode == 0, qPrintable(check.out));
    QVERIFY(contentOf(project.filePath(QStringLiteral("metadata.json")))
                .contains("\"author\": \"\\\"A\\\" & B\""));
}

void TestProjects::newProjectIsRefusedWhole_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *arguments, int exitCode, const char *error) {
        QTest::newRow(error) << QString::fromLatin1(arguments) << exitCode << QString::fromLatin1(error);
    };
    row("there", 1, "exists already");
    row("3tanks", 2, "a name begins with a letter");
    row("../tanks", 2, "../tanks: a name begins");
    row("bench", 2, "is that of a build target");
    row("tanks --id {5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11}", 2, "a UUID without braces is expected");
    row("tanks --id 00000000-0000-0000-0000-000000000000", 2, "--id 00000000-0000-0000-0000-000000000000");
    row("tanks --widget my-tank", 2, "--widget my-tank");
    row("tanks --widget tank --widget Tank", 2, "would have the names of those of tank");
    row("tanks --widget tank --widget tank_item", 2, "--widget tank_item");
    row("tanks --language it-it", 2, "a language is written like");
    row("tanks --language en-US", 2, "language of the library's own texts");
    row("tanks --language it-IT --language it-IT", 2, "given twice");
}

void TestProjects::newProjectIsRefusedWhole()
{
    QFETCH(const QString, arguments);
    QFETCH(const int, exitCode);
    QFETCH(const QString, error);
    QVERIFY(put(path(QStringLiteral("there/mine.txt")), "mine"));
    const Result result = kora(QStringList{QStringLiteral("new"), QStringLiteral("--dir"), m_dir->path()}
                               + arguments.split(QLatin1Char(' ')));
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(result.err.contains(error), qPrintable(result.err));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("there")});
    QCOMPARE(contentOf(path(QStringLiteral("there/mine.txt"))), QByteArray("mine"));
}

// The library's reader has a rule of its own for quotes.
void TestProjects::anyTextSurvivesATranslationFile()
{
    QByteArray lines = "header\n";
    QStringList written;
    const QStringList texts = textsOf(QStringLiteral("a,\""));
    for (const QString &text : texts) {
        QString field;
        if (!writeTranslationField(text, field)) {
            // Beside quotes there may be no room to begin or end quoting.
            QVERIFY2(text.contains(QLatin1Char('"')), qPrintable(text));
            continue;
        }
        written.append(text);
        lines += field.toUtf8() + ',' + field.toUtf8() + ',' + field.toUtf8() + '\n';
    }
    QCOMPARE(written.size(), 268); // of 364; for the others there is no form
    QVERIFY(put(path(QStringLiteral("it-IT.csv")), lines));
    QList<TranslationStringType> read;
    QVERIFY(
        PluginUtils::importTranslationFile(path(QStringLiteral("it-IT.csv")), read, english, italian, true));
    QCOMPARE(read.size(), written.size());
    for (int i = 0; i < written.size(); ++i) {
        QCOMPARE(read.at(i).get(english, false), written.at(i));
        QCOMPARE(read.at(i).comment(), written.at(i));
        QCOMPARE(read.at(i).get(italian, false), written.at(i));
    }
    QString field;
    QVERIFY(!writeTranslationField(QStringLiteral("two\nlines"), field));
}

void TestProjects::updateLosesNoTranslation()
{
    QVERIFY(putMetaData("\"description\": \"On, or off\", \"license\": [\"Open\", \"state\"]"));
    QVERIFY(
        put(csvPath(), "en,note,it\n\"Gone, but translated\",,Perso\nOpen,state,Aperto\nLamps,,Lampade\n\n"));
    const Result before = translations("check");
    QCOMPARE(before.exitCode, 1);
    for (const char *expected :
         {"it-IT.csv:2:1: warning: the metadata no longer has \"Gone, but translated\"",
          "there is no row for \"On, or off\"", "it-IT.csv:5:1: error: the line is empty"}) {
        QVERIFY2(before.out.contains(QLatin1String(expected)), qPrintable(before.out));
    }
    const Result update = translations("update");
    QVERIFY2(update.exitCode == 0 && update.out.contains(QStringLiteral("1 added, to be translated")),
             qPrintable(update.out));
    const QByteArray expected = "en,note,it\nOpen,state,Aperto\nLamps,,Lampade\n"
                                "\"On, or off\",,\"On, or off\"\n\"Gone, but translated\",,Perso\n";
    QCOMPARE(contentOf(csvPath()), expected);
    QVERIFY(translations("update").out.contains(QStringLiteral("kept at the end")));
    QCOMPARE(contentOf(csvPath()), expected);

    const Result pruned = kora({QStringLiteral("translations"), QStringLiteral("update"),
                                QStringLiteral("--prune"), path(QStringLiteral("p"))});
    QCOMPARE(pruned.exitCode, 0);
    QVERIFY(!contentOf(csvPath()).contains("Gone"));
    QCOMPARE(translations("check").exitCode, 0);
}

void TestProjects::translationsNeedMetadata_data()
{
    QTest::addColumn<QStringList>("files"); // and what they hold
    QTest::addColumn<QString>("error");     // empty: it is found
    const QString good = QStringLiteral(R"({"id": "5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11", "name": "L", )"
                                        R"("author": "A", "version": "1.0.0"})");
    QTest::newRow("no folder") << QStringList() << QStringLiteral("/p does not exist");
    QTest::newRow("no file") << QStringList{QStringLiteral("p/package.json"), QStringLiteral("{}")}
                             << QStringLiteral("there is no metadata.json in ");
    QTest::newRow("another name") << QStringList{QStringLiteral("p/lamps.json"), good} << QString();
    QTest::newRow("two files") << QStringList{QStringLiteral("p/a.json"), good, QStringLiteral("p/b.json"),
                                              good}
                               << QStringLiteral("has several metadata files; name one: ");
    QTest::newRow("no JSON") << QStringList{QStringLiteral("p/metadata.json"), QStringLiteral("{")}
                             << QStringLiteral("metadata.json is no metadata: ");
    QTest::newRow("refused metadata") << QStringList{QStringLiteral("p/metadata.json"),
                                                     QString(good).remove(QStringLiteral(R"("name": "L", )"))}
                                      << QStringLiteral("[4]; kora check tells where");
}

void TestProjects::translationsNeedMetadata()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, error);
    for (int i = 0; i + 1 < files.size(); i += 2) {
        QVERIFY(put(path(files.at(i)), files.at(i + 1).toUtf8()));
    }
    for (const char *command : {"check", "update"}) {
        const Result result = translations(command);
        QCOMPARE(result.exitCode, error.isEmpty() ? 0 : 1);
        QVERIFY2(result.err.contains(error), qPrintable(result.err));
        QCOMPARE(result.out.contains(QStringLiteral("the metadata lists no languages")), error.isEmpty());
    }
    QVERIFY(!QFile::exists(path(QStringLiteral("p/translations"))));
}

void TestProjects::translationsAreChecked_data()
{
    QTest::addColumn<QByteArray>("license");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("translation-stale")
        << QByteArray("Open") << QByteArray("Open,,Aperto\nGone,,Perso\n") << QByteArray("check");
    QTest::newRow("translation-empty") << QByteArray("Open") << QByteArray("Open,,\n") << QByteArray("check");
    QTest::newRow("translation-same")
        << QByteArray("Open") << QByteArray("Open,,Open\n") << QByteArray("check");
    QTest::newRow("translation-unlisted")
        << QByteArray("Open") << QByteArray("Open,,Aperto\n") << QByteArray("check");
    QTest::newRow("translation-unwritable")
        << QByteArray("two\\nlines") << QByteArray() << QByteArray("update");
}

void TestProjects::translationsAreChecked()
{
    QFETCH(const QByteArray, license);
    QFETCH(const QByteArray, rows);
    QFETCH(const QByteArray, command);
    const QString rule = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(putMetaData("\"license\": \"" + license + "\""));
    QVERIFY(put(csvPath(), "text,comment,translation\nLamps,,Lampade\n" + rows));
    if (rule == QLatin1String("translation-unlisted")) {
        QVERIFY(put(path(QStringLiteral("p/translations/de-DE.csv")), ""));
    }
    const Result result = translations(command.constData());
    QCOMPARE(result.exitCode, rule == QLatin1String("translation-same") ? 0 : 1);
    QCOMPARE(result.out.count(QLatin1Char('[')), 1);
    QVERIFY2(result.out.contains(QStringLiteral(" [%1]\n").arg(rule)), qPrintable(result.out));
}

void TestProjects::brokenTranslationFilesAreToldAndLeftAlone_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &rows, const char *error) {
        QTest::newRow(name) << rows << QString::fromLatin1(error);
    };
    row("two fields", "Lamps,Lampade\n",
        "it-IT.csv:2:1: error: the line has 2 fields instead of 3 [csv-fields]");
    row("open quote", "Lamps,,Lamps\nOpen,\"state,Aperto\n",
        "it-IT.csv:3:1: error: the line has 2 fields instead of 3 [csv-fields]");
    row("conflict", "Lamps,,Lampade\nLamps,,Luci\n",
        "it-IT.csv:3:1: error: \"Lamps\" is translated as \"Luci\" here");
    row("not UTF-8", "Lamps,,Lampad\xe8\n", "it-IT.csv:2:1: error: the line is not UTF-8 [csv-encoding]");
}

void TestProjects::brokenTranslationFilesAreToldAndLeftAlone()
{
    QFETCH(const QByteArray, rows);
    QFETCH(const QString, error);
    QVERIFY(putMetaData("\"license\": [\"Open\", \"state\"]"));
    QVERIFY(put(csvPath(), "text,comment,translation\n" + rows));
    for (const char *command : {"check", "update"}) {
        const Result result = translations(command);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.out.contains(error), qPrintable(result.out));
        QCOMPARE(contentOf(csvPath()), "text,comment,translation\n" + rows);
    }
}

void TestProjects::archivesAreEqualAndWhole()
{
    QStringList archives;
    for (const QString &dir : {path(QStringLiteral("one")), path(QStringLiteral("two"))}) {
        const QString folder = copyOfLamps(dir);
        QVERIFY(put(folder + QStringLiteral("/readme.txt"), "hello"));
        QVERIFY(QFile::setPermissions(folder + QStringLiteral("/readme.txt"), QFile::ReadOwner));
        archives.append(dir + QStringLiteral(".tar"));
        const Result packed =
            kora({QStringLiteral("pack"), folder, QStringLiteral("--out"), archives.last()});
        QVERIFY2(packed.exitCode == 0, qPrintable(packed.err));
        QVERIFY(isArchive(archives.last()));
        QCOMPARE(rulesOf(verifyArchive(archives.last())), QStringList());
        QTest::qSleep(10);
    }
    const QByteArray whole = contentOf(archives.at(0));
    QVERIFY(whole == contentOf(archives.at(1)));
    const int step = whole.size() / 100;
    for (int position = 7; position < whole.size(); position += step) {
        QByteArray archive = whole;
        archive[position] = static_cast<char>(archive.at(position) ^ 0x10);
        QVERIFY(put(archives.at(0), archive));
        QVERIFY2(!verifyArchive(archives.at(0)).isEmpty(), qPrintable(QString::number(position)));
    }
    QVERIFY(put(archives.at(0), whole + '\0'));
    QCOMPARE(rulesOf(verifyArchive(archives.at(0))), QStringList{QStringLiteral("archive-form")});
}

void TestProjects::changedArchivesAreRefused_data()
{
    QTest::addColumn<std::function<void(QByteArray &)>>("change");
    using Change = std::function<void(QByteArray &)>;
    const int block = 512;
    QTest::newRow("archive-changed-file")
        << Change([](QByteArray &archive) { archive.replace("hello", "hullo"); });
    QTest::newRow("archive-missing-file") << Change([](QByteArray &archive) {
        const int at = archive.lastIndexOf("readme.txt") / block * block; // the last of the files
        archive.replace(at, 2 * block, QByteArray(2 * block, '\0'));
    });
    QTest::newRow("archive-extra-file")
        << Change([](QByteArray &archive) { archive.replace("  readme.txt\n", "  readme.bak\n"); });
    QTest::newRow("archive-manifest") << Change([](QByteArray &archive) {
        archive.remove(0, 2 * block); // its header and its text
    });
    QTest::newRow("archive-content") << Change([](QByteArray &archive) { archive.fill('\0'); });
    QTest::newRow("archive-form") << Change([](QByteArray &archive) {
        archive[archive.indexOf("hello") + 100] = 'x'; // in the padding
    });
    QTest::newRow("archive-unreadable")
        << Change([](QByteArray &archive) { archive.truncate(archive.size() / 2); });
}

void TestProjects::changedArchivesAreRefused()
{
    QFETCH(const std::function<void(QByteArray &)>, change);
    const QString folder = copyOfLamps(m_dir->path());
    QVERIFY(put(folder + QStringLiteral("/readme.txt"), "hello"));
    QString problem;
    QByteArray archive = packPluginFolder(folder, problem);
    QVERIFY2(!archive.isEmpty(), qPrintable(problem));
    change(archive);
    const QString file = path(QStringLiteral("changed.tar"));
    QVERIFY(put(file, archive));
    const QStringList found = rulesOf(verifyArchive(file));
    QVERIFY2(found.contains(QLatin1String(QTest::currentDataTag())),
             qPrintable(found.join(QLatin1Char(' '))));
}

void TestProjects::whatIsNoPluginFolderIsNotPacked()
{
    const QString folder = copyOfLamps(m_dir->path());
    const QString out = path(QStringLiteral("out.tar"));
    const auto pack = [&out](const QString &what) {
        return kora({QStringLiteral("pack"), what, QStringLiteral("-o"), out}).err;
    };
    const QString other = path(QStringLiteral("00000000-0000-4000-8000-000000000001"));
    QVERIFY(QDir().mkpath(other));
    QVERIFY(pack(other).contains(QStringLiteral("there is no library")));
    QVERIFY(QDir().mkpath(path(QStringLiteral("odd"))));
    QVERIFY(pack(path(QStringLiteral("odd"))).contains(QStringLiteral("its name is not a UUID")));
    QVERIFY(QFile::link(QStringLiteral("/etc/passwd"), folder + QStringLiteral("/link")));
    QVERIFY(pack(folder).contains(QStringLiteral("is no plain file")));
    QVERIFY(!QFile::exists(out));
}

void TestProjects::doctorTellsOfPlugins()
{
    QVERIFY(!copyOfLamps(m_dir->path()).isEmpty());
    QVERIFY(put(path(QStringLiteral("odd/file")), ""));
    const Result result = kora({QStringLiteral("doctor"), m_dir->path()});
    QCOMPARE(result.exitCode, 1);
    for (const QString &expected :
         {QStringLiteral("5.15"), QStringLiteral("Roboto"), QStringLiteral("cmake, for"),
          QStringLiteral("odd: the folder's name"), lampsId}) {
        QVERIFY2(result.out.contains(expected), qPrintable(expected + result.out.right(700)));
    }
}

void TestProjects::doctorTellsWhatTheMachineLacks()
{
    const QString cmake = path(QStringLiteral("bin/cmake"));
    QVERIFY(put(cmake, "#!/bin/sh\necho cmake version 3.10.2\n"));
    QVERIFY(QFile::setPermissions(cmake, QFile::ReadOwner | QFile::ExeOwner));
    const Result result = kora({QStringLiteral("doctor"), path(QStringLiteral("none"))},
                               {{QStringLiteral("PATH"), QFileInfo(cmake).path()},
                                {QStringLiteral("LD_BIND_NOW"), QStringLiteral("1")}});
    QCOMPARE(result.exitCode, 1);
    const QString out = result.out.simplified();
    for (const char *expected :
         {"WRONG cmake, for building widget libraries 3.10.2 version 3.25 is needed",
          "WRONG c++, for building widget libraries not in PATH install it (Debian: g++)",
          "- ld.lld, for building for panels not in PATH install it (Debian: lld)",
          "WRONG CMake package none beside this command", "- LD_BIND_NOW set",
          "does not exist name another directory", "to be put right"}) {
        QVERIFY2(out.contains(QLatin1String(expected)), qPrintable(QLatin1String(expected) + out));
    }
}

KORA_TEST_MAIN(TestProjects)
#include "tst_projects.moc"
