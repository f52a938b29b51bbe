// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <memory>

#include <support/testmain.h>

namespace {

const QString lampsId = QStringLiteral("5a3c7c7e-52a8-4f0e-9f6c-3f1f0c0f7a11");

struct Result
{
    int exitCode = -1;
    QString out;
    QString err;
};

QJsonObject parsed(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

// A lamp that follows a tag, which toggles: blue over half of its width, or over all of it.
QJsonObject page()
{
    QJsonObject page = parsed(R"({
        "kora": "scenario", "schema": 1, "mode": "runtime", "page": {"width": 200, "height": 100, "background": "#ff00ff00"},
        "widgets": [{"name": "lamp1", "widget": "lamp", "version": "1.10.0", "x": 20, "y": 10, "width": 100, "height": 50,
                     "values": {"fill": "#ff0000ff"}, "bindings": {"input": "isOn"}}],
        "providers": {"tags": [{"name": "isOn", "type": "bool", "generator": {"kind": "toggle", "period": 1000,
                                "minimum": 0, "maximum": 1}}]}
    })");
    page.insert(QStringLiteral("pluginId"), lampsId);
    return page;
}

QJsonObject lampWith(const char *changes)
{
    QJsonObject result = page();
    QJsonArray widgets = result[QLatin1String("widgets")].toArray();
    QJsonObject lamp = widgets.first().toObject();
    const QJsonObject changed = parsed(changes);
    for (auto it = changed.begin(); it != changed.end(); ++it) {
        lamp.insert(it.key(), it.value());
    }
    widgets.replace(0, lamp);
    result.insert(QStringLiteral("widgets"), widgets);
    return result;
}

} // namespace

class tst_RenderScenario : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void drawsThePage();
    void plantRunsForTheTime();
    void pageWithoutBackgroundIsTransparent();
    void comparesWithAPicture();
    void misfitsAreErrors_data();
    void misfitsAreErrors();
    void wrongUsage_data();
    void wrongUsage();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    Result render(const QStringList &more);
    Result renderTo(const QString &name, const QStringList &more = {});
    void writeScenario(const QJsonObject &scenario);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_RenderScenario::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    writeScenario(page());
}

void tst_RenderScenario::writeScenario(const QJsonObject &scenario)
{
    QFile file(path(QStringLiteral("page.json")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(scenario).toJson()) > 0);
}

Result tst_RenderScenario::render(const QStringList &more)
{
    QProcess process;
    process.setWorkingDirectory(m_dir->path());
    process.start(QStringLiteral(KORA_COMMAND),
                  QStringList{QStringLiteral("render"), QStringLiteral(KORA_TEST_PLUGINS_DIR "/") + lampsId,
                              QStringLiteral("--scenario"), QStringLiteral("page.json")}
                      + more);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
        return {-1, {}, process.errorString()};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

Result tst_RenderScenario::renderTo(const QString &name, const QStringList &more)
{
    return render(QStringList{QStringLiteral("--out"), name} + more);
}

void tst_RenderScenario::drawsThePage()
{
    const Result result = render({});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QStringLiteral("page.png\n"));
    const QImage image(path(QStringLiteral("page.png")));
    QCOMPARE(image.size(), QSize(200, 100));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::green));
    QCOMPARE(image.pixelColor(21, 11), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(69, 59), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(71, 59), QColor(Qt::green)); // the level is at 50, the tag is off

    QCOMPARE(renderTo(QStringLiteral("new/folder/")).out, QStringLiteral("new/folder/page.png\n"));
    QVERIFY(QImage(path(QStringLiteral("new/folder/page.png"))) == image);
}

void tst_RenderScenario::plantRunsForTheTime()
{
    QCOMPARE(render({QStringLiteral("--time"), QStringLiteral("1500")}).exitCode, 0);
    QCOMPARE(QImage(path(QStringLiteral("page.png"))).pixelColor(71, 59), QColor(Qt::blue));
}

void tst_RenderScenario::pageWithoutBackgroundIsTransparent()
{
    QJsonObject scenario = page();
    scenario.insert(QStringLiteral("page"),
                    parsed(R"({"width": 30, "height": 20, "background": "checkerboard"})"));
    writeScenario(scenario);
    QCOMPARE(render({}).exitCode, 0);
    QCOMPARE(QImage(path(QStringLiteral("page.png"))).pixelColor(0, 0).alpha(), 0);
}

