// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include <support/testmain.h>

#include "runkora.h"

namespace {

const QString lampsId = QStringLiteral("5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11");
const QString unknownTypeId = QStringLiteral("c0a4de9c-9f43-4b5b-8d0e-1d6a35b1e2f4");
const QString otherId = QStringLiteral("00000000-0000-4000-8000-000000000001");

QString builtFolder(const QString &id)
{
    return QStringLiteral(KORA_TEST_PLUGINS_DIR "/") + id;
}

QString libraryIn(const QString &folder)
{
    return QStringLiteral("%1/%2/lib%3.so")
        .arg(folder, QStringLiteral(KORA_TEST_PLATFORM_DIR).toLower(), QDir(folder).dirName());
}

/// Makes the plugin folder @p folder with a copy of the library of the built plugin @p id.
bool makePluginFolder(const QString &folder, const QString &id)
{
    const QString target = libraryIn(folder);
    return QDir().mkpath(QFileInfo(target).path()) && QFile::copy(libraryIn(builtFolder(id)), target);
}

QJsonObject elementWith(const QJsonArray &array, const char *key, const QString &value)
{
    for (const QJsonValue &element : array) {
        if (element[QLatin1String(key)].toString() == value) {
            return element.toObject();
        }
    }
    return {};
}

// The line of the output that holds the text.
QString lineWith(const QString &output, const QString &text)
{
    const QStringList lines = output.split(QLatin1Char('\n'));
    return lines.filter(text).value(0).simplified();
}

} // namespace

class tst_Cli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void helpGoesToStandardOutput_data();
    void helpGoesToStandardOutput();
    void wrongUsage_data();
    void wrongUsage();
    void listTellsWhatBecameOfEachFolder();
    void listIsFineWithoutRefusals();
    void namesOfFoldersAreNoTerminalCommands();
    void unreadableInput_data();
    void unreadableInput();
    void unwritableOutputIsNoSuccess();
    void describeAsText();
    void describeTellsOfEachType();
    void describeAsJson();
    void describeRunsNoPluginCode();
    void describeReadsLibrariesOfOtherPlatforms();
    void describeTellsWhyMetadataIsRefused();
    void renderDrawsTheLatestVersions();
    void renderIsTheSameInAnyEnvironment();
    void renderSetsFields_data();
    void renderSetsFields();
    void renderTakesTheTextsOfTheLanguage();
    void renderShowsProjectWidgetsInTheDesignToolOnly();
    void renderRefusesWhatDoesNotFit_data();
    void renderRefusesWhatDoesNotFit();
    void renderTellsWhatItCannotDo();
    void resourcesTellsWhatBecameOfEachFolder();
    void resourcesNeedPlugins();
    void resourcesRefusesDirectoriesThatAreNotItsOwn_data();
    void resourcesRefusesDirectoriesThatAreNotItsOwn();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QStringList renderArguments(const QStringList &more) const
    {
        return QStringList{QStringLiteral("render"), builtFolder(lampsId), QStringLiteral("--out"),
                           path(QStringLiteral("out"))}
               + more;
    }
    QImage lampPicture() const { return QImage(path(QStringLiteral("out/lamp-1.10.0.png"))); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_Cli::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_Cli::helpGoesToStandardOutput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("general") << QStringList{QStringLiteral("--help")} << QStringLiteral("Exit status");
    QTest::newRow("version") << QStringList{QStringLiteral("--version")} << QStringLiteral("kora 1.");
    for (const char *command : {"list", "describe", "render"}) {
        QTest::newRow(command) << QStringList{QLatin1String(command), QStringLiteral("--help")}
                               << QStringLiteral("kora %1 [OPTIONS]").arg(QLatin1String(command));
    }
}

