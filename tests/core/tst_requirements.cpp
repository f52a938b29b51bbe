// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

using namespace KORA::INTERNAL;
using MetaData::parseField;
using MetaData::parseWidget;
using Info = WidgetLibraryPluginMetaInformation;

namespace {

int requirementsCode(const QString &requirements)
{
    QJsonObject json = MetaData::field("integer"_s);
    json.insert("requirements"_s, requirements);
    FieldMetaInformation field;
    return parseField(json, field);
}

} // namespace

class tst_Requirements : public QObject
{
    Q_OBJECT

private slots:
    void requirementsNameFieldsOfTheWidget_data();
    void requirementsNameFieldsOfTheWidget();
    void requirementsLanguage_data();
    void requirementsLanguage();
    void requirementsAreReadLikeTheExpression();
    void requirementsOfAnyLength();
};

void tst_Requirements::requirementsNameFieldsOfTheWidget_data()
{
    QTest::addColumn<QString>("requirements");
    QTest::addColumn<int>("code");
    QTest::newRow("fields of each type that counts") << "i && d>0.5 || b==true && o<3" << 0;
    QTest::newRow("a field that comes later") << "z" << 0;
    QTest::newRow("values are no fields") << "i==17 && b==false" << 0;
    QTest::newRow("a name like a value") << "true==true" << 10038;
    QTest::newRow("a missing field") << "nothing" << 10038;
    QTest::newRow("a missing field among others") << "i && d && nothing && b" << 10038;
    QTest::newRow("names have case") << "I" << 10038;
    QTest::newRow("a string field") << "s" << 10038;
    QTest::newRow("a tag field") << "i || t==1" << 10038;
    QTest::newRow("a color field") << "c" << 10038;
}

void tst_Requirements::requirementsNameFieldsOfTheWidget()
{
    QFETCH(QString, requirements);
    QJsonArray fields = {MetaData::field("image"_s, "{'requirements': '%1'}"_s.arg(requirements))};
    for (const char *field :
         {"i integer", "d double", "b bool", "o option", "s string", "t tag", "c color", "z bool"}) {
        const QStringList parts = QString::fromUtf8(field).split(QLatin1Char(' '));
        fields << MetaData::field(parts[1], "{'id': '%1'}"_s.arg(parts[0]));
    }
    LogRecorder log;
    WidgetMetaInformation widget;
    QTEST(parseWidget(MetaData::widget(QString(), fields), widget), "code");
    QCOMPARE(widget.fields().value("f"_s).requirements(), widget.isValid() ? requirements : QString());
    log.takeLines();
}

void tst_Requirements::requirementsLanguage_data()
{
    QTest::addColumn<QString>("requirements");
    QTest::addColumn<bool>("accepted");

    const auto rows = [](bool accepted, std::initializer_list<const char *> texts) {
        for (const char *text : texts)
            QTest::newRow(qPrintable(QString::fromUtf8(text).replace(QLatin1Char('\n'), "\\n"_s)))
                << text << accepted;
    };
    rows(true, {"a",
                "_",
                "9",
                "a ",
                "a&&b",
                "a || b",
                "a&& b",
                "a ||b",
                "a==1",
                "a == 1",
                "a <-12",
                "a> +0",
                "a==1.50",
                "a==true",
                "a==false&&b||c<2",
                "true",
                "a==true && true==false",
                "a_very_long_identifier_of_forty_letters_",
                "azAZ09_==0909",
                "backgroundColorIsEnabled==true"});
    rows(false,
         {"",           " ",       " a",     "a  ",     "a\n",     "a==1\n", "a==1 ", "a b",    "a&b",
          "a&&",        "&&a",     "a&&&&b", "a  &&b",  "a&&  b",  "a=1",    "a===1", "a!=1",   "a>=1",
          "speed >= 3", "a==",     "a==b",   "a==TRUE", "a==-1.5", "a==1.",  "a==.5", "a==1e3", "a== -  1",
          "a==1 1",     "a== --1", "(a)",    "!a",      "a.b",     "a-b",    "é",     "a\t&&b", "a==١",
          "a/b",        "a:b",     "a@b",    "a[b",     "a`b",     "a{b",    "a==1/", "a==1:"});
}

void tst_Requirements::requirementsLanguage()
{
    QFETCH(QString, requirements);
    QFETCH(bool, accepted);
    LogRecorder log;
    QCOMPARE(requirementsCode(requirements), accepted ? 0 : 10038);
    log.takeLines();
}

// The language is defined by this expression, which Qt's engine can only run on short texts.
void tst_Requirements::requirementsAreReadLikeTheExpression()
{
    static const QRegularExpression expression(QRegularExpression::anchoredPattern(
        R"(^(?:(?:[a-zA-Z\d_]+)+(?:(?: ){0,1}(?:==|<|>){1}(?: ){0,1}(?:[\+-]{0,1}[\d]+|[\d]+\.[\d]+|true|false){1}){0,1})"
        R"((?: ){0,1}(?:&&|\|\|){1}(?: ){0,1})*(?:(?:[a-zA-Z\d_]+)+(?: ){0,1}(?:(?:==|<|>){1}(?: ){0,1})"
        R"((?:[\+-]{0,1}[\d]+|[\d]+\.[\d]+|true|false){1}){0,1}){1}$)"_s));
    LogRecorder log;
    int accepted = 0;
    const auto compare = [&](const QStringList &tokens, int length) {
        int count = 1;
        for (int i = 0; i < length; ++i)
            count *= tokens.size();
        for (int number = 0; number < count; ++number) {
            QString text;
            for (int i = 0, rest = number; i < length; ++i, rest /= tokens.size())
                text += tokens[rest % tokens.size()];
            const bool matches = expression.match(text).hasMatch();
            accepted += matches;
            if ((requirementsCode(text) == 0) != matches)
                return text;
        }
        log.takeLines();
        return QString();
    };
    const QStringList all = "a;1;_;true;==;<;=;&&;||;&;+;-;.; ;\n"_s.split(QLatin1Char(';'));
    for (int length = 1; length <= 4; ++length)
        QCOMPARE(compare(all, length), QString());
    QCOMPARE(compare("a;1;==;&&;.; "_s.split(QLatin1Char(';')), 6), QString());
    QVERIFY(accepted > 1000);
}

void tst_Requirements::requirementsOfAnyLength()
{
    LogRecorder log;
    const auto longId = QString(100000, QLatin1Char('a'));
    QCOMPARE(requirementsCode(longId + "==true"_s), 0);
    QCOMPARE(requirementsCode(longId + QLatin1Char('!')), 10038);
    const auto conditions = "a==1 && b||"_s.repeated(50000);
    QCOMPARE(requirementsCode(conditions + QLatin1Char('c')), 0);
    QCOMPARE(requirementsCode(conditions), 10038);
    log.takeLines();
}

KORA_TEST_MAIN(tst_Requirements)

#include "tst_requirements.moc"
