// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/pluginmetainformation.h>
#include <kora/core/pluginutils.h>

#include <support/logrecorder.h>
#include <support/processortime.h>
#include <support/testmain.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>

using namespace KORA::INTERNAL;

namespace {

const auto english = "en-US"_s;
const auto italian = "it-IT"_s;

/// Everything in @p info, for comparing.
QStringList contents(const PluginMetaInformation &info)
{
    return {MetaData::notation(info.name()),
            info.id(),
            info.author(),
            info.version().version(),
            MetaData::notation(info.copyright()),
            MetaData::notation(info.description()),
            MetaData::notation(info.license()),
            info.defaultLanguage(),
            info.translation().join(QLatin1Char(','))};
}

PluginMetaInformation filledInformation()
{
    const auto text = [](const QString &text) { return MetaData::text("de-DE="_s + text); };
    PluginMetaInformation info;
    info.init(text("name"_s), "id"_s, "author"_s, VersionType(1, 2, 3), text("copyright"_s),
              text("description"_s), text("license"_s), "de-DE"_s, {italian, english});
    return info;
}

int parse(const QJsonObject &json, PluginMetaInformation &info)
{
    QJsonObject metaData;
    QList<TranslationStringType> translations;
    return PluginUtils::metaInformationFromMetaData(json, info, metaData, translations);
}

} // namespace

class tst_PluginMetaData : public QObject
{
    Q_OBJECT

private slots:
    void theTextOfEachCode();
    void metadataIsRefused_data();
    void metadataIsRefused();
    void checksRunInOrder();
    void metadataIsRead();
    void optionalKeysHaveDefaults();
    void anIdIsExactlyOneUuid_data();
    void anIdIsExactlyOneUuid();
    void translationFilesAreMerged();
    void clearingKeepsTheLegalTexts();
    void aTranslatableTextIsParsed_data();
    void aTranslatableTextIsParsed();
    void aTextTakesItsTranslations();
    void languageCodes_data();
    void languageCodes();
    void aTranslationFileIsImported_data();
    void aTranslationFileIsImported();
    void aTranslationFileIsRefused_data();
    void aTranslationFileIsRefused();
    void whatIsNoFileIsRefused();
    void importTakesLinearTime();
};

void tst_PluginMetaData::theTextOfEachCode()
{
    const QStringList texts = {
        "no error"_s,
        "Generig error"_s,
        "MetaData attribute not present"_s,
        "MetaData attribute not valid"_s,
        "MetaData/name attribute not present"_s,
        "MetaData/name attribute not valid"_s,
        "MetaData/id attribute not present"_s,
        "MetaData/id attribute not valid"_s,
        "MetaData/author attribute not present"_s,
        "MetaData/author attribute not valid"_s,
        "MetaData/version attribute not present"_s,
        "MetaData/version attribute not valid"_s,
        "MetaData/copyright attribute not valid"_s,
        "MetaData/description attribute not valid"_s,
        "MetaData/license attribute not valid"_s,
        "MetaData/defaultLanguage attribute is not valid"_s,
        "MetaData/translation attribute is not valid"_s,
        "Errore reading translation files"_s,
    };
    for (int code = 0; code < texts.size(); ++code)
        QCOMPARE(PluginUtils::errorToString(code), texts[code]);
    for (const int code : {-1, 18, 9999, 10000})
        QCOMPARE(PluginUtils::errorToString(code), "error code undefined"_s);
}