void tst_Cli::helpGoesToStandardOutput()
{
    QFETCH(QStringList, arguments);
    const Result result = kora(arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    QFETCH(QString, expected);
    QVERIFY2(result.out.contains(expected), qPrintable(result.out));
}

void tst_Cli::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");
    QTest::newRow("no subcommand") << QStringList() << QStringLiteral("subcommand");
    QTest::newRow("unknown subcommand")
        << QStringList{QStringLiteral("paint")} << QStringLiteral("subcommand");
    QTest::newRow("missing folder") << QStringList{QStringLiteral("list")} << QStringLiteral("plugins-dir");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("list"), path(QStringLiteral(".")),
                                                   QStringLiteral("--colour")}
                                    << QStringLiteral("--colour");
    QTest::newRow("unknown format") << QStringList{QStringLiteral("describe"), builtFolder(lampsId),
                                                   QStringLiteral("--format"), QStringLiteral("xml")}
                                    << QStringLiteral("xml");
    QTest::newRow("no language code")
        << QStringList{QStringLiteral("resources"), path(QStringLiteral(".")), path(QStringLiteral("out")),
                       QStringLiteral("--language"), QStringLiteral("italian")}
        << QStringLiteral("--language italian: a language code looks like en-US");
    QTest::newRow("no output directory")
        << QStringList{QStringLiteral("resources"), path(QStringLiteral(".")), QString(),
                       QStringLiteral("--language"), QStringLiteral("en-US")}
        << QStringLiteral("the output directory has no name");
    QTest::newRow("nowhere to write")
        << QStringList{QStringLiteral("render"), builtFolder(lampsId)} << QStringLiteral("--out");
}

void tst_Cli::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    const Result result = kora(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(named), qPrintable(result.err));
}

void tst_Cli::listTellsWhatBecameOfEachFolder()
{
    const QString disabledId = QStringLiteral("11111111-0000-4000-8000-000000000001");
    const QString emptyId = QStringLiteral("22222222-0000-4000-8000-000000000001");
    const QString garbageId = QStringLiteral("33333333-0000-4000-8000-000000000001");
    QVERIFY(makePluginFolder(path(lampsId), lampsId));
    QVERIFY(makePluginFolder(path(unknownTypeId), unknownTypeId));
    QVERIFY(makePluginFolder(path(otherId), lampsId));
    QVERIFY(makePluginFolder(path(disabledId), lampsId));
    QVERIFY(makePluginFolder(path(QStringLiteral("lamps")), lampsId));
    QVERIFY(QDir().mkpath(path(emptyId) + QLatin1String("/plan9/z80")));
    QVERIFY(makePluginFolder(path(garbageId), lampsId));
    QFile garbage(libraryIn(path(garbageId)));
    QVERIFY(garbage.open(QIODevice::WriteOnly | QIODevice::Truncate) && garbage.write("no library") > 0);
    garbage.close();

    const Result result =
        kora({QStringLiteral("list"), m_dir->path(), QStringLiteral("--disable"), disabledId});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, QString());
    QVERIFY2(result.out.contains(QStringLiteral("7 folders: 1 loaded, 1 disabled, 5 refused")),
             qPrintable(result.out));
    QVERIFY(lineWith(result.out, lampsId).endsWith(QStringLiteral("2.1.0 Lamps Test bench")));
    QVERIFY(lineWith(result.out, disabledId).startsWith(disabledId + QLatin1String(" disabled")));

    const auto reasonOf = [&result](const QString &folder) {
        return result.out.section(QStringLiteral("Refused: %1\n").arg(folder), 1, 1)
            .section(QStringLiteral("\n\n"), 0, 0);
    };
    QVERIFY(reasonOf(QStringLiteral("lamps")).contains(QStringLiteral("is not a valid UUID")));
    QVERIFY(reasonOf(otherId).contains(
        QStringLiteral("the id %1 is not equal to the folder name %2").arg(lampsId, otherId)));
    QVERIFY(reasonOf(unknownTypeId)
                .contains(QStringLiteral("MetaData/widgets/fields/type attribute is not valid")));
    QVERIFY(reasonOf(unknownTypeId).contains(QStringLiteral("reading the widget at index 0")));
    QVERIFY(reasonOf(emptyId).contains(QStringLiteral("there is no library ") + libraryIn(path(emptyId))));
    QVERIFY(reasonOf(garbageId).contains(QStringLiteral("is not a Qt plugin")));
}

