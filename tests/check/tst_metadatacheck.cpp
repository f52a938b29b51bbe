// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <algorithm>
#include <random>

#include <kora/host.h>

#include <support/logrecorder.h>
#include <support/testmain.h>

#include "check/metadatacheck.h"
#include "check/metadatafaults.h"
#include "check/rules.h"

using namespace KORA::INTERNAL;
using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

const char csvName[] = "translations/it-IT.csv";

QByteArray dataFile(const char *name)
{
    QFile file(QStringLiteral(KORA_TEST_DATA_DIR "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
           && file.write(content) == content.size();
}

// "3:13 5", with the code of the parser or the rule
QString shortForm(const Finding &finding)
{
    return QStringLiteral("%1:%2 %3")
        .arg(QString::number(finding.line), QString::number(finding.column),
             finding.code != 0 ? QString::number(finding.code) : finding.rule);
}

QStringList shortForms(const Findings &findings)
{
    QStringList forms;
    for (const Finding &finding : findings) {
        forms.append(shortForm(finding));
    }
    return forms;
}

int parse(const QJsonObject &metaData)
{
    WidgetLibraryPluginMetaInformation info;
    return WidgetLibraryPluginUtils::metaInformationFromMetaData({{QLatin1String("MetaData"), metaData}},
                                                                 info);
}

/// Changes JSON values at random, by a seed.
class Mutator
{
public:
    explicit Mutator(unsigned seed)
        : m_random(seed)
    {}

    QJsonObject mutated(const QJsonObject &object)
    {
        QJsonValue value = object;
        const int changes = 1 + pick(3);
        for (int i = 0; i < changes; ++i) {
            value = change(value, 0);
        }
        return value.toObject();
    }

private:
    int pick(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    QJsonValue stranger()
    {
        static const QJsonArray strangers{QJsonValue::Null,
                                          true,
                                          0,
                                          -1,
                                          0.5,
                                          3e9,
                                          QString(),
                                          QStringLiteral("true"),
                                          QStringLiteral("on==true"),
                                          QStringLiteral("count"),
                                          QStringLiteral("tag"),
                                          QStringLiteral("option"),
                                          QStringLiteral("string"),
                                          QStringLiteral("1.0"),
                                          QStringLiteral("1.2.3"),
                                          QStringLiteral("#12"),
                                          QStringLiteral("it-IT"),
                                          QStringLiteral("Roboto"),
                                          QStringLiteral("10x10"),
                                          QStringLiteral("a b"),
                                          QJsonArray(),
                                          QJsonArray{QStringLiteral("a"), QStringLiteral("b")},
                                          QJsonArray{1},
                                          QJsonObject(),
                                          QJsonObject{{QStringLiteral("size"), 0}},
                                          QJsonArray{QJsonObject{{QStringLiteral("i"), 1}}}};
        return strangers.at(pick(strangers.size()));
    }

    QJsonValue change(const QJsonValue &value, int depth)
    {
        const bool goesDeeper = depth == 0 || pick(5) > 0;
        if (value.isObject() && !value.toObject().isEmpty() && goesDeeper) {
            return changeObject(value.toObject(), depth);
        }
        if (value.isArray() && !value.toArray().isEmpty() && goesDeeper) {
            return changeArray(value.toArray(), depth);
        }
        return stranger();
    }

    QJsonValue changeObject(QJsonObject object, int depth)
    {
        const QStringList keys = object.keys();
        const QString key = keys.at(pick(keys.size()));
        switch (pick(8)) {
        case 0:
            object.remove(key);
            break;
        case 1: // a key of the neighbourhood with a value that it hardly takes
            object.insert(key == QLatin1String("id") ? QStringLiteral("tagCanBeAttached") : key, stranger());
            break;
        default:
            object.insert(key, change(object.value(key), depth + 1));
        }
        return object;
    }

    QJsonValue changeArray(QJsonArray array, int depth)
    {
        const int index = pick(array.size());
        switch (pick(8)) {
        case 0:
            array.removeAt(index);
            break;
        case 1:
            array.append(array.at(index));
            break;
        default:
            array.replace(index, change(array.at(index), depth + 1));
        }
        return array;
    }

    std::mt19937 m_random;
};

} // namespace

class tst_MetadataCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rightDocumentsHaveNoFindings_data();
    void rightDocumentsHaveNoFindings();
    void allFaultsAreFoundAtTheirPlaces();
    void faultsNameTheirOwner();
    void eachRuleFindsItsFixtureAlone_data();
    void eachRuleFindsItsFixtureAlone();
    void requirementsOfAWrongFieldAreNotJudged_data();
    void requirementsOfAWrongFieldAreNotJudged();
    void findingsSuitTheCase_data();
    void findingsSuitTheCase();
    void brokenJson_data();
    void brokenJson();
    void everyCodeIsExplained();
    void noErrorsMeansThatTheParserAccepts();
};

void tst_MetadataCheck::rightDocumentsHaveNoFindings_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("every key and type") << QStringLiteral("alltypes.json");
    QTest::newRow("with a translation file") << QStringLiteral("boiler.json");
    QTest::newRow("the example library") << QStringLiteral("../../../examples/plant/plant.json");
}