void tst_PluginMetaData::metadataIsRefused_data()
{
    QTest::addColumn<QString>("patch"); // of the object "MetaData"
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message"); // that must be logged, if any

    QTest::newRow("without name") << "{'name': null}" << 4 << "";
    QTest::newRow("a name that is a number") << "{'name': 1}" << 5 << "";
    QTest::newRow("a name with nothing for the comment") << "{'name': ['Plant']}" << 5 << "";
    QTest::newRow("without id") << "{'id': null}" << 6 << "";
    QTest::newRow("an id that is a number") << "{'id': 1}" << 7 << "";
    QTest::newRow("an id that is no UUID")
        << "{'id': 'plant'}" << 7 << "plant is invalid. Must be a valid UUIDv4";
    QTest::newRow("without author") << "{'author': null}" << 8 << "";
    QTest::newRow("an author that is a pair") << "{'author': ['A', 'B']}" << 9 << "";
    QTest::newRow("without version") << "{'version': null}" << 10 << "";
    QTest::newRow("a version that is a number") << "{'version': 1}" << 11 << "";
    QTest::newRow("a version of two numbers") << "{'version': '1.0'}" << 11 << "version 1.0 is invalid";
    QTest::newRow("a version that looks like a place")
        << "{'version': '%1%2'}" << 11 << "version %1%2 is invalid";
    QTest::newRow("a copyright that is an object") << "{'copyright': {}}" << 12 << "";
    QTest::newRow("a description of three texts") << "{'description': ['a', 'b', 'c']}" << 13 << "";
    QTest::newRow("a license with a number for the comment") << "{'license': ['a', 1]}" << 14 << "";
    QTest::newRow("a default language that is a number") << "{'defaultLanguage': 1}" << 15 << "";
    QTest::newRow("a default language without country")
        << "{'defaultLanguage': 'en'}" << 15 << "defaultLanguage en is an invalid language code";
    QTest::newRow("an empty default language")
        << "{'defaultLanguage': ''}" << 15 << "is an invalid language code";
    QTest::newRow("translations that are a text") << "{'translation': 'it-IT'}" << 16 << "";
    QTest::newRow("a translation that is a number") << "{'translation': ['it-IT', 1]}" << 16 << "";
    QTest::newRow("a translation in lower case")
        << "{'translation': ['it-it']}" << 16 << "translation contains the invalid language code it-it";
    QTest::newRow("a translation file with a short line")
        << "{'translation': ['it-IT', 'es-ES']}" << 17 << "Error reading the translation file";
}

void tst_PluginMetaData::metadataIsRefused()
{
    QFETCH(QString, patch);
    QFETCH(int, code);
    QFETCH(QString, message);
    LogRecorder log;
    PluginMetaInformation info = filledInformation();
    QCOMPARE(parse(MetaData::plugin(patch), info), code);
    QCOMPARE(contents(info), contents(filledInformation()));
    const QStringList lines = log.takeTexts();
    for (const QString &line : lines)
        QVERIFY2(line.startsWith("critical METADATA "_s), qPrintable(line));
    QVERIFY2(lines.join(QLatin1Char('\n')).contains(message), qPrintable(lines.join(QLatin1Char('\n'))));
}

// Everything is wrong at first; each repair brings up the next check.
void tst_PluginMetaData::checksRunInOrder()
{
    LogRecorder log;
    QJsonObject metaData;
    PluginMetaInformation info = filledInformation();
    QCOMPARE(parse(metaData, info), 2);
    QCOMPARE(parse({{"MetaData"_s, QJsonArray()}}, info), 3);
    const QVector<QPair<QString, int>> repairs = {
        {"{'translation': 1, 'defaultLanguage': 1, 'copyright': 1, 'description': 1, 'license': 1}"_s, 6},
        {"{'id': 'x'}"_s, 7},
        {"{'id': '%1'}"_s.arg(MetaData::pluginId), 16},
        {"{'translation': ['es-ES']}"_s, 15},
        {"{'defaultLanguage': null}"_s, 17},
        {"{'translation': null}"_s, 4},
        {"{'name': 1}"_s, 5},
        {"{'name': 'n'}"_s, 8},
        {"{'author': 1}"_s, 9},
        {"{'author': 'a'}"_s, 10},
        {"{'version': '1'}"_s, 11},
        {"{'version': '1.0.0'}"_s, 12},
        {"{'copyright': 'c'}"_s, 13},
        {"{'description': 'd'}"_s, 14},
    };
    for (const auto &repair : repairs) {
        metaData = MetaData::patched(metaData, repair.first);
        QCOMPARE(parse({{"MetaData"_s, metaData}}, info), repair.second);
    }
    QCOMPARE(contents(info), contents(filledInformation()));
    metaData = MetaData::patched(metaData, "{'license': 'l'}"_s);
    QCOMPARE(parse({{"MetaData"_s, metaData}}, info), 0);
    log.takeLines();
}

