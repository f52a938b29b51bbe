// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QScopeGuard>

#include <memory>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/loader/pluginloader.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>
#include <kora/runtime/widgetlibraryplugin_p.h>
#include <kora/testkit/host.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include "pluginfolders.h"

using KORA::INTERNAL::PluginData;
using KORA::INTERNAL::PluginLoader;
using KORA::INTERNAL::WidgetLibraryPluginData;

namespace {

QByteArray good(const QString &id)
{
    static const QByteArray library = PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_good);
    return patched(library, builtId(), id.toLatin1());
}

QString loadedLine(const QString &id)
{
    return QStringLiteral("info PLUGIN_LOADING <%1>: Plugin %1 (v1.20.3) loaded, author Plant %2 Builders")
        .arg(id, QStringLiteral("%1%2%3"));
}

QString errorLine(const QString &path, const QString &reason)
{
    return QStringLiteral("critical PLUGIN_LOADING <%1>: Error loading the plugin %1: %2").arg(path, reason);
}

QString noIidLine(const QString &path)
{
    return errorLine(path, QStringLiteral("the IID is not specified"));
}

QString invalidNameLine(const QString &folder)
{
    return QStringLiteral("critical PLUGIN_LOADING <>: The name of the folder %1 is not a valid UUID")
        .arg(folder);
}

const QString initedLine = QStringLiteral("warning GENERAL <>: The plugin loader is already inited");

/// What the plugins told since the last call; see fixtures/good.cpp.
QStringList takePluginCalls()
{
    const QStringList calls = qApp->property("pluginCalls").toStringList();
    qApp->setProperty("pluginCalls", QVariant());
    return calls;
}

std::unique_ptr<KORA::Widget> makeGauge(PluginData *data, KORA::INTERNAL::WidgetActionManagerImpl *host)
{
    auto *record = data->toWidgetLibraryPluginData();
    const auto gauge = record->metaInformation()->widgets().first();
    QObject *object = KORA::INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(record->instance())
                          ->newWidgetInstance(gauge.id(), gauge.version().version(),
                                              data->metaInformation()->id(), gauge.fieldInfo(), host);
    return std::unique_ptr<KORA::Widget>(qobject_cast<KORA::Widget *>(object));
}

} // namespace

class TestPluginLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { takePluginCalls(); }

    void recordTellsOfThePlugin();
    void folderIsNamedByAUuid_data();
    void folderIsNamedByAUuid();
    void oneBadFolderDoesNotStopTheOthers();
    void disabledFoldersAreSkipped();
    void emptyFolderIsFine();
    void missingFolderIsAWarning();
    void relativePathsAreResolved();
    void secondFolderOfAnIdIsRefused();
    void pathWithoutExpectedId();
    void displacedRecordLives();
    void hooksRunInTwoPasses();
    void initNeedsPlugins();
    void loadingIsRefusedWhileInited();
    void twinFoldersOfOneFile_data();
    void twinFoldersOfOneFile();
    void twoLoadersOfOneFile_data();
    void twoLoadersOfOneFile();
    void widgetsOutliveTheLoader();
    void completeFolderHasEveryPlatform_data();
    void completeFolderHasEveryPlatform();
    void thousandPlugins();
};

void TestPluginLoader::recordTellsOfThePlugin()
{
    const PluginFolders folders;
    const QString id = pluginId(0xab);
    const QString path = folders.put(id, good(id));
    QVERIFY(!path.isEmpty());
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginDir(folders.folder(id) + QLatin1Char('/')));
    QCOMPARE(log.takeTexts(), QStringList{loadedLine(id)});
    QCOMPARE(loader.pluginData().keys(), QStringList{id});
    QVERIFY(!loader.pluginDataByPluginId(id.toUpper()));

    PluginData *data = loader.pluginDataByPluginId(id);
    QVERIFY(data);
    QCOMPARE(static_cast<int>(data->type()), 1);
    QCOMPARE(data->libraryPath(), path);
    QVERIFY(data->loadingTimeMs() > 0 && data->loadingTimeMs() < 10000);
    QCOMPARE(data->metaInformation()->author(), QStringLiteral("Plant %1%2%3 Builders"));
    QCOMPARE(data->instance()->metaObject()->className(), "Good");
    WidgetLibraryPluginData *record = data->toWidgetLibraryPluginData();
    QCOMPARE(static_cast<KORA::Plugin *>(record->instance()), data->instance());
    QCOMPARE(record->metaInformation()->widgets().size(), 1);
    QCOMPARE(record->studioPropertiesPath(QStringLiteral("/res%1/./x")),
             QStringLiteral("/res%1/x/") + id + QStringLiteral("/studio_properties.xml"));
    QCOMPARE(record->studioDefaultsPath(QStringLiteral("res")),
             QDir::current().absoluteFilePath(QStringLiteral("res/") + id
                                              + QStringLiteral("/studio_defaults.krx")));

    loader.unload();
    QVERIFY(loader.pluginData().isEmpty());
    QCOMPARE(takePluginCalls(), (QStringList{QStringLiteral("00ab made"), QStringLiteral("00ab deleted")}));
}

