// SPDX-License-Identifier: Apache-2.0
#include <support/filesizelimit.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>

#include <kora/loader/pluginloader.h>

#include <ctime>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>

using KORA::INTERNAL::PluginLoader;
using Action = PluginLoader::ExtraResourceAction;

namespace {

const QString valveId = QStringLiteral("5b0c6c2e-7f0f-4a53-8f07-3a6f3e5f0c01");
const QString controlCharacterId = QStringLiteral("5b0c6c2e-7f0f-4a53-8f07-3a6f3e5f0c02");
const QString english = QStringLiteral("en-US");
const QString italian = QStringLiteral("it-IT");

const QStringList valveDocuments{
    QStringLiteral("gallery_page_0.krx"), QStringLiteral("project_gallery_page_0.krx"),
    QStringLiteral("studio_defaults.krx"), QStringLiteral("studio_properties.xml")};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// Every file and link below the folder with its content, one line each.
QStringList treeOf(const QString &dirPath)
{
    QStringList lines;
    QDirIterator i(dirPath, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
    while (i.hasNext()) {
        const QFileInfo info(i.next());
        const QString content = info.isSymLink() ? info.symLinkTarget()
                                : info.isFile()  ? QString::fromUtf8(contentOf(info.filePath()).toHex())
                                                 : QString();
        lines.append(info.filePath() + QLatin1Char(' ') + content);
    }
    lines.sort();
    return lines;
}

void setModified(const QString &path, const timespec &time)
{
    const timespec times[] = {time, time};
    QCOMPARE(utimensat(AT_FDCWD, qPrintable(path), times, 0), 0);
}

QString textOf(const Action &action)
{
    static const char *const names[] = {"keep", "generate", "remove"};
    const QString text = QLatin1String(names[action.type]) + QLatin1Char(' ') + action.name;
    return action.reason.isEmpty() ? text : text + QStringLiteral(": ") + action.reason;
}

} // namespace

class ExtraResourcesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void wrongCallsUnloadEverything_data();
    void wrongCallsUnloadEverything();
    void firstRun();
    void laterRuns_data();
    void laterRuns();
    void modificationTimes_data();
    void modificationTimes();
    void hostileIndexRemovesNothingOutside_data();
    void hostileIndexRemovesNothingOutside();
    void whatStandsInTheWay_data();
    void whatStandsInTheWay();
    void failingPluginIsDropped();
    void fullDiskLeavesNoDocuments();

private:
    using Disturbance = std::function<void()>;

    void installPlugin(const QString &libraryPath, const QString &id);
    bool run(const QString &language);
    QStringList plan(const QString &language) const;
    QString inDir(const QString &name) const { return m_root->filePath(name); }
    QString inResources(const QString &name) const { return m_resources + QLatin1Char('/') + name; }
    QString indexPath() const { return inResources(QStringLiteral("index.json")); }
    QString valveLibrary() const;
    void replaceInIndex(const QByteArray &before, const QByteArray &after) const;
    void load(PluginLoader &loader) const;

    QScopedPointer<LogRecorder> m_log;
    QScopedPointer<QTemporaryDir> m_root;
    QString m_resources;
};

void ExtraResourcesTest::init()
{
    m_log.reset(new LogRecorder);
    m_root.reset(new QTemporaryDir);
    m_resources = inDir(QStringLiteral("resources %1"));
    installPlugin(QStringLiteral(KORA_TEST_LIBRARY_studio_valve), valveId);
    writeFile(inDir(QStringLiteral("canary/folder/file")), "untouched");
}

void ExtraResourcesTest::cleanup()
{
    m_log.reset();
}

// A copy of the plugin folder, which the test may change.
void ExtraResourcesTest::installPlugin(const QString &libraryPath, const QString &id)
{
    const QString relative = QDir(QStringLiteral(KORA_TEST_PLUGINS_DIR)).relativeFilePath(libraryPath);
    QVERIFY(relative.startsWith(id));
    const QString copy = inDir(QStringLiteral("plugins/") + relative);
    QVERIFY(QDir().mkpath(QFileInfo(copy).absolutePath()));
    QVERIFY(QFile::copy(libraryPath, copy));
}