void tst_PluginMetaData::metadataIsRead()
{
    const QJsonObject json = MetaData::plugin(
        "{'name': [' Plant ', 'note'], 'author': ' A ', 'version': '01.2.3', 'copyright': 'c',"
        " 'description': ['d', 'note'], 'license': 'l', 'defaultLanguage': ' de-DE ',"
        " 'translation': [' pt-PT ', 'en-GB'], 'other': {}}"_s);
    PluginMetaInformation info;
    QJsonObject metaData;
    QList<TranslationStringType> translations;
    QCOMPARE(PluginUtils::metaInformationFromMetaData(json, info, metaData, translations), 0);
    const QStringList expected = {
        "de-DE= Plant  | note"_s, MetaData::pluginId, " A "_s,   "1.2.3"_s,      "de-DE=c"_s,
        "de-DE=d | note"_s,       "de-DE=l"_s,        "de-DE"_s, "pt-PT,en-GB"_s};
    QCOMPARE(contents(info), expected);
    QCOMPARE(info.name().defaultLanguage, "de-DE"_s);
    QCOMPARE(metaData, json.value("MetaData"_s).toObject());
    QCOMPARE(MetaData::notation(info.translatableStrings("de-DE"_s)), expected[0]);
    QCOMPARE(info.translatableStrings(italian), QList<TranslationStringType>());
}

void tst_PluginMetaData::optionalKeysHaveDefaults()
{
    PluginMetaInformation info = filledInformation();
    QCOMPARE(parse(MetaData::plugin("{'name': '', 'author': ''}"_s), info), 0);
    const QStringList expected = {"en-US="_s, MetaData::pluginId, QString(), "1.2.3"_s, QString(),
                                  QString(),  QString(),          english,   QString()};
    QCOMPARE(contents(info), expected);
}

void tst_PluginMetaData::anIdIsExactlyOneUuid_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("accepted");

    const QString id = MetaData::pluginId;
    QTest::newRow("as it is") << id << true;
    QTest::newRow("in upper case") << id.toUpper() << true;
    QTest::newRow("of any UUID version") << QString(id).replace(14, 1, QLatin1Char('f')) << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("the null UUID") << "00000000-0000-0000-0000-000000000000" << false;
    QTest::newRow("in braces") << QLatin1Char('{') + id + QLatin1Char('}') << false;
    QTest::newRow("with a brace before") << QLatin1Char('{') + id << false;
    QTest::newRow("without hyphens") << QString(id).remove(QLatin1Char('-')) << false;
    QTest::newRow("one digit short") << id.chopped(1) << false;
    QTest::newRow("with a letter past f") << QString(id).replace(0, 1, QLatin1Char('g')) << false;
    QTest::newRow("with a blank before") << QLatin1Char(' ') + id << false;
    for (const char *tail : {"}", "}}", "0", " ", "\n", "garbage", "/..", "/../../x", "}/../x", "%1"})
        QTest::newRow(qPrintable("followed by "_s + QLatin1String(tail)))
            << id + QLatin1String(tail) << false;
    QTest::newRow("followed by a null character") << id + QChar() << false;
}