void TestPluginLoader::folderIsNamedByAUuid_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isUuid");
    const QString id = pluginId(4);
    QTest::newRow("a UUID") << id << true;
    QTest::newRow("a UUID in upper case") << id.toUpper() << true;
    QTest::newRow("a UUID in braces") << QLatin1Char('{') + id + QLatin1Char('}') << true;
    QTest::newRow("only the opening brace") << QLatin1Char('{') + id << false;
    QTest::newRow("only the closing brace") << id + QLatin1Char('}') << false;
    QTest::newRow("two pairs of braces") << QStringLiteral("{{%1}}").arg(id) << false;
    QTest::newRow("a tail") << id + QStringLiteral("garbage") << false;
    QTest::newRow("a tail behind the braces") << QStringLiteral("{%1}x").arg(id) << false;
    QTest::newRow("a blank tail") << id + QLatin1Char(' ') << false;
    QTest::newRow("a line end") << id + QLatin1Char('\n') << false;
    QTest::newRow("a leading blank") << QLatin1Char(' ') + id << false;
    QTest::newRow("a digit too few") << id.chopped(1) << false;
    QTest::newRow("a letter that is no digit") << id.chopped(1) + QLatin1Char('g') << false;
    QTest::newRow("no dashes") << QString(id).remove(QLatin1Char('-')) << false;
    QTest::newRow("the null UUID") << QStringLiteral("00000000-0000-0000-0000-000000000000") << false;
    QTest::newRow("a word") << QStringLiteral("widgets") << false;
}

void TestPluginLoader::folderIsNamedByAUuid()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isUuid);
    const PluginFolders folders;
    const QString path = folders.makeFolder(name);
    const QString complete[] = {QStringLiteral("/win32/x86/%1.dll"), QStringLiteral("/win32/x64/%1.dll"),
                                QStringLiteral("/linux/arm32/lib%1.so"),
                                QStringLiteral("/linux/arm64/lib%1.so")};
    for (const QString &file : complete) {
        const QString filePath = folders.folder(name) + file.arg(name);
        QVERIFY(QDir().mkpath(QFileInfo(filePath).path()) && PluginFolders::writeFile(filePath, {}));
    }
    QVERIFY(PluginFolders::writeFile(path, {})); // may be one of the four

    LogRecorder log;
    PluginLoader loader;
    QCOMPARE(loader.checkPluginDir(folders.folder(name)), isUuid);
    QCOMPARE(log.takeTexts(), QStringList());
    const QStringList expected{isUuid ? noIidLine(path) : invalidNameLine(folders.folder(name))};
    QVERIFY(!loader.loadFromPluginDir(folders.folder(name)));
    QCOMPARE(log.takeTexts(), expected);
    QVERIFY(!loader.loadFromDir(folders.path(), {}));
    QCOMPARE(log.takeTexts(), expected);
}