void tst_Cli::listIsFineWithoutRefusals()
{
    QCOMPARE(kora({QStringLiteral("list"), m_dir->path()}).exitCode, 0);
    QVERIFY(makePluginFolder(path(lampsId), lampsId));
    const Result result =
        kora({QStringLiteral("list"), m_dir->path(), QStringLiteral("--disable"), QStringLiteral("nobody")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.contains(QStringLiteral("1 folder: 1 loaded, 0 disabled, 0 refused")));
    QVERIFY2(result.err.contains(QStringLiteral("nobody")), qPrintable(result.err));
}

void tst_Cli::namesOfFoldersAreNoTerminalCommands()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("\x1b[2Jred"))));
    // Qt cannot name the second folder, so it is passed over, here as in the loader.
    const QByteArray nameless = QFile::encodeName(m_dir->path()) + "/\xff\xfe";
    QCOMPARE(::mkdir(nameless.constData(), 0700), 0);
    const Result result = kora({QStringLiteral("list"), m_dir->path()});
    QCOMPARE(::rmdir(nameless.constData()), 0);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.out.contains(QStringLiteral("1 folder: 0 loaded, 0 disabled, 1 refused")),
             qPrintable(result.out + result.err));
    QVERIFY(!result.out.contains(QChar(0x1b)));
    QVERIFY(result.out.contains(QStringLiteral("\\x1b[2Jred")));
}

void tst_Cli::unreadableInput_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("reason");
    for (const char *command : {"list", "describe", "render"}) {
        const QString name = QLatin1String(command);
        QTest::addRow("%s: missing folder", command)
            << name << QStringLiteral("/nowhere/at all") << QStringLiteral("/nowhere/at all does not exist");
        QTest::addRow("%s: a file", command)
            << name << QStringLiteral(KORA_COMMAND) << QStringLiteral("is not a folder");
        QTest::addRow("%s: empty path", command) << name << QString() << QStringLiteral("is empty");
    }
}

void tst_Cli::unreadableInput()
{
    QFETCH(QString, command);
    QFETCH(QString, folder);
    QFETCH(QString, reason);
    QStringList arguments{command, folder};
    if (command == QLatin1String("render")) {
        arguments << QStringLiteral("--out") << m_dir->path();
    }
    const Result result = kora(arguments);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kora: ")) && result.err.contains(reason),
             qPrintable(result.err));
}

void tst_Cli::unwritableOutputIsNoSuccess()
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(KORA_COMMAND), {QStringLiteral("describe"), builtFolder(lampsId)});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(process.readAllStandardError().contains("cannot be written"));
}

void tst_Cli::describeAsText()
{
    const Result result = kora({QStringLiteral("describe"), builtFolder(lampsId)});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    QVERIFY2(result.out.startsWith(QStringLiteral("Plugin Lamps 2.1.0\n")), qPrintable(result.out));
    QCOMPARE(lineWith(result.out, QStringLiteral("languages")),
             QStringLiteral("languages en-US (default), it-IT"));
    QVERIFY(result.out.contains(QStringLiteral("Widget lamp 1.10.0 (latest)\n")));
    QVERIFY(result.out.contains(QStringLiteral("Widget lamp 1.9.0\n")));
    QVERIFY(
        lineWith(result.out, QStringLiteral("gallery")).endsWith(QStringLiteral("page, group \"Signals\"")));
    const QString level = lineWith(result.out, QStringLiteral(" level "));
    QVERIFY2(level.startsWith(QStringLiteral("level integer 50 0 .. 100")), qPrintable(level));
    QVERIFY2(level.endsWith(QStringLiteral("shown if shape==1")), qPrintable(level));
    QVERIFY(lineWith(result.out, QStringLiteral(" input "))
                .contains(QStringLiteral("numeric, bool (on demand)")));
    QVERIFY(lineWith(result.out, QStringLiteral(" shape ")).contains(QStringLiteral("1=bar 1=bar, 2=full")));
    QVERIFY(lineWith(result.out, QStringLiteral(" serial ")).endsWith(QStringLiteral("read-only, private")));
}

void tst_Cli::describeTellsOfEachType()
{
    const QString folder = builtFolder(QStringLiteral("0a5e9c10-0000-4000-8000-000000000a11"));
    const Result result = kora({QStringLiteral("describe"), folder});
    QCOMPARE(result.exitCode, 0);
    const QString out = result.out.simplified();
    for (const char *expected :
         {"default size 200x100.5", "alarms receives alarm events",
          "count integer 1 0 .. 9 numeric, bool (on demand) Count Numbers read-only",
          "curve trend - - - Curve", "font font Roboto 9 - - Font", "ink color #ff0000 - - Ink",
          "kind option 2=b 1=a, 2=b - Kind - shown if on==true", "list stringList \"a\", \"b\" - - List",
          "map stringMap 1=\"a\", 2=\"b\" - - Map", "on bool true - - On - shown if count>0",
          "picture image \"a.png\" - - Picture", "ratio double 1 0.5 .. 2 - Ratio",
          "text string \"a\" - - Text - Roboto 12 bold italic underline", "value tag - - any Value",
          "words string \"a\" - - Words - multi-language"}) {
        QVERIFY2(out.contains(QLatin1String(expected)), qPrintable(QLatin1String(expected) + result.out));
    }
    const Result checked = kora({QStringLiteral("check"), folder});
    QVERIFY2(checked.exitCode == 0 && checked.out.contains(QLatin1String("\nNext: kora render ")),
             qPrintable(checked.out + checked.err));
}