void tst_PluginMetaData::anIdIsExactlyOneUuid()
{
    QFETCH(QString, id);
    QFETCH(bool, accepted);
    QJsonObject metaData = MetaData::plugin().value("MetaData"_s).toObject();
    metaData.insert("id"_s, id);
    LogRecorder log;
    PluginMetaInformation info;
    QCOMPARE(parse({{"MetaData"_s, metaData}}, info), accepted ? 0 : 7);
    QCOMPARE(info.id(), accepted ? id : QString());
    const QString lines = log.takeMessages().join(QLatin1Char('\n'));
    QCOMPARE(lines.contains("is invalid. Must be a valid UUIDv4"_s), !accepted);
}

void tst_PluginMetaData::translationFilesAreMerged()
{
    // French has only a header, Portuguese no file.
    const QJsonObject json =
        MetaData::plugin("{'name': 'Gauge', 'description': 'Plant', 'license': ['Plant', 'library'],"
                         " 'translation': ['fr-FR', 'pt-PT', 'it-IT', 'de-DE']}"_s);
    PluginMetaInformation info;
    QJsonObject metaData;
    QList<TranslationStringType> translations;
    QCOMPARE(PluginUtils::metaInformationFromMetaData(json, info, metaData, translations), 0);
    QCOMPARE(MetaData::notation(translations), "de-DE=Anzeige & en-US=Gauge & it-IT=Indicatore\n"
                                               "en-US=Plant & it-IT=Impianto | library"_s);
    QCOMPARE(info.name(), translations[0]);
    QCOMPARE(MetaData::notation(info.description()), "en-US=Plant"_s);
    QCOMPARE(info.license(), translations[1]);
}

void tst_PluginMetaData::clearingKeepsTheLegalTexts()
{
    PluginMetaInformation info = filledInformation();
    info.clear();
    const QStringList expected = {
        QString(),         QString(), QString(), QString(), "de-DE=copyright"_s, "de-DE=description"_s,
        "de-DE=license"_s, english,   QString()};
    QCOMPARE(contents(info), expected);
    QVERIFY(!info.version().isValid());
}

void tst_PluginMetaData::aTranslatableTextIsParsed_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("trim");
    QTest::addColumn<bool>("notEmpty");
    QTest::addColumn<QString>("result"); // empty: refused

    QTest::newRow("a text") << "' a '" << false << true << "it-IT= a ";
    QTest::newRow("a text and a comment") << "[' a ', ' c ']" << false << false << "it-IT= a  |  c ";
    QTest::newRow("only the text is trimmed") << "[' a ', ' c ']" << true << true << "it-IT=a |  c ";
    QTest::newRow("an empty text") << "''" << true << false << "it-IT=";
    QTest::newRow("an empty text where one is wanted") << "['', 'c']" << false << true << "";
    QTest::newRow("white space counts as text") << "' '" << false << true << "it-IT= ";
    QTest::newRow("unless it is trimmed") << "' '" << true << true << "";
    QTest::newRow("a number") << "1" << false << false << "";
    QTest::newRow("a boolean") << "true" << false << false << "";
    QTest::newRow("null") << "null" << false << false << "";
    QTest::newRow("an object") << "{'a': 'b'}" << false << false << "";
    QTest::newRow("an empty array") << "[]" << false << false << "";
    QTest::newRow("an array of one") << "['a']" << false << false << "";
    QTest::newRow("an array of three") << "['a', 'b', 'c']" << false << false << "";
    QTest::newRow("a number for the text") << "[1, 'c']" << false << false << "";
    QTest::newRow("a number for the comment") << "['a', 1]" << false << false << "";
}

void tst_PluginMetaData::aTranslatableTextIsParsed()
{
    QFETCH(QString, json);
    QFETCH(bool, trim);
    QFETCH(bool, notEmpty);
    QFETCH(QString, result);
    TranslationStringType text = MetaData::text("de-DE=before | before"_s);
    QCOMPARE(PluginUtils::infoFromMetaDataParseTranslatableString(MetaData::json(json), italian, {}, text,
                                                                  trim, notEmpty),
             !result.isEmpty());
    QCOMPARE(MetaData::notation(text), result);
    QCOMPARE(text.defaultLanguage, result.isEmpty() ? english : italian);
}