void tst_MetadataCheck::rightDocumentsHaveNoFindings()
{
    QFETCH(QString, name);
    const QByteArray json = dataFile(name.toUtf8().constData());
    QVERIFY(!json.isEmpty());
    QCOMPARE(shortForms(checkMetadata(json, QStringLiteral(KORA_TEST_DATA_DIR "/") + name)), QStringList());
}

void tst_MetadataCheck::allFaultsAreFoundAtTheirPlaces()
{
    const QStringList planted = {
        QStringLiteral("1:1 8"),       QStringLiteral("3:13 5"),      QStringLiteral("4:16 11"),
        QStringLiteral("5:30 16"),     QStringLiteral("8:19 10002"),  QStringLiteral("10:28 10007"),
        QStringLiteral("12:25 10014"), QStringLiteral("12:83 10034"), QStringLiteral("14:75 10036"),
        QStringLiteral("15:46 10016"), QStringLiteral("23:85 10031"), QStringLiteral("24:90 10038"),
    };
    MetadataCheckOptions options;
    options.withTranslations = false;
    LogRecorder log;
    const Findings findings =
        checkMetadata(dataFile("twelvefaults.json"), QStringLiteral("twelvefaults.json"), options);
    log.takeLines();
    QCOMPARE(shortForms(findings), planted);
}

void tst_MetadataCheck::faultsNameTheirOwner()
{
    LogRecorder log;
    MetadataCheckOptions options;
    options.withTranslations = false;
    const Findings findings = checkMetadata(dataFile("twelvefaults.json"), QStringLiteral("f.json"), options);
    log.takeLines();
    QCOMPARE(findings.size(), 12);
    const Finding &option = findings.at(8);
    QCOMPARE(option.pointer, QStringLiteral("/MetaData/widgets/0/fields/1/options/1/index"));
    QCOMPARE(option.widgetId, QStringLiteral("level-tank"));
    QCOMPARE(option.widgetVersion, QStringLiteral("1.0.0"));
    QCOMPARE(option.fieldId, QStringLiteral("mode"));
    QCOMPARE(option.value, QStringLiteral("\"1\""));
    QCOMPARE(option.message, WidgetLibraryPluginUtils::errorToString(10036));
    QCOMPARE(option.severity, Finding::Error);
    QVERIFY(!option.hint.isEmpty());
}