void TestPluginLoader::oneBadFolderDoesNotStopTheOthers()
{
    const PluginFolders folders;
    const QString braced = QLatin1Char('{') + pluginId(5) + QLatin1Char('}');
    QVERIFY(!folders.put(pluginId(6), good(pluginId(6))).isEmpty());
    QVERIFY(!folders.put(pluginId(5), good(pluginId(5))).isEmpty());
    const QString bracedPath = folders.put(braced, good(pluginId(5)));
    for (const char *name : {"b", "A", "c"}) {
        QVERIFY(!folders.makeFolder(QLatin1String(name)).isEmpty());
    }
    QVERIFY(PluginFolders::writeFile(folders.folder(QStringLiteral("readme")), "not a folder"));

    LogRecorder log;
    PluginLoader loader;
    QVERIFY(!loader.loadFromDir(folders.path(), {}));
    // By name, ignoring case. The id never has braces, so a folder with them is found but refused.
    QStringList lines = log.takeTexts();
    const QString bracedLine = errorLine(
        bracedPath, QStringLiteral("the id %1 is not equal to the folder name %2").arg(pluginId(5), braced));
    QCOMPARE(lines.removeAll(bracedLine), 1);
    QCOMPARE(lines, (QStringList{loadedLine(pluginId(5)), loadedLine(pluginId(6)),
                                 invalidNameLine(folders.folder(QStringLiteral("A"))),
                                 invalidNameLine(folders.folder(QStringLiteral("b"))),
                                 invalidNameLine(folders.folder(QStringLiteral("c")))}));
    QCOMPARE(loader.pluginData().keys(), (QStringList{pluginId(5), pluginId(6)}));
}

void TestPluginLoader::disabledFoldersAreSkipped()
{
    const PluginFolders folders;
    const QString id = pluginId(0xaa);
    QVERIFY(!folders.put(id, "not even a library").isEmpty());
    const QString word = QStringLiteral("widgets");
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromDir(folders.path(), {word, id}));
    QCOMPARE(log.takeTexts(),
             QStringList{QStringLiteral("info PLUGIN_LOADING <%1>: The plugin with the id %1 (%2) will not "
                                        "be loaded (disabled by user)")
                             .arg(id, folders.folder(id))});
    QVERIFY(!loader.loadFromDir(folders.path(), {id.toUpper()}));
    QCOMPARE(log.takeTexts(), QStringList{noIidLine(folders.libraryPath(id))});

    // A name that is no UUID is wrong, disabled or not.
    QVERIFY(!folders.makeFolder(word).isEmpty());
    QVERIFY(!loader.loadFromDir(folders.path(), {word, id}));
    QCOMPARE(log.takeTexts().last(), invalidNameLine(folders.folder(word)));
}

void TestPluginLoader::emptyFolderIsFine()
{
    const PluginFolders folders;
    PluginLoader loader;
    QVERIFY(loader.loadFromDir(folders.path(), {}));
    QVERIFY(loader.pluginData().isEmpty());
}

void TestPluginLoader::missingFolderIsAWarning()
{
    const PluginFolders folders;
    const QString missing = folders.folder(pluginId(7));
    const QStringList expected{
        QStringLiteral("warning GENERAL <>: The folder \"%1\" doesn't exists").arg(missing)};
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(!loader.loadFromDir(missing, {}));
    QCOMPARE(log.takeTexts(), expected);
    QVERIFY(!loader.loadFromPluginDir(missing));
    QCOMPARE(log.takeTexts(), expected);
}

void TestPluginLoader::relativePathsAreResolved()
{
    const PluginFolders folders;
    const QString id = pluginId(8);
    const QString path = folders.put(id, good(id));
    LogRecorder log;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folders.path()));
    const auto restore = qScopeGuard([&before] { QDir::setCurrent(before); });
    const QString here = QDir::currentPath();
    const QString libraryPath = QDir(here).absoluteFilePath(QDir(folders.path()).relativeFilePath(path));
    for (int way = 0; way < 3; ++way) {
        PluginLoader loader;
        QVERIFY(way == 0   ? loader.loadFromDir(QStringLiteral("."), {})
                : way == 1 ? loader.loadFromPluginDir(id)
                           : loader.loadFromPluginPath(QDir(here).relativeFilePath(libraryPath), id));
        QCOMPARE(loader.pluginDataByPluginId(id)->libraryPath(), libraryPath);
        QCOMPARE(log.takeTexts(), QStringList{loadedLine(id)});
    }
}