void tst_Cli::describeAsJson()
{
    const Result result = kora({QStringLiteral("describe"), builtFolder(lampsId), QStringLiteral("--format"),
                                QStringLiteral("json")});
    QCOMPARE(result.exitCode, 0);
    const QJsonObject plugin = QJsonDocument::fromJson(result.out.toUtf8()).object();
    QCOMPARE(plugin[QLatin1String("formatVersion")].toInt(), 1);
    QCOMPARE(plugin[QLatin1String("id")].toString(), lampsId);
    QCOMPARE(plugin[QLatin1String("translation")].toArray(), QJsonArray{QStringLiteral("it-IT")});
    const QJsonArray widgets = plugin[QLatin1String("widgets")].toArray();
    QCOMPARE(widgets.size(), 4);

    const QJsonObject lamp = elementWith(widgets, "version", QStringLiteral("1.10.0"));
    QCOMPARE(lamp[QLatin1String("latest")], QJsonValue(true));
    QCOMPARE(lamp[QLatin1String("display")][QLatin1String("comment")].toString(),
             QStringLiteral("a signal lamp"));
    QCOMPARE(lamp[QLatin1String("defaultSize")][QLatin1String("width")].toDouble(), 120.0);
    const QJsonObject old = elementWith(widgets, "version", QStringLiteral("1.9.0"));
    QCOMPARE(old[QLatin1String("latest")], QJsonValue(false));
    QVERIFY(old[QLatin1String("defaultSize")].isNull());

    const QJsonArray fields = lamp[QLatin1String("fields")].toArray();
    const QJsonObject level = elementWith(fields, "id", QStringLiteral("level"));
    QCOMPARE(level[QLatin1String("maximum")], QJsonValue(100));
    QVERIFY(elementWith(fields, "id", QStringLiteral("serial"))[QLatin1String("defaultValue")].isNull());
    const QJsonObject label = elementWith(fields, "id", QStringLiteral("label"));
    QCOMPARE(label[QLatin1String("defaultFont")][QLatin1String("size")].toInt(), 14);
    QCOMPARE(label[QLatin1String("displayFontUnderline")][QLatin1String("text")].toString(),
             QStringLiteral("Underline"));
    const QJsonObject input = elementWith(fields, "id", QStringLiteral("input"));
    QCOMPARE(input[QLatin1String("tagAcceptedTypes")].toArray().size(), 11);
}

void tst_Cli::describeRunsNoPluginCode()
{
    const QString trace = path(QStringLiteral("trace"));
    const QMap<QString, QString> environment{{QStringLiteral("KORA_TEST_TRACE_FILE"), trace}};
    QCOMPARE(kora({QStringLiteral("describe"), builtFolder(lampsId)}, environment).exitCode, 0);
    QVERIFY(!QFile::exists(trace));
    // Loading it would have left a trace.
    QCOMPARE(
        kora(renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp")}), environment).exitCode, 0);
    QVERIFY(QFile::exists(trace));
}

void tst_Cli::describeReadsLibrariesOfOtherPlatforms()
{
    const QString library = QStringLiteral("%1/linux/other/lib%2.so").arg(path(lampsId), lampsId);
    QVERIFY(QDir().mkpath(QFileInfo(library).path()));
    QVERIFY(QFile::copy(libraryIn(builtFolder(lampsId)), library));
    const Result result = kora({QStringLiteral("describe"), path(lampsId)});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(lineWith(result.out, QStringLiteral("library")).endsWith(library));
}

void tst_Cli::describeTellsWhyMetadataIsRefused()
{
    Result result = kora({QStringLiteral("describe"), builtFolder(unknownTypeId)});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(
                 QStringLiteral("error 10029: MetaData/widgets/fields/type attribute is not valid")),
             qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("reading the widget at index 0")), qPrintable(result.err));

    QVERIFY(makePluginFolder(path(otherId), lampsId));
    result = kora({QStringLiteral("describe"), path(otherId)});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.out.startsWith(QStringLiteral("Plugin Lamps")));
    QVERIFY(result.err.contains(QStringLiteral("is not equal to the folder name %1").arg(otherId)));
}