void tst_PluginMetaData::aTextTakesItsTranslations()
{
    const QList<TranslationStringType> translations =
        MetaData::texts("de-DE=a & it-IT=x\nen-US=a & it-IT=y | c\nen-US=a & it-IT=z\nen-US=a"_s);
    const auto parsed = [&](const QString &json) {
        TranslationStringType text;
        PluginUtils::infoFromMetaDataParseTranslatableString(MetaData::json(json), english, translations,
                                                             text, true, false);
        return MetaData::notation(text);
    };
    QCOMPARE(parsed("' a '"_s), "en-US=a & it-IT=z"_s);
    QCOMPARE(parsed("['a', 'c']"_s), "en-US=a & it-IT=y | c"_s);
    QCOMPARE(parsed("['a', 'other']"_s), "en-US=a | other"_s);
    QCOMPARE(parsed("'A'"_s), "en-US=A"_s);
}

void tst_PluginMetaData::languageCodes_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("valid");
    QTest::newRow("language and country") << "en-US" << true;
    for (const char *code : {"", "en", "en-us", "EN-US", "en_US", "en-USA", "e-US", " en-US", "en-US\n",
                             "en-U5", "en-US-x", "éa-US"})
        QTest::newRow(qPrintable("not \"%1\""_s.arg(QString::fromUtf8(code)))) << code << false;
}

void tst_PluginMetaData::languageCodes()
{
    QFETCH(QString, code);
    QTEST(PluginUtils::isValidLanguageCode(code), "valid");
}

void tst_PluginMetaData::aTranslationFileIsImported_data()
{
    QTest::addColumn<QString>("lines"); // after the header
    QTest::addColumn<bool>("addMissing");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    QTest::newRow("nothing but a header") << "" << true << "en-US=a"
                                          << "en-US=a";
    QTest::newRow("a new text") << "a,c,b" << true << ""
                                << "en-US=a & it-IT=b | c";
    QTest::newRow("no new text when none is wanted") << "a,c,b" << false << "en-US=a"
                                                     << "en-US=a";
    QTest::newRow("a text that is there") << "a,c,b" << false << "de-DE=x & en-US=a | c"
                                          << "de-DE=x & en-US=a & it-IT=b | c";
    QTest::newRow("the first of equal texts") << "a,,b" << true << "en-US=a\nen-US=a"
                                              << "en-US=a & it-IT=b\nen-US=a";
    QTest::newRow("the same translation again") << "a,,b\na,,b" << true << ""
                                                << "en-US=a & it-IT=b";
    QTest::newRow("an empty translation is filled") << "a,,b" << true << "en-US=a & it-IT="
                                                    << "en-US=a & it-IT=b";
    QTest::newRow("a text that is only another language's") << "x,,b" << true << "de-DE=x"
                                                            << "de-DE=x\nen-US=x & it-IT=b";
    QTest::newRow("blanks belong to the text") << " a , c , b " << true << ""
                                               << "en-US= a  & it-IT= b  |  c ";
    QTest::newRow("quotes hold commas") << "\"a,b\",\"c,d\",\"e\"" << true << ""
                                        << "en-US=a,b & it-IT=e | c,d";
    QTest::newRow("two quotes are one") << R"("a ""b"" c",,b)" << true << ""
                                        << "en-US=a \"b\" c & it-IT=b";
    // A consequence of the quoting rule that files rely on.
    QTest::newRow("an empty quoted field is a quote") << R"("","",b)" << true << ""
                                                      << "en-US=\" & it-IT=b | \"";
    QTest::newRow("quotes within a field") << R"(a"b,c"d,,e)" << true << ""
                                           << "en-US=ab,cd & it-IT=e";
    QTest::newRow("quotes close with the line") << "a,,\"b\nc,,d" << true << ""
                                                << "en-US=a & it-IT=b\nen-US=c & it-IT=d";
    QTest::newRow("lines of Windows") << "a,,b\r\nc,,d\r" << true << ""
                                      << "en-US=a & it-IT=b\nen-US=c & it-IT=d";
    QTest::newRow("UTF-8") << "é€,,日本" << true << ""
                           << "en-US=é€ & it-IT=日本";
}