// The right document, wrong in one place: the text that is replaced in one of its two files, and by what.
void tst_MetadataCheck::eachRuleFindsItsFixtureAlone_data()
{
    QTest::addColumn<bool>("inCsv");
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
#define JSON_ROW(from, to) << false << QByteArray(from) << QByteArray(to)
#define CSV_ROW(from, to) << true << QByteArray(from) << QByteArray(to)
    QTest::newRow("metadata") JSON_ROW("\"integer\"", "\"int\"");
    QTest::newRow("json-syntax") JSON_ROW("\"1.0.0\",\n    \"tr", "\"1.0.0\"\n    \"tr");
    QTest::newRow("json-not-standard") JSON_ROW("Boiler Works", "Boiler\\q Works");
    QTest::newRow("repeated-key") JSON_ROW("\"author\"", "\"author\": \"A\", \"author\"");
    QTest::newRow("unknown-key") JSON_ROW("\"minimum\"", "\"minimun\"");
    QTest::newRow("ignored-key") JSON_ROW("\"bool\",", "\"bool\", \"minimum\": 0,");
    QTest::newRow("xml-character") JSON_ROW("Boiler Works", "Boiler\\u0001Works");
    QTest::newRow("repeated-widget") JSON_ROW("1.1.0", "1.0.0");
    QTest::newRow("no-default-size") JSON_ROW("\"Gauge\", \"defaultSize\": \"200x100\"", "\"Gauge\"");
    QTest::newRow("repeated-field") JSON_ROW("\"level\"", "\"mode\"");
    QTest::newRow("empty-field-id") JSON_ROW("\"level\"", "\"\"");
    QTest::newRow("default-outside-bounds") JSON_ROW("\"defaultValue\": 5", "\"defaultValue\": 11");
    QTest::newRow("bounds-reversed") JSON_ROW("\"minimum\": 0", "\"minimum\": 20");
    QTest::newRow("repeated-option-index") JSON_ROW("\"index\": 0", "\"index\": 1");
    QTest::newRow("requirement-blank") JSON_ROW("alarm==true", "alarm == true");
    QTest::newRow("requirement-never") JSON_ROW("alarm==true", "alarm==1");
    QTest::newRow("requirement-existence") JSON_ROW("alarm==true", "alarm");
    QTest::newRow("requirement-self") JSON_ROW("\"Alarm\",", "\"Alarm\", \"requirements\": \"alarm==true\",");
    QTest::newRow("requirement-mixed") JSON_ROW("alarm==true", "alarm==true&&mode==1||level==1");
    QTest::newRow("requirement-last-counts") JSON_ROW("alarm==true", "alarm==true&&mode==1");
    QTest::newRow("repeated-language") JSON_ROW("[\"it-IT\"]", "[\"it-IT\", \"en-US\"]");
    QTest::newRow("language-without-file") JSON_ROW("[\"it-IT\"]", "[\"it-IT\", \"de-DE\"]");
    QTest::newRow("csv-header") CSV_ROW("en-US,comment,it-IT\n", "");
    QTest::newRow("csv-encoding") CSV_ROW("Manometro", "Man\xf2metro");
    QTest::newRow("csv-fields") CSV_ROW("Gauge,,M", "More, words,,M\nGauge,,M");
    QTest::newRow("csv-conflict") CSV_ROW("On,,Acceso\n", "On,,Acceso\nOn,,Attivo\n");
    QTest::newRow("csv-empty-quoted") CSV_ROW("On,,Acceso\n", "On,,Acceso\nMore,\"\",Altro\n");
    QTest::newRow("untranslated") CSV_ROW("On,,Acceso\n", "");
    QTest::newRow("option-translation") CSV_ROW("Acceso", "\"Acceso, attivo\"");
#undef JSON_ROW
#undef CSV_ROW
}

void tst_MetadataCheck::eachRuleFindsItsFixtureAlone()
{
    QFETCH(bool, inCsv);
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QByteArray json = dataFile("boiler.json");
    QByteArray csv = dataFile(csvName);
    QByteArray &changed = inCsv ? csv : json;
    QVERIFY(changed.contains(from));
    changed.replace(changed.indexOf(from), from.size(), to);

    const QTemporaryDir dir;
    const QString csvPath = dir.filePath(QLatin1String(csvName));
    QVERIFY(writeFile(csvPath, csv));
    LogRecorder log;
    const Findings findings = checkMetadata(json, dir.filePath(QStringLiteral("boiler.json")));
    log.takeLines();

    QCOMPARE(findings.size(), 1);
    const Finding &finding = findings.first();
    QCOMPARE(finding.rule, QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(finding.severity, findRule(finding.rule)->severity);
    QVERIFY(!finding.message.isEmpty() && !finding.hint.isEmpty());
    QCOMPARE(finding.file == csvPath, inCsv && finding.rule != QLatin1String("untranslated"));
    QVERIFY(finding.line > 0);
}

void tst_MetadataCheck::requirementsOfAWrongFieldAreNotJudged_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QByteArray>("requirement");
    QTest::addColumn<int>("code");
    QTest::newRow("type") << QByteArray("\"bool\"") << QByteArray("\"boolean\"") << QByteArray("alarm==true")
                          << 10029;
    QTest::newRow("options") << QByteArray("\"index\": 0") << QByteArray("\"index\": \"0\"")
                             << QByteArray("mode==0") << 10036;
}