void tst_Cli::renderDrawsTheLatestVersions()
{
    const Result result = kora(renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp"),
                                                QStringLiteral("--widget"), QStringLiteral("recorder")}));
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    const QString lamp = path(QStringLiteral("out/lamp-1.10.0.png"));
    QCOMPARE(result.out,
             QStringLiteral("%1\n%2\n").arg(lamp, path(QStringLiteral("out/recorder-1.0.0.png"))));
    QCOMPARE(lampPicture().size(), QSize(120, 60));
    QCOMPARE(lampPicture().pixelColor(30, 30), QColor(Qt::blue));
    QCOMPARE(lampPicture().pixelColor(65, 5), QColor(Qt::white));

    QCOMPARE(kora(renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp@1.9.0")})).exitCode, 0);
    QVERIFY(QFile::exists(path(QStringLiteral("out/lamp-1.9.0.png"))));
}

void tst_Cli::renderIsTheSameInAnyEnvironment()
{
    const QStringList arguments = renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp"),
                                                   QStringLiteral("--size"), QStringLiteral("200x80")});
    QCOMPARE(kora(arguments).exitCode, 0);
    const QByteArray first = contentOf(path(QStringLiteral("out/lamp-1.10.0.png")));
    QCOMPARE(lampPicture().size(), QSize(200, 80));
    QVERIFY(QFile::remove(path(QStringLiteral("out/lamp-1.10.0.png"))));
    const QMap<QString, QString> elsewhere{
        {QStringLiteral("TZ"), QStringLiteral("Asia/Tokyo")},
        {QStringLiteral("LC_ALL"), QStringLiteral("de_DE")},
        {QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2")},
        {QStringLiteral("QT_FONT_DPI"), QStringLiteral("144")},
        {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")},
        {QStringLiteral("FONTCONFIG_FILE"), QStringLiteral("/nowhere/fonts.conf")}};
    QCOMPARE(kora(arguments, elsewhere).exitCode, 0);
    QCOMPARE(contentOf(path(QStringLiteral("out/lamp-1.10.0.png"))), first);
}

void tst_Cli::renderSetsFields_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<int>("filledWidth");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("remark");
    const QColor blue(Qt::blue);
    QTest::newRow("default values") << QStringList() << 60 << blue << QString();
    QTest::newRow("a number") << QStringList{QStringLiteral("level=25")} << 30 << blue << QString();
    QTest::newRow("a number outside the bounds")
        << QStringList{QStringLiteral("level=150")} << 120 << blue
        << QStringLiteral("level: 150 is outside its bounds, 100 is set");
    QTest::newRow("a colour") << QStringList{QStringLiteral("fill=#ff0000")} << 60 << QColor(Qt::red)
                              << QString();
    QTest::newRow("an option by its index")
        << QStringList{QStringLiteral("shape=2")} << 120 << blue << QString();
    QTest::newRow("an option by its text")
        << QStringList{QStringLiteral("shape=full")} << 120 << blue << QString();
    QTest::newRow("the value of a tag")
        << QStringList{QStringLiteral("input=true")} << 120 << blue << QString();
    QTest::newRow("a read-only private text with signs of its own")
        << QStringList{QStringLiteral("serial=[a,b]=%1")} << 60 << blue << QString();
    QTest::newRow("two fields") << QStringList{QStringLiteral("level=75"), QStringLiteral("fill=green")} << 90
                                << QColor(0, 128, 0) << QString();
}

void tst_Cli::renderSetsFields()
{
    QFETCH(QStringList, settings);
    QFETCH(int, filledWidth);
    QFETCH(QColor, color);
    QFETCH(QString, remark);
    QStringList arguments = renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp")});
    // Nothing but the bar.
    arguments << QStringLiteral("--set") << QStringLiteral("label=");
    for (const QString &setting : qAsConst(settings)) {
        arguments << QStringLiteral("--set") << setting;
    }
    const Result result = kora(arguments);
    QVERIFY2(result.exitCode == 0, qPrintable(result.err));
    QVERIFY2(remark.isEmpty() ? result.err.isEmpty() : result.err.contains(remark), qPrintable(result.err));
    const QImage picture = lampPicture();
    QCOMPARE(picture.pixelColor(filledWidth - 1, 30), color);
    if (filledWidth < picture.width()) {
        QCOMPARE(picture.pixelColor(filledWidth, 30), QColor(Qt::white));
    }
}