void tst_PluginMetaData::aTranslationFileIsImported()
{
    QFETCH(QString, lines);
    QFETCH(bool, addMissing);
    QFETCH(QString, before);
    QFETCH(QString, after);
    for (const char *header : {"\n", "\xef\xbb\xbf"
                                     "en,\"it\n"}) {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(header + lines.toUtf8() + (lines.isEmpty() ? "" : "\n"));
        file.close();
        QList<TranslationStringType> texts = MetaData::texts(before);
        QVERIFY(PluginUtils::importTranslationFile(file.fileName(), texts, english, italian, addMissing));
        QCOMPARE(MetaData::notation(texts), after);
        QCOMPARE(texts.isEmpty() ? english : texts.last().defaultLanguage, english);
    }
}

void tst_PluginMetaData::aTranslationFileIsRefused_data()
{
    QTest::addColumn<QString>("lines");
    QTest::newRow("two fields") << "x,,y\na,b";
    QTest::newRow("four fields") << "x,,y\na,b,c,d";
    QTest::newRow("an empty line between") << "x,,y\n\na,,b";
    QTest::newRow("an empty line at the end") << "x,,y\n\n";
    QTest::newRow("a quote that takes the commas in") << "x,,y\n\"a,b,c";
    QTest::newRow("a quoted field over two lines") << "x,,y\na,,\"b\nc\"";
    QTest::newRow("another translation than before") << "x,,y\nGauge,,Altro";
    QTest::newRow("another translation in the file") << "x,,y\nx,,z";
    QTest::newRow("no translation where there is one") << "x,,y\nGauge,,";
}

void tst_PluginMetaData::aTranslationFileIsRefused()
{
    QFETCH(QString, lines);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("header\n" + lines.toUtf8());
    file.close();
    const QString before = "en-US=Gauge & it-IT=Indicatore"_s;
    QList<TranslationStringType> texts = MetaData::texts(before);
    QVERIFY(!PluginUtils::importTranslationFile(file.fileName(), texts, english, italian, true));
    QCOMPARE(MetaData::notation(texts), before);
}

void tst_PluginMetaData::whatIsNoFileIsRefused()
{
    QTemporaryDir dir;
    QList<TranslationStringType> texts;
    for (const QString &path : {dir.filePath("missing.csv"_s), dir.path(), QString()})
        QVERIFY(!PluginUtils::importTranslationFile(path, texts, english, italian, true));
}

void tst_PluginMetaData::importTakesLinearTime()
{
    const auto milliseconds = [](int lineCount) {
        QByteArray lines("header\n");
        for (int line = 0; line < lineCount; ++line)
            lines += QByteArray::number(line) + ",comment,testo\n";
        QTemporaryFile file;
        if (!file.open() || file.write(lines) != lines.size())
            return -1.0;
        file.close();
        return processorMilliseconds([&file, lineCount] {
            QList<TranslationStringType> texts;
            return PluginUtils::importTranslationFile(file.fileName(), texts, english, italian, true)
                   && texts.size() == lineCount;
        });
    };
    // Ten times the work; quadratic time would be a hundred times as long.
    const double small = std::max(milliseconds(4000), milliseconds(4000));
    const double large = std::min(milliseconds(40000), milliseconds(40000));
    QVERIFY(small >= 0 && large >= 0);
    QVERIFY2(large < 40 * small,
             qPrintable("%1 ms, %2 ms"_s.arg(QString::number(small), QString::number(large))));
}

KORA_TEST_MAIN(tst_PluginMetaData)

#include "tst_pluginmetadata.moc"