QString ExtraResourcesTest::valveLibrary() const
{
    const QString relative = QDir(QStringLiteral(KORA_TEST_PLUGINS_DIR))
                                 .relativeFilePath(QStringLiteral(KORA_TEST_LIBRARY_studio_valve));
    return inDir(QStringLiteral("plugins/") + relative);
}

// The log lines of loading are not the matter here.
void ExtraResourcesTest::load(PluginLoader &loader) const
{
    const auto linesBefore = m_log->takeLines();
    QVERIFY(linesBefore.isEmpty());
    QVERIFY(loader.loadFromDir(inDir(QStringLiteral("plugins")), {}));
    m_log->takeLines();
    QVERIFY(loader.init());
}

bool ExtraResourcesTest::run(const QString &language)
{
    PluginLoader loader;
    load(loader);
    return loader.generateStudioExtraResources(m_resources, language);
}

QStringList ExtraResourcesTest::plan(const QString &language) const
{
    PluginLoader loader;
    load(loader);
    QStringList texts;
    const auto actions = loader.checkStudioExtraResources(m_resources, language);
    for (const Action &action : actions) {
        texts.append(textOf(action));
    }
    return texts;
}

void ExtraResourcesTest::replaceInIndex(const QByteArray &before, const QByteArray &after) const
{
    const QByteArray content = contentOf(indexPath());
    QVERIFY(content.contains(before));
    writeFile(indexPath(), QByteArray(content).replace(before, after));
}

void ExtraResourcesTest::wrongCallsUnloadEverything_data()
{
    QTest::addColumn<bool>("isInit");
    QTest::addColumn<QString>("path"); // "$" is the test's folder
    QTest::addColumn<QString>("message");

    QTest::newRow("before init") << false << QStringLiteral("$/resources")
                                 << QStringLiteral(
                                        "generateStudioExtraResources must be called after init function");
    QTest::newRow("no path") << true << QString() << QStringLiteral("dirPath must be not empty");
    QTest::newRow("a file") << true << QStringLiteral("$/canary/folder/file")
                            << QStringLiteral("dirPath must be a directory");
    QTest::newRow("below a file; the message keeps its second place")
        << true << QStringLiteral("$/canary/folder/file/below/%2")
        << QStringLiteral("Error creating $/canary/folder/file/below/%2: %2");
    QTest::newRow("NUL") << true << QString(QChar::Null)
                         << QStringLiteral("Error creating ") + QChar(QChar::Null) + QStringLiteral(": %2");
}

void ExtraResourcesTest::wrongCallsUnloadEverything()
{
    QFETCH(const bool, isInit);
    QFETCH(QString, path);
    QFETCH(QString, message);
    path.replace(QLatin1Char('$'), m_root->path());
    message.replace(QLatin1Char('$'), m_root->path());
    PluginLoader loader;
    load(loader);
    if (!isInit) {
        QVERIFY(loader.deinit());
    }
    QVERIFY(!loader.generateStudioExtraResources(path, english));
    QCOMPARE(m_log->takeTexts(), QStringList{QStringLiteral("critical RESOURCES_GENERATION <>: ") + message});
    QVERIFY(loader.pluginData().isEmpty());
    QVERIFY(!QFileInfo::exists(inDir(QStringLiteral("resources"))));
}