void TestPluginLoader::secondFolderOfAnIdIsRefused()
{
    const PluginFolders first;
    const PluginFolders second;
    const QString id = pluginId(9);
    const QString path = first.put(id, good(id));
    QVERIFY(!second.put(id, good(id)).isEmpty());
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginDir(first.folder(id)));
    log.takeTexts();
    const PluginData *data = loader.pluginDataByPluginId(id);
    for (const PluginFolders *folders : {&first, &second}) {
        const QStringList expected{
            QStringLiteral("critical PLUGIN_LOADING <%1>: A plugin with the id %1 is already loaded from "
                           "path %2. The folder %3 has not been loaded")
                .arg(id, path, folders->folder(id))};
        QVERIFY(!loader.loadFromPluginDir(folders->folder(id)));
        QCOMPARE(log.takeTexts(), expected);
        QVERIFY(!loader.loadFromDir(folders->path(), {}));
        QCOMPARE(log.takeTexts(), expected);
    }
    QCOMPARE(loader.pluginDataByPluginId(id), data);
    QCOMPARE(takePluginCalls(), QStringList{QStringLiteral("0009 made")});
}

void TestPluginLoader::pathWithoutExpectedId()
{
    const PluginFolders folders;
    const QString path = folders.put(pluginId(0xa), good(pluginId(0xb)));
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(!loader.loadFromPluginPath(path, pluginId(0xa)));
    log.takeTexts();
    QVERIFY(loader.loadFromPluginPath(path, QString()));
    QCOMPARE(log.takeTexts(), QStringList{loadedLine(pluginId(0xb))});
    QCOMPARE(loader.pluginData().keys(), QStringList{pluginId(0xb)});
}

void TestPluginLoader::displacedRecordLives()
{
    const PluginFolders folders;
    const QString id = pluginId(0xc);
    const QString path = folders.put(id, good(id));
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginPath(path, id));
    const std::unique_ptr<PluginData> first(loader.pluginDataByPluginId(id));
    QVERIFY(loader.loadFromPluginPath(path, id));
    QCOMPARE(log.takeTexts(), (QStringList{loadedLine(id), loadedLine(id)}));
    QVERIFY(loader.pluginDataByPluginId(id) != first.get());
    QCOMPARE(loader.pluginData().size(), 1);

    // Both hold the one instance that Qt makes of a file.
    QCOMPARE(first->metaInformation()->id(), id);
    QCOMPARE(loader.pluginDataByPluginId(id)->instance(), first->instance());
    loader.unload();
    QCOMPARE(takePluginCalls(), QStringList{QStringLiteral("000c made")});
}

void TestPluginLoader::hooksRunInTwoPasses()
{
    const PluginFolders folders;
    for (const int number : {0x12, 0x10, 0x11}) {
        QVERIFY(!folders.put(pluginId(number), good(pluginId(number))).isEmpty());
    }
    const auto passes = [](const QString &first, const QString &second) {
        QStringList calls;
        for (const QString &call : {first, second}) {
            for (const char *id : {"0010 ", "0011 ", "0012 "}) {
                calls.append(QLatin1String(id) + call);
            }
        }
        return calls;
    };
    const QStringList loadCalls = passes(QStringLiteral("aboutToLoad"), QStringLiteral("load"));
    const QStringList unloadCalls = passes(QStringLiteral("aboutToUnload"), QStringLiteral("unload"));
    LogRecorder log;
    {
        PluginLoader loader;
        for (const int number : {0x12, 0x10, 0x11}) {
            QVERIFY(loader.loadFromPluginDir(folders.folder(pluginId(number))));
        }
        QCOMPARE(log.takeTexts().size(), 3);
        takePluginCalls();

        QVERIFY(!loader.deinit());
        QCOMPARE(takePluginCalls(), QStringList());
        QVERIFY(loader.init());
        QVERIFY(loader.isInit());
        QCOMPARE(takePluginCalls(), loadCalls);
        QVERIFY(!loader.init());
        QCOMPARE(takePluginCalls(), QStringList());
        QVERIFY(loader.deinit());
        QVERIFY(!loader.isInit());
        QCOMPARE(takePluginCalls(), unloadCalls);
        QVERIFY(!loader.deinit());
        QVERIFY(loader.init());
        takePluginCalls();
    }
    // The destructor stops and releases the plugins.
    const QStringList deleted{QStringLiteral("0010 deleted"), QStringLiteral("0011 deleted"),
                              QStringLiteral("0012 deleted")};
    QCOMPARE(takePluginCalls(), unloadCalls + deleted);
}

void TestPluginLoader::initNeedsPlugins()
{
    PluginLoader loader;
    QVERIFY(!loader.isInit());
    QVERIFY(!loader.init());
    QVERIFY(!loader.isInit());
    QVERIFY(!loader.deinit());
    loader.unload();
}