void tst_Cli::renderTakesTheTextsOfTheLanguage()
{
    const QString file = path(QStringLiteral("out/lamp-1.10.0.png"));
    const QStringList arguments = renderArguments({QStringLiteral("--widget"), QStringLiteral("lamp")});
    QCOMPARE(kora(arguments).exitCode, 0);
    const QByteArray english = contentOf(file);
    QCOMPARE(kora(arguments + QStringList{QStringLiteral("--language"), QStringLiteral("it-IT")}).exitCode,
             0);
    const QByteArray italian = contentOf(file);
    QVERIFY(italian != english);
    QCOMPARE(kora(arguments + QStringList{QStringLiteral("--set"), QStringLiteral("label=Pronto")}).exitCode,
             0);
    QCOMPARE(contentOf(file), italian);

    // The same text in another font is another picture.
    QCOMPARE(kora(arguments + QStringList{QStringLiteral("--set"), QStringLiteral("label.font={\"size\":8}")})
                 .exitCode,
             0);
    QVERIFY(contentOf(file) != english);
}

void tst_Cli::renderShowsProjectWidgetsInTheDesignToolOnly()
{
    const QString file = path(QStringLiteral("out/recorder-1.0.0.png"));
    const QStringList arguments = renderArguments({QStringLiteral("--widget"), QStringLiteral("recorder")});
    QCOMPARE(kora(arguments).exitCode, 0);
    QImage blank(40, 40, QImage::Format_RGB32);
    blank.fill(Qt::white);
    QVERIFY(QImage(file).convertToFormat(QImage::Format_RGB32) != blank);
    QCOMPARE(kora(arguments + QStringList{QStringLiteral("--mode"), QStringLiteral("runtime")}).exitCode, 0);
    QCOMPARE(QImage(file).convertToFormat(QImage::Format_RGB32), blank);
}

void tst_Cli::renderRefusesWhatDoesNotFit_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *option, const char *value, const char *reason) {
        QTest::newRow(name) << QStringList{QLatin1String(option), QLatin1String(value)}
                            << QString::fromLatin1(reason);
    };
    row("unknown widget", "--widget", "lamb",
        "lamb: the plugin has no such widget; it has lamp@1.10.0, lamp@1.9.0");
    row("unknown version", "--widget", "lamp@1.8.0", "lamp@1.8.0");
    row("unknown field", "--set", "hue=1", "no field hue in lamp 1.10.0");
    row("no field", "--set", "=1", "field=value is expected");
    row("text for a number", "--set", "level=high", "widget lamp 1.10.0, field level: \"high\" is no value");
    row("number beyond int", "--set", "level=99999999999", "a whole number is expected");
    row("unknown colour", "--set", "fill=reddish", "field fill");
    row("unknown option", "--set", "shape=3", "one of the options is expected");
    row("wrong font", "--set", "label.font=Roboto", "field label.font");
    row("unknown language", "--language", "fr-FR", "it has en-US, it-IT");
    row("size without height", "--size", "100", "--size 100");
    row("size without area", "--size", "0x10", "--size 0x10");
    row("unknown mode", "--mode", "night", "night");
}

void tst_Cli::renderRefusesWhatDoesNotFit()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Result result = kora(renderArguments(arguments));
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QVERIFY(!QFile::exists(path(QStringLiteral("out"))));
}

void tst_Cli::renderTellsWhatItCannotDo()
{
    // The other widgets are drawn all the same.
    Result result = kora(renderArguments({}));
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(
        result.err.contains(QStringLiteral("widget unregistered 1.0.0: the plugin's code does not register")),
        qPrintable(result.err));
    QCOMPARE(QDir(path(QStringLiteral("out"))).entryList(QDir::Files),
             (QStringList{QStringLiteral("lamp-1.10.0.png"), QStringLiteral("recorder-1.0.0.png")}));

    result = kora(renderArguments({QStringLiteral("--size"), QStringLiteral("99999x1")}));
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("is more than 8192 pixels")), qPrintable(result.err));

    result = kora(renderArguments({QStringLiteral("--font-dir"), m_dir->path()}));
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("there is no Roboto in ") + m_dir->path()),
             qPrintable(result.err));

    QFile file(path(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    result = kora({QStringLiteral("render"), builtFolder(lampsId), QStringLiteral("--out"), file.fileName()});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(file.fileName()), qPrintable(result.err));

    result =
        kora({QStringLiteral("render"), builtFolder(unknownTypeId), QStringLiteral("--out"), m_dir->path()});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("fields/type attribute is not valid")),
             qPrintable(result.err));
}