void ExtraResourcesTest::firstRun()
{
    PluginLoader loader;
    load(loader);
    QStringList progress;
    QVERIFY(loader.generateStudioExtraResources(m_resources, italian, [&progress](int done, int total) {
        progress.append(QString::number(done) + QLatin1String(" of ") + QString::number(total));
    }));
    QCOMPARE(progress, QStringList{QStringLiteral("1 of 1")});

    QCOMPARE(QDir(m_resources).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{valveId, QStringLiteral("index.json")}));
    QCOMPARE(QDir(inResources(valveId)).entryList(QDir::Files), valveDocuments);
    const auto *plugin = loader.pluginDataByPluginId(valveId)->toWidgetLibraryPluginData();
    QVERIFY(contentOf(plugin->studioPropertiesPath(m_resources)).contains("display=\"Aperta\""));
    QVERIFY(contentOf(plugin->studioDefaultsPath(m_resources)).contains("file=\"gallery_page_0.krx\""));
    for (const QString &name : valveDocuments) {
        const QByteArray document = contentOf(inResources(valveId + QLatin1Char('/') + name));
        QVERIFY(!document.contains("<?xml"));
        QXmlStreamReader reader(document);
        while (!reader.atEnd()) {
            reader.readNext();
        }
        QVERIFY2(!reader.hasError(), qPrintable(name + reader.errorString()));
    }
    QMap<QString, PluginLoader::ExtraResourceData> index;
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(indexPath(), index));
    QCOMPARE(index.keys(), QStringList{valveId});
    QCOMPARE(index.value(valveId).modification, QFileInfo(valveLibrary()).lastModified());
    QCOMPARE(index.value(valveId).languageId, italian);
    QCOMPARE(index.value(valveId).libraryVersion, QStringLiteral("1.1.0"));
}

void ExtraResourcesTest::laterRuns_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("plan"); // "$" is the valve's id
    QTest::addColumn<bool>("result");

    const auto row = [](const char *change, const QStringList &plan, const QString &language = english,
                        bool result = true) {
        QTest::newRow(change) << QString::fromLatin1(change) << language << plan << result;
    };
    const QString generate = QStringLiteral("generate $: ");
    row("nothing", {QStringLiteral("keep $")});
    row("library touched", {generate + QStringLiteral("its library has changed")});
    row("other language", {generate + QStringLiteral("it was in en-US")}, italian);
    row("older documents", {generate + QStringLiteral("it was of version 1.0.0")});
    row("folder missing", {generate + QStringLiteral("its folder is missing")});
    row("index missing", {generate + QStringLiteral("it is new")});
    row("index broken", {generate + QStringLiteral("it is new")}, english, false);
    row("orphan", {QStringLiteral("keep $"), QStringLiteral("remove orphan: the index does not name it")});
    row("other plugin gone", {QStringLiteral("keep $"),
                              QStringLiteral("remove 99999999-2222-4333-8444-555555555555: no such plugin is "
                                             "loaded")});
}

// What a run does is what was planned; and it always ends with the documents of a first run.
void ExtraResourcesTest::laterRuns()
{
    QFETCH(const QString, change);
    QFETCH(const QString, language);
    QFETCH(QStringList, plan);
    QFETCH(const bool, result);

    QVERIFY(run(language));
    const QStringList documents = treeOf(inResources(valveId));
    if (language != english) {
        QVERIFY(run(english));
    }
    const QString witness = inResources(valveId + QStringLiteral("/studio_properties.xml"));
    const timespec longAgo{1000000000, 0};
    setModified(witness, longAgo);
    const QString otherId = QStringLiteral("99999999-2222-4333-8444-555555555555");
    const QMap<QString, Disturbance> changes{
        {QStringLiteral("library touched"),
         [this] {
             setModified(valveLibrary(), {1000000000, 0});
         }},
        {QStringLiteral("older documents"), [this] { replaceInIndex("\"1.1.0\"", "\"1.0.0\""); }},
        {QStringLiteral("folder missing"), [this] { QDir(inResources(valveId)).removeRecursively(); }},
        {QStringLiteral("index missing"), [this] { QFile::remove(indexPath()); }},
        {QStringLiteral("index broken"), [this] { writeFile(indexPath(), "{"); }},
        {QStringLiteral("orphan"), [this] { writeFile(inResources(QStringLiteral("orphan/file")), "x"); }},
        {QStringLiteral("other plugin gone"),
         [this, otherId] {
             QMap<QString, PluginLoader::ExtraResourceData> index;
             QVERIFY(PluginLoader::readExtraResourcesIndexFile(indexPath(), index));
             index.insert(otherId, index.first());
             QVERIFY(PluginLoader::writeExtraResourcesIndexFile(indexPath(), index));
             writeFile(inResources(otherId + QStringLiteral("/studio_properties.xml")), "x");
         }},
    };
    changes.value(change, [] {})();

    const QByteArray index = contentOf(indexPath());
    const QStringList tree = treeOf(m_root->path());
    QCOMPARE(this->plan(language), plan.replaceInStrings(QStringLiteral("$"), valveId));
    QCOMPARE(treeOf(m_root->path()), tree);
    m_log->takeLines();

    QCOMPARE(run(language), result);
    QCOMPARE(m_log->takeLines().isEmpty(), result);
    QCOMPARE(treeOf(inResources(valveId)), documents);
    const bool isKept = plan.contains(QStringLiteral("keep ") + valveId);
    QCOMPARE(QFileInfo(witness).lastModified().toSecsSinceEpoch() == longAgo.tv_sec, isKept);
    QCOMPARE(QDir(m_resources).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{valveId});
    if (isKept) {
        QCOMPARE(contentOf(indexPath()), index);
    }
    // The next run has nothing left to do.
    QCOMPARE(this->plan(language), QStringList{QStringLiteral("keep ") + valveId});
}