void TestPluginLoader::loadingIsRefusedWhileInited()
{
    const PluginFolders folders;
    const QString path = folders.put(pluginId(0xd), good(pluginId(0xd)));
    const QString other = folders.put(pluginId(0xe), good(pluginId(0xe)));
    const QString missing = folders.folder(QStringLiteral("missing"));
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginPath(path, QString()));
    QVERIFY(loader.init());
    log.takeTexts();

    QVERIFY(!loader.loadFromDir(folders.path(), {}));
    QCOMPARE(log.takeTexts(), QStringList{initedLine});
    QVERIFY(!loader.loadFromDir(missing, {}));
    QCOMPARE(log.takeTexts(), QStringList{initedLine});
    QVERIFY(!loader.loadFromPluginDir(folders.folder(pluginId(0xe))));
    QCOMPARE(log.takeTexts(), QStringList{initedLine});
    QVERIFY(!loader.loadFromPluginPath(other, pluginId(0xe)));
    QCOMPARE(log.takeTexts(), QStringList{initedLine});
    QCOMPARE(loader.pluginData().size(), 1);

    QVERIFY(loader.deinit());
    QVERIFY(loader.loadFromPluginPath(other, pluginId(0xe)));
    QVERIFY(loader.init());
    loader.unload();
    QVERIFY(!loader.isInit());
    QVERIFY(loader.loadFromPluginPath(path, QString()));
    log.takeTexts();
}

void TestPluginLoader::twinFoldersOfOneFile_data()
{
    QTest::addColumn<bool>("ownFirst");
    QTest::newRow("the folder of the id first") << true;
    QTest::newRow("the other folder first") << false;
}

// The other folder is refused; releasing it must not delete the instance that both share.
void TestPluginLoader::twinFoldersOfOneFile()
{
    QFETCH(const bool, ownFirst);
    const PluginFolders folders;
    const QString own = pluginId(ownFirst ? 0x20 : 0x22);
    const QString other = pluginId(0x21);
    const QString path = folders.put(own, good(own));
    const QString otherPath = folders.makeFolder(other);
    QVERIFY(QFile::link(path, otherPath));
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(!loader.loadFromDir(folders.path(), {}));
    const QString refused =
        errorLine(otherPath, QStringLiteral("the id %1 is not equal to the folder name %2").arg(own, other));
    QCOMPARE(log.takeTexts(),
             ownFirst ? (QStringList{loadedLine(own), refused}) : (QStringList{refused, loadedLine(own)}));
    KORA::TestKit::Host host;
    const std::unique_ptr<KORA::Widget> gauge = makeGauge(loader.pluginDataByPluginId(own), &host);
    QVERIFY(gauge);
    const std::unique_ptr<KORA::WidgetActionManager> manager(gauge->widgetActionManager());
    takePluginCalls();
    QVERIFY(loader.init());
    QCOMPARE(takePluginCalls().size(), 2);
}

void TestPluginLoader::twoLoadersOfOneFile_data()
{
    QTest::addColumn<bool>("firstGoesFirst");
    QTest::newRow("the first loader unloads first") << true;
    QTest::newRow("the second loader unloads first") << false;
}

void TestPluginLoader::twoLoadersOfOneFile()
{
    QFETCH(const bool, firstGoesFirst);
    const PluginFolders folders;
    const PluginFolders linked;
    const QString id = pluginId(firstGoesFirst ? 0x30 : 0x31);
    const QString path = folders.put(id, good(id));
    QVERIFY(QFile::link(path, linked.makeFolder(id)));
    LogRecorder log;
    PluginLoader first;
    PluginLoader second;
    QVERIFY(first.loadFromDir(folders.path(), {}));
    QVERIFY(second.loadFromDir(linked.path(), {}));
    QCOMPARE(log.takeTexts(), (QStringList{loadedLine(id), loadedLine(id)}));
    PluginLoader &leaves = firstGoesFirst ? first : second;
    PluginLoader &stays = firstGoesFirst ? second : first;
    leaves.unload();
    takePluginCalls();
    QVERIFY(stays.init());
    QCOMPARE(takePluginCalls().size(), 2);
    stays.unload();
    QCOMPARE(takePluginCalls().last(), id.right(4) + QStringLiteral(" deleted"));
}