// Nobody knows which values it was meant to have.
void tst_MetadataCheck::requirementsOfAWrongFieldAreNotJudged()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QByteArray, requirement);
    QFETCH(int, code);
    QByteArray json = dataFile("boiler.json");
    QVERIFY(json.contains(from));
    json.replace(from, to).replace("alarm==true", requirement);
    MetadataCheckOptions options;
    options.withTranslations = false;
    LogRecorder log;
    const Findings findings = checkMetadata(json, QStringLiteral("boiler.json"), options);
    log.takeLines();
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().code, code);
}

// What a rule says besides, where it knows several cases.
void tst_MetadataCheck::findingsSuitTheCase_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("rule"); // empty: there is no finding
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("hint");
    const auto row = [](const char *name, const char *from, const char *to, const char *rule,
                        const char *message, const char *hint) {
        QTest::newRow(name) << QByteArray(from) << QByteArray(to) << QString::fromLatin1(rule)
                            << QString::fromLatin1(message) << QString::fromLatin1(hint);
    };
    row("an empty size", "200x100", "0x100", "no-default-size", "is empty", "add \"defaultSize\"");
    row("a default below the minimum", "\"defaultValue\": 5", "\"defaultValue\": -1",
        "default-outside-bounds", "-1 is below the minimum 0", "change");
    row("a default at a bound", "\"defaultValue\": 5", "\"defaultValue\": 10", "", "", "");
    row("a language twice", "[\"it-IT\"]", "[\"it-IT\", \"it-IT\"]", "repeated-language", "listed twice",
        "remove");
    row("a key like no other", "\"author\"", "\"zzzzzzzz\": 1, \"author\"", "unknown-key", "zzzzzzzz",
        "known here: $schema, id, name");
    row("Qt's own key", "\"author\"", "\"MetaData\": {}, \"author\"", "unknown-key", "MetaData",
        "moc adds that itself");
    row("a key inside an option", "\"index\": 0", "\"index\": 0, \"opton\": 1", "unknown-key", "opton",
        "did you mean \"option\"");
    row("a bool field that exists", "alarm==true", "alarm", "requirement-existence", "false and 0 included",
        "write \"alarm==true\"");
    row("another field that exists", "alarm==true", "level", "requirement-existence", "false and 0 included",
        "compare it with a value");
    row("a blank in a value", "alarm==true", "alarm== true", "requirement-blank", "belongs to the value",
        "\"alarm==true\" without blanks");
    row("a number may follow a blank", "alarm==true", "level> 3", "", "", "");
    row("an option", "alarm==true", "mode==1", "", "", "");
    row("an option that there is not", "alarm==true", "mode==7", "requirement-never", "cannot be \"7\"",
        "options");
    row("a number outside the bounds", "alarm==true", "level==11", "requirement-never", "cannot be \"11\"",
        "bounds");
    row("a number at its bound", "alarm==true", "level==10", "", "", "");
    row("a number with a sign", "alarm==true", "level==+1", "requirement-never", "cannot be \"+1\"",
        "as short");
    row("conditions joined by bars", "alarm==true", "mode==1||alarm==true", "requirement-last-counts",
        "\"alarm==true\"", "keep");
    row("a surrogate pair", "Boiler Works", "Boiler \\ud83d\\ude00", "", "", "");
    row("no character", "Boiler Works", "Boiler \\uffff", "xml-character", "cannot hold", "remove");
}