void ExtraResourcesTest::modificationTimes_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<qint64>("nanoseconds");

    QTest::newRow("the first second of 1970") << qint64(0) << qint64(0);
    QTest::newRow("half a millisecond later") << qint64(0) << qint64(500000);
    QTest::newRow("with parts of a millisecond") << qint64(1715936591) << qint64(123456789);
    // In Rome 2024-10-27 02:30 came twice.
    QTest::newRow("repeated hour, first time") << qint64(1729989000) << qint64(0);
    QTest::newRow("repeated hour, second time") << qint64(1729992600) << qint64(0);
}

void ExtraResourcesTest::modificationTimes()
{
    QFETCH(const qint64, seconds);
    QFETCH(const qint64, nanoseconds);
    const QByteArray formerZone = qgetenv("TZ");
    qputenv("TZ", "Europe/Rome");
    tzset();
    setModified(valveLibrary(), {seconds, nanoseconds});
    QVERIFY(run(english));
    const QByteArray index = contentOf(indexPath());
    for (const int warmUp : {1729992600, 1729989000}) {
        // Which instant the repeated hour reads as depends on what was converted before.
        QDateTime::fromSecsSinceEpoch(warmUp).toString();
        QCOMPARE(plan(english), QStringList{QStringLiteral("keep ") + valveId});
        QVERIFY(run(english));
        QCOMPARE(contentOf(indexPath()), index);
    }
    formerZone.isEmpty() ? qunsetenv("TZ") : qputenv("TZ", formerZone);
    tzset();
}

void ExtraResourcesTest::hostileIndexRemovesNothingOutside_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("way out behind an id") << valveId.toUtf8() + "/../../canary";
    QTest::newRow("up") << QByteArray("..");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("absolute") << QByteArray("$/canary");
    QTest::newRow("NUL behind an id") << valveId.toUtf8() + "\\u0000";
}

void ExtraResourcesTest::hostileIndexRemovesNothingOutside()
{
    QFETCH(QByteArray, id);
    id.replace('$', m_root->path().toUtf8());
    QVERIFY(run(english));
    replaceInIndex(valveId.toUtf8(), id);
    replaceInIndex("en-US", "fr-FR");
    const QStringList canary = treeOf(inDir(QStringLiteral("canary")));
    QVERIFY(!run(english));
    QCOMPARE(m_log->takeMessages().size(), 1);
    QCOMPARE(treeOf(inDir(QStringLiteral("canary"))), canary);
    QCOMPARE(plan(english), QStringList{QStringLiteral("keep ") + valveId});
}