void tst_RenderScenario::comparesWithAPicture()
{
    const QStringList compare{QStringLiteral("--compare"), QStringLiteral("golden.png")};
    const QString differencePath = path(QStringLiteral("page-difference.png"));
    Result result = render(compare);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("to accept the new one: cp page.png golden.png")),
             qPrintable(result.err));

    QVERIFY(QFile::rename(path(QStringLiteral("page.png")), path(QStringLiteral("golden.png"))));
    result = render(compare);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QStringLiteral("page.png\nsame as golden.png: 0 of 20000 pixels differ\n"));
    QVERIFY(!QFile::exists(differencePath));

    // What nobody sees: a shade everywhere, two pixels altogether.
    QImage golden(path(QStringLiteral("golden.png")));
    QImage shaded = golden;
    for (int x = 0; x < shaded.width(); ++x) {
        shaded.setPixelColor(x, 99, QColor(2, 253, 0));
    }
    shaded.setPixelColor(0, 0, Qt::red);
    shaded.setPixelColor(1, 0, Qt::red);
    QVERIFY(shaded.save(path(QStringLiteral("golden.png"))));
    QCOMPARE(render(compare).exitCode, 0);
    shaded.setPixelColor(2, 0, Qt::red);
    QVERIFY(shaded.save(path(QStringLiteral("golden.png"))));
    result = render(compare);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(
        result.err.contains(QStringLiteral("page.png differs from golden.png: 3 of 20000 pixels differ")),
        qPrintable(result.err));
    const QImage difference(differencePath);
    QCOMPARE(difference.size(), golden.size());
    QCOMPARE(difference.pixelColor(2, 0), QColor(0xd5, 0, 0));
    QCOMPARE(difference.pixelColor(3, 0).red(), difference.pixelColor(3, 0).blue());

    QVERIFY(golden.copy(0, 0, 100, 100).save(path(QStringLiteral("golden.png"))));
    result = render(compare);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("page.png is 200x100, golden.png is 100x100")),
             qPrintable(result.err));
    QVERIFY(!QFile::exists(differencePath)); // that of the earlier run is no longer true
}

void tst_RenderScenario::misfitsAreErrors_data()
{
    QTest::addColumn<QJsonObject>("scenario");
    QTest::addColumn<QStringList>("reasons");
    const auto row = [](const char *name, const QJsonObject &scenario, const QStringList &reasons) {
        QTest::newRow(name) << scenario << reasons;
    };
    row("unknown field", lampWith(R"({"values": {"glow": 3, "level": "high"}})"),
        {QStringLiteral("lamp1: glow is gone (was 3)"), QStringLiteral("lamp1: level: ")});
    row("unknown tag", lampWith(R"({"bindings": {"input": "isOff"}})"),
        {QStringLiteral("lamp1: input: there is no tag isOff")});
    row("unknown widget", lampWith(R"({"widget": "lantern"})"),
        {QStringLiteral("lamp1: the library declares no widget lantern in version 1.10.0")});
    row("unregistered widget",
        lampWith(R"({"widget": "unregistered", "version": "1.0.0", "values": {}, "bindings": {}})"),
        {QStringLiteral("lamp1: the plugin's code does not register this widget")});
    row("misspelt key", lampWith(R"({"vlaues": {}})"),
        {QStringLiteral("/widgets/0/vlaues: the key is not known")});
    QJsonObject other = page();
    other.insert(QStringLiteral("pluginId"), QStringLiteral("another"));
    row("another plugin", other, {QStringLiteral("/pluginId: it is for the plugin another")});
    QJsonObject language = page();
    language.insert(QStringLiteral("language"), QStringLiteral("fr-FR"));
    row("unknown language", language, {QStringLiteral("the library has no texts in fr-FR")});
}

void tst_RenderScenario::misfitsAreErrors()
{
    QFETCH(const QJsonObject, scenario);
    QFETCH(const QStringList, reasons);
    writeScenario(scenario);
    const Result result = render({});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kora: page.json ")), qPrintable(result.err));
    for (const QString &reason : reasons) {
        QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    }
    QVERIFY(!QFile::exists(path(QStringLiteral("page.png"))));
}

void tst_RenderScenario::wrongUsage_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<QString>("named");
    QTest::newRow("with a widget") << QStringList{QStringLiteral("--widget"), QStringLiteral("lamp")}
                                   << QStringLiteral("--widget");
    QTest::newRow("negative time") << QStringList{QStringLiteral("--time"), QStringLiteral("-1")}
                                   << QStringLiteral("--time");
    QTest::newRow("onto the golden picture")
        << QStringList{QStringLiteral("--compare"), QStringLiteral("./page.png")}
        << QStringLiteral("would replace it");
}

void tst_RenderScenario::wrongUsage()
{
    QFETCH(const QStringList, more);
    QFETCH(const QString, named);
    const Result result = render(more);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains(named), qPrintable(result.err));
}

KORA_TEST_MAIN(tst_RenderScenario)
#include "tst_renderscenario.moc"