void TestPluginLoader::widgetsOutliveTheLoader()
{
    const PluginFolders folders;
    const QString id = pluginId(0x40);
    const QByteArray library = PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_deletable);
    QVERIFY(!folders.put(id, patched(library, builtId(), id.toLatin1())).isEmpty());
    LogRecorder log;
    KORA::TestKit::Host host;
    std::unique_ptr<KORA::Widget> gauge;
    {
        PluginLoader loader;
        QVERIFY(loader.loadFromPluginDir(folders.folder(id)));
        gauge = makeGauge(loader.pluginDataByPluginId(id), &host);
        QVERIFY(gauge);
    }
    QCOMPARE(takePluginCalls().last(), QStringLiteral("0040 deleted"));
    const std::unique_ptr<KORA::WidgetActionManager> manager(gauge->widgetActionManager());
    gauge->setFieldValue(QStringLiteral("speed"), 12);
    QCOMPARE(gauge->objectName(), QStringLiteral("12"));
    QCOMPARE(gauge->metaObject()->className(), "Gauge");
    const std::unique_ptr<QObject> item(
        KORA::INTERNAL::WidgetPrivateAccessor::priv(gauge.get())->newGraphicsObjectInstance());
    QVERIFY(item);
    log.takeTexts();
}

void TestPluginLoader::completeFolderHasEveryPlatform_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("folderInstead");
    QTest::addColumn<bool>("isComplete");
    const QStringList all{QStringLiteral("win32/x86/%1.dll"), QStringLiteral("win32/x64/%1.dll"),
                          QStringLiteral("linux/arm32/lib%1.so"), QStringLiteral("linux/arm64/lib%1.so")};
    QTest::newRow("all four") << all << QString() << true;
    QTest::newRow("none") << QStringList() << QString() << false;
    for (const QString &file : all) {
        QStringList others = all;
        others.removeOne(file);
        const QByteArray name = QFileInfo(file).path().toLatin1();
        QTest::addRow("all but %s", name.constData()) << others << QString() << false;
        QTest::addRow("only %s", name.constData()) << QStringList{file} << QString() << false;
        QTest::addRow("a folder for %s", name.constData()) << others << file << false;
    }
    const QStringList windowsNames{all.at(0), all.at(1), QStringLiteral("linux/arm32/%1.so"),
                                   QStringLiteral("linux/arm64/%1.so")};
    QTest::newRow("Linux libraries without their prefix") << windowsNames << QString() << false;
    const QStringList upperCase{all.at(0), all.at(1), all.at(2), QStringLiteral("linux/ARM64/lib%1.so")};
    QTest::newRow("a platform in upper case") << upperCase << QString() << false;
}

void TestPluginLoader::completeFolderHasEveryPlatform()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, folderInstead);
    QFETCH(const bool, isComplete);
    const PluginFolders folders;
    const QString id = pluginId(0x50);
    const QDir dir(folders.folder(id));
    QVERIFY(QDir().mkpath(dir.path()));
    for (const QString &file : files) {
        const QString path = dir.filePath(file.arg(id));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()) && PluginFolders::writeFile(path, "x"));
    }
    if (!folderInstead.isEmpty()) {
        QVERIFY(dir.mkpath(folderInstead.arg(id)));
    }
    PluginLoader loader;
    QCOMPARE(loader.checkPluginDir(dir.path()), isComplete);
    QCOMPARE(loader.checkPluginDir(dir.path() + QLatin1Char('/')), isComplete);
    QVERIFY(!loader.checkPluginDir(folders.path()));
    QVERIFY(!loader.checkPluginDir(dir.filePath(QStringLiteral("missing"))));
}

void TestPluginLoader::thousandPlugins()
{
    const PluginFolders folders;
    const int first = 0x1000;
    const int count = 1000;
    for (int i = first; i < first + count; ++i) {
        QVERIFY(!folders.put(pluginId(i), good(pluginId(i))).isEmpty());
    }
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromDir(folders.path(), {}));
    QCOMPARE(loader.pluginData().size(), count);
    QCOMPARE(log.takeTexts().last(), loadedLine(pluginId(first + count - 1)));
    QVERIFY(loader.init());
    loader.unload();
    QCOMPARE(takePluginCalls().filter(QStringLiteral(" deleted")).size(), count);
}

KORA_TEST_MAIN(TestPluginLoader)

#include "tst_pluginloader.moc"