void ExtraResourcesTest::whatStandsInTheWay_data()
{
    QTest::addColumn<QString>("name"); // "$" is the valve's id
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("indexIsStale");

    const QStringList kinds{QStringLiteral("file"), QStringLiteral("pipe"), QStringLiteral("link"),
                            QStringLiteral("dangling link"), QStringLiteral("folder")};
    for (const QString &kind : kinds) {
        QTest::addRow("%s, stale in the index", qPrintable(kind)) << QStringLiteral("$") << kind << true;
        QTest::addRow("%s, not in the index", qPrintable(kind)) << QStringLiteral("$") << kind << false;
        QTest::addRow("%s, in place of unfinished documents", qPrintable(kind))
            << QStringLiteral("$.part") << kind << false;
    }
}

void ExtraResourcesTest::whatStandsInTheWay()
{
    QFETCH(QString, name);
    QFETCH(const QString, kind);
    QFETCH(const bool, indexIsStale);
    QVERIFY(run(english));
    const QStringList documents = treeOf(inResources(valveId));
    QVERIFY(QDir(inResources(valveId)).removeRecursively());
    if (indexIsStale) {
        replaceInIndex("en-US", "fr-FR");
    } else {
        QVERIFY(QFile::remove(indexPath()));
    }
    const QString path = inResources(name.replace(QLatin1Char('$'), valveId));
    if (kind == QLatin1String("file")) {
        writeFile(path, "in the way");
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    } else if (kind == QLatin1String("folder")) {
        writeFile(path + QStringLiteral("/.hidden"), "in the way");
        QVERIFY(QFile::link(inDir(QStringLiteral("canary")), path + QStringLiteral("/link")));
    } else {
        const bool isDangling = kind == QLatin1String("dangling link");
        QVERIFY(QFile::link(inDir(isDangling ? QStringLiteral("nowhere") : QStringLiteral("canary")), path));
    }
    const QStringList canary = treeOf(inDir(QStringLiteral("canary")));

    QVERIFY(run(english));
    QCOMPARE(treeOf(inDir(QStringLiteral("canary"))), canary);
    QVERIFY(!QFileInfo(inResources(valveId)).isSymLink());
    QCOMPARE(treeOf(inResources(valveId)), documents);
    QCOMPARE(QDir(m_resources).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             (QStringList{valveId, QStringLiteral("index.json")}));
}

void ExtraResourcesTest::failingPluginIsDropped()
{
    installPlugin(QStringLiteral(KORA_TEST_LIBRARY_studio_controlcharacter), controlCharacterId);
    PluginLoader loader;
    load(loader);
    QCOMPARE(loader.pluginData().size(), 2);
    QVERIFY(!loader.generateStudioExtraResources(m_resources, english));
    QCOMPARE(m_log->takeTexts(),
             QStringList{QStringLiteral("critical RESOURCES_GENERATION <%1>: Error generating file "
                                        "%2/gallery_page_0.krx")
                             .arg(controlCharacterId, inResources(controlCharacterId))});
    QCOMPARE(loader.pluginData().keys(), QStringList{valveId});
    QCOMPARE(QDir(m_resources).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{valveId});
    QVERIFY(!contentOf(indexPath()).contains(controlCharacterId.toUtf8()));
    QVERIFY(loader.deinit());
}

void ExtraResourcesTest::fullDiskLeavesNoDocuments()
{
    {
        const FileSizeLimit limit(1000); // the index fits, the property sheet does not
        QVERIFY(!run(english));
    }
    QCOMPARE(m_log->takeMessages(),
             QStringList{QStringLiteral("Error generating studio_properties of ") + valveLibrary()});
    QCOMPARE(QDir(m_resources).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("index.json")});
    QVERIFY(run(english));
    QCOMPARE(QDir(inResources(valveId)).entryList(QDir::Files), valveDocuments);
}

KORA_TEST_MAIN(ExtraResourcesTest)

#include "tst_extraresources.moc"