void tst_MetadataCheck::findingsSuitTheCase()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QString, rule);
    QByteArray json = dataFile("boiler.json");
    QVERIFY(json.contains(from));
    json.replace(json.indexOf(from), from.size(), to);
    LogRecorder log;
    const Findings findings = checkMetadata(json, QStringLiteral(KORA_TEST_DATA_DIR "/boiler.json"));
    log.takeLines();
    QCOMPARE(findings.size(), rule.isEmpty() ? 0 : 1);
    if (findings.isEmpty()) {
        return;
    }
    QCOMPARE(findings.first().rule, rule);
    QFETCH(QString, message);
    QFETCH(QString, hint);
    QVERIFY2(findings.first().message.contains(message), qPrintable(findings.first().message));
    QVERIFY2(findings.first().hint.contains(hint), qPrintable(findings.first().hint));
}

void tst_MetadataCheck::brokenJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QByteArray() << QStringLiteral("1:1 json-syntax");
    QTest::newRow("cut off") << QByteArray("{\n  \"id\": ") << QStringLiteral("2:9 json-syntax");
    QTest::newRow("behind letters of two bytes")
        << QByteArray("{\"name\": \"\xc3\xb6\xc3\xb6\" \"id\": 1}") << QStringLiteral("1:15 json-syntax");
    QTest::newRow("a list") << QByteArray("[]") << QStringLiteral("1:1 3");
}

void tst_MetadataCheck::brokenJson()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, expected);
    QCOMPARE(shortForms(checkMetadata(json, QStringLiteral("f.json"))), QStringList{expected});
}

void tst_MetadataCheck::everyCodeIsExplained()
{
    const auto isUsed = [](int code) {
        return WidgetLibraryPluginUtils::errorToString(code) != WidgetLibraryPluginUtils::errorToString(-1);
    };
    for (int code = 2; code < 10100; ++code) {
        const bool isExplained = findCode(code) != nullptr;
        QVERIFY2(isExplained == isUsed(code), qPrintable(QString::number(code)));
    }
}

void tst_MetadataCheck::noErrorsMeansThatTheParserAccepts()
{
    bool isSet = false;
    const int wanted = qEnvironmentVariableIntValue("KORA_CHECK_MUTATIONS", &isSet);
    const int count = isSet ? wanted : 2000;
    const QJsonObject documents[] = {QJsonDocument::fromJson(dataFile("alltypes.json")).object(),
                                     QJsonDocument::fromJson(dataFile("boiler.json")).object()};
    MetadataCheckOptions options;
    options.withTranslations = false;
    LogRecorder log;
    int accepted = 0;
    for (int seed = 0; seed < count; ++seed) {
        const QJsonObject mutant = Mutator(static_cast<unsigned>(seed)).mutated(documents[seed % 2]);
        const int code = parse(mutant);
        const Findings findings =
            checkMetadata(QJsonDocument(mutant).toJson(), QStringLiteral("mutant.json"), options);
        const bool hasErrors = std::any_of(findings.cbegin(), findings.cend(), [](const Finding &finding) {
            return finding.severity == Finding::Error;
        });
        const bool hasCode = std::any_of(findings.cbegin(), findings.cend(),
                                         [code](const Finding &finding) { return finding.code == code; });
        const QByteArray what =
            QByteArray("seed ") + QByteArray::number(seed) + ", code " + QByteArray::number(code);
        QVERIFY2(hasErrors == (code != 0), what.constData());
        QVERIFY2(code == 0 || hasCode, what.constData());
        QVERIFY2(parse(findMetadataFaults(mutant).repaired) == 0, what.constData());
        accepted += code == 0;
    }
    log.takeLines();
    QVERIFY2(accepted > count / 20 && accepted < count * 19 / 20, qPrintable(QString::number(accepted)));
}

KORA_TEST_MAIN(tst_MetadataCheck)
#include "tst_metadatacheck.moc"