// A first run, a check of it, a check and a run in another language, with what is gone since.
void tst_Cli::resourcesTellsWhatBecameOfEachFolder()
{
    QVERIFY(makePluginFolder(path(QStringLiteral("plugins/")) + lampsId, lampsId));
    const auto run = [this](const char *language, const QStringList &more = {}) {
        return kora(QStringList{QStringLiteral("resources"), path(QStringLiteral("plugins")),
                                path(QStringLiteral("out")), QStringLiteral("--language"),
                                QLatin1String(language)}
                    + more);
    };
    const QStringList check{QStringLiteral("--check")};
    Result result = run("en-US", check);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(lineWith(result.out, lampsId), lampsId + QStringLiteral(" generate it is new"));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("out"))));

    result = run("en-US");
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    QVERIFY(result.out.endsWith(QStringLiteral("1 generated, 0 kept, 0 removed, 0 refused\n")));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("out/%1/studio_properties.xml").arg(lampsId))));
    QCOMPARE(run("en-US", check).exitCode, 0);

    QVERIFY(QDir().mkpath(path(QStringLiteral("out/orphan"))));
    result = run("it-IT");
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(lineWith(result.out, lampsId), lampsId + QStringLiteral(" generated it was in en-US"));
    QCOMPARE(lineWith(result.out, QStringLiteral("orphan")),
             QStringLiteral("orphan removed the index does not name it"));

    // What a plugin cannot have is told in its row, and the exit status says so.
    QVERIFY(makePluginFolder(path(QStringLiteral("plugins/")) + unknownTypeId, unknownTypeId));
    result = run("it-IT");
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.err.startsWith(QStringLiteral("kora: not every plugin was loaded\n")));
    QCOMPARE(lineWith(result.out, lampsId).section(QLatin1Char(' '), 1, 1), QStringLiteral("kept"));
}

void tst_Cli::resourcesNeedPlugins()
{
    const auto run = [this](const char *plugins) {
        return kora({QStringLiteral("resources"), path(QLatin1String(plugins)), path(QStringLiteral("out")),
                     QStringLiteral("--language"), QStringLiteral("en-US")});
    };
    QCOMPARE(run("nowhere").exitCode, 1);
    QVERIFY(run("nowhere").err.contains(QStringLiteral("nowhere does not exist")));
    QVERIFY(QDir().mkpath(path(QStringLiteral("plugins"))));
    QCOMPARE(run("plugins").exitCode, 1);
    QVERIFY(run("plugins").err.contains(QStringLiteral("there is no plugin to generate resources for in ")));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("out"))));
}

void tst_Cli::resourcesRefusesDirectoriesThatAreNotItsOwn_data()
{
    QTest::addColumn<QString>("outDir");
    QTest::addColumn<QString>("reason");

    const QString nested = QStringLiteral("and the plugins' directory lie one in the other");
    QTest::newRow("the plugins' own") << QStringLiteral("plugins") << nested;
    QTest::newRow("below it, by a link") << QStringLiteral("link/new/folder") << nested;
    QTest::newRow("above it") << QString() << nested;
    QTest::newRow("somebody's folder") << QStringLiteral("home") << QStringLiteral("is no resource folder");
}

void tst_Cli::resourcesRefusesDirectoriesThatAreNotItsOwn()
{
    QFETCH(const QString, outDir);
    QFETCH(const QString, reason);
    const QString library = libraryIn(path(QStringLiteral("plugins/")) + lampsId);
    QVERIFY(makePluginFolder(path(QStringLiteral("plugins/")) + lampsId, lampsId));
    QVERIFY(QFile::link(path(QStringLiteral("plugins")), path(QStringLiteral("link"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("home/letters"))));
    const Result result = kora({QStringLiteral("resources"), path(QStringLiteral("plugins")), path(outDir),
                                QStringLiteral("--language"), QStringLiteral("en-US")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QVERIFY(QFileInfo::exists(library));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("home/letters"))));
}

KORA_TEST_MAIN(tst_Cli)
#include "tst_cli.moc"
