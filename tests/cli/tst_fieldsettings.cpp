// SPDX-License-Identifier: Apache-2.0
//
// The values that `kora render --set` makes of texts.
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtTest/QTest>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include <support/testmain.h>

#include "picture/fieldsettings.h"

using namespace KORA::INTERNAL;

class tst_FieldSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void textsBecomeValues_data();
    void textsBecomeValues();
    void textsOfNoValueAreRefused_data();
    void textsOfNoValueAreRefused();
    void settingsOfOtherWidgetsArePassedOver();

private:
    WidgetMetaInformation m_panel; // with a field of each type
};

void tst_FieldSettings::initTestCase()
{
    QFile file(QStringLiteral(KORA_TEST_METADATA));
    QVERIFY(file.open(QIODevice::ReadOnly));
    WidgetLibraryPluginMetaInformation library;
    const QJsonObject metaData = QJsonDocument::fromJson(file.readAll()).object();
    QCOMPARE(WidgetLibraryPluginUtils::metaInformationFromMetaData({{QStringLiteral("MetaData"), metaData}},
                                                                   library),
             0);
    m_panel = library.widgets().first();
    QVERIFY(m_panel.isValid());
}

void tst_FieldSettings::textsBecomeValues_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QVariant>("expected");
    QTest::addColumn<QString>("remark");
    const auto row = [](const char *setting, const QVariant &expected, const char *remark = "") {
        QTest::newRow(setting) << QString::fromUtf8(setting) << expected << QString::fromLatin1(remark);
    };
    const auto text = [](const char *value) { return QVariant(QString::fromUtf8(value)); };
    row("text=", text(""));
    row("text=a=b", text("a=b"));
    row("count=-0", 0);
    row("count=10", 9, "field count: 10 is outside its bounds, 9 is set");
    row("ratio=2", 2.0);
    row("ratio=1e-3", 0.5, "field ratio: 1e-3 is outside its bounds, 0.5 is set");
    row("on=false", false);
    row("kind=1", 1);
    row("kind=b", 2);
    row("ink=red", QColor(Qt::red));
    row("list=[]", QStringList());
    row(R"(list=["a,b",""])", QStringList{QStringLiteral("a,b"), QString()});
    row(R"(map=[{"i":3,"v":"x"}])", QVariant::fromValue(QMap<int, QString>{{3, QStringLiteral("x")}}));
    row("picture=a.png", text("a.png"));
    row(R"(picture={"isValid":true,"value":"b.png"})", text("b.png"));
    row(R"(picture={"isValid":false,"value":"b.png"})", QVariant());
    row("value=true", true);
    row("value=false", false);
    row("value=12", 12);
    row("value=1.5", 1.5);
    row("value=True", text("True"));
    row("curve=12", text("12"));
    QFont font(QStringLiteral("Roboto"), 14);
    font.setItalic(true);
    row(R"(font={"size":14,"style":"italic"})", font);
    row(R"(words.font={"size":14,"style":"italic"})", font);
}

void tst_FieldSettings::textsBecomeValues()
{
    QFETCH(QString, setting);
    QFETCH(QVariant, expected);
    QFETCH(QString, remark);
    FieldSetting read;
    QVERIFY(readFieldSetting(setting, read));
    QVERIFY(hasField(m_panel, read.fieldId));
    QList<FieldValue> values;
    QStringList remarks;
    QString problem;
    QVERIFY2(valuesOfSettings(m_panel, {read}, values, remarks, problem), qPrintable(problem));
    QCOMPARE(values.size(), 1);
    QCOMPARE(values.first().fieldId, read.fieldId);
    QCOMPARE(values.first().value.userType(), expected.userType());
    QCOMPARE(values.first().value, expected);
    QCOMPARE(remarks.join(QLatin1Char('\n')), remark);
}

void tst_FieldSettings::textsOfNoValueAreRefused_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *setting, const char *expected) {
        QTest::newRow(setting) << QString::fromUtf8(setting) << QString::fromLatin1(expected);
    };
    row("count=", "a whole number");
    row("count=1.0", "a whole number");
    row("ratio=nan", "a number");
    row("ratio=inf", "a number");
    row("ratio=1,5", "a number");
    row("on=1", "true or false");
    row("kind=3", "one of the options");
    row("kind=", "one of the options");
    row("ink=#12", "a colour such as");
    row("list=a", "a JSON array of texts");
    row("list=[1]", "a JSON array of texts");
    row(R"(map={"i":1})", "a JSON array such as");
    row(R"(map=[{"i":"1","v":"a"}])", "a JSON array such as");
    row(R"(map=[{"i":1,"v":2}])", "a JSON array such as");
    row("font=Roboto", "a font such as");
    row(R"(font={"size":0})", "a font such as");
    row("words.font=[]", "a font such as");
}

void tst_FieldSettings::textsOfNoValueAreRefused()
{
    QFETCH(QString, setting);
    QFETCH(QString, expected);
    FieldSetting read;
    QVERIFY(readFieldSetting(setting, read));
    QList<FieldValue> values;
    QStringList remarks;
    QString problem;
    QVERIFY(!valuesOfSettings(m_panel, {read}, values, remarks, problem));
    const QString start =
        QStringLiteral("field %1: \"%2\" is no value for it, %3").arg(read.fieldId, read.text, expected);
    QVERIFY2(problem.startsWith(start) && problem.endsWith(QLatin1String(" is expected")),
             qPrintable(problem));
    QVERIFY(values.isEmpty() && remarks.isEmpty());
}

void tst_FieldSettings::settingsOfOtherWidgetsArePassedOver()
{
    FieldSetting setting;
    QVERIFY(!readFieldSetting(QStringLiteral("count"), setting)
            && !readFieldSetting(QStringLiteral("=1"), setting));
    QList<FieldValue> values;
    QStringList remarks;
    QString problem;
    const QList<FieldSetting> settings{{QStringLiteral("hue"), QStringLiteral("1")},
                                       {QStringLiteral("count"), QStringLiteral("3")},
                                       {QStringLiteral("count.font"), QStringLiteral("1")}};
    QVERIFY(valuesOfSettings(m_panel, settings, values, remarks, problem));
    QCOMPARE(values.size(), 1);
    QCOMPARE(values.first().value, QVariant(3));
}

KORA_TEST_MAIN(tst_FieldSettings)
#include "tst_fieldsettings.moc"
