// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/widgetlibrarypluginutils.h>

#include <support/testmain.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QColor>
#include <QtTest/QtTest>

#include <cfloat>
#include <climits>
#include <limits>

using namespace KORA::INTERNAL;
using Utils = WidgetLibraryPluginUtils;
using StringMap = QMap<int, QString>;

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinite = std::numeric_limits<double>::infinity();
const QVariant none;

QVariant text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QVariant font(const char *family, int size, int weight, QFont::Style style = QFont::StyleNormal)
{
    QFont result(QString::fromUtf8(family), size, weight);
    result.setStyle(style);
    return result;
}

/// Type and value.
bool isSame(const QVariant &a, const QVariant &b)
{
    return a.isValid() == b.isValid() && a.userType() == b.userType() && a == b;
}

#define COMPARE_VARIANTS(actual, expected) \
    QVERIFY2(isSame(actual, expected), qPrintable("%1 for %2"_s.arg(shown(actual), shown(expected))))

QString shown(const QVariant &value)
{
    QString result;
    QDebug(&result) << value;
    return result;
}

} // namespace

class tst_FieldValues : public QObject
{
    Q_OBJECT

private slots:
    void aValueIsWrittenAsText_data();
    void aValueIsWrittenAsText();
    void aValueIsReadFromText_data();
    void aValueIsReadFromText();
    void whatIsWrittenIsReadAgain();
    void jsonIsWrittenAsByQt();
    void aFontIsReadStrictly_data();
    void aFontIsReadStrictly();
    void aFontIsReadLeniently_data();
    void aFontIsReadLeniently();
    void aSizeIsReadFromText_data();
    void aSizeIsReadFromText();
    void fontFamilies();
    void boundsOfIntegers_data();
    void boundsOfIntegers();
    void boundsOfDoubles_data();
    void boundsOfDoubles();
    void aValueIsCheckedBeforeItIsSet_data();
    void aValueIsCheckedBeforeItIsSet();
    void aValueIsConvertedToTheField_data();
    void aValueIsConvertedToTheField();
    void additionalInformationIsConvertedToItsOwnType();
    void stringMapsCompareByContent();
};

void tst_FieldValues::aValueIsWrittenAsText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("a string as it is") << 1 << text(" \"é\" ") << " \"é\" ";
    QTest::newRow("a string list as an array")
        << 2 << QVariant(QStringList{"a\"b"_s, QString()}) << R"(["a\"b",""])";
    QTest::newRow("an empty string list") << 2 << QVariant(QStringList()) << "[]";
    QTest::newRow("a string map in order of the index")
        << 3 << QVariant::fromValue(StringMap{{2, "b"_s}, {1, "a"_s}, {-1, QString()}})
        << R"([{"i":-1,"v":""},{"i":1,"v":"a"},{"i":2,"v":"b"}])";
    QTest::newRow("what is no string map as an empty one") << 3 << QVariant(5) << "[]";
    QTest::newRow("an integer") << 4 << QVariant(INT_MIN) << "-2147483648";
    QTest::newRow("an integer that was text") << 4 << text("7") << "7";
    QTest::newRow("no integer") << 4 << none << "0";
    QTest::newRow("a double") << 5 << QVariant(0.1) << "0.1";
    QTest::newRow("a double in six digits") << 5 << QVariant(1234567.0) << "1.23457e+06";
    QTest::newRow("a small double") << 5 << QVariant(-0.00001) << "-1e-05";
    QTest::newRow("a bool that is true") << 6 << QVariant(true) << "true";
    QTest::newRow("a bool that is not") << 6 << none << "false";
    QTest::newRow("an option") << 7 << QVariant(3) << "3";
    QTest::newRow("a color") << 8 << QVariant(QColor(255, 0, 16)) << "#ff0010";
    QTest::newRow("a color without its alpha") << 8 << QVariant(QColor(255, 0, 16, 7)) << "#ff0010";
    QTest::newRow("what is no color as black") << 8 << QVariant(QStringList()) << "#000000";
    QTest::newRow("a font")
        << 9 << font("Roboto", 10, QFont::Bold)
        << R"({"bold":true,"family":"Roboto","size":10,"style":"normal","underline":false})";
    QTest::newRow("a font is bold from 58")
        << 9 << font("A", 7, 58, QFont::StyleItalic)
        << R"({"bold":true,"family":"A","size":7,"style":"italic","underline":false})";
    QTest::newRow("a font is not bold at 57")
        << 9 << font("A", 7, 57, QFont::StyleOblique)
        << R"({"bold":false,"family":"A","size":7,"style":"normal","underline":false})";
    QTest::newRow("an image") << 10 << text("a.png") << R"({"isValid":true,"value":"a.png"})";
    QTest::newRow("an empty image") << 10 << text("") << R"({"isValid":true,"value":""})";
    QTest::newRow("no image") << 10 << none << R"({"isValid":false,"value":""})";
    for (const int type : {0, 11, 12, 13, -1})
        QTest::newRow(qPrintable("nothing for type %1"_s.arg(type))) << type << text("x") << "";
}

void tst_FieldValues::aValueIsWrittenAsText()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    QTEST(Utils::fieldValueToString(type, value), "text");
}

void tst_FieldValues::aValueIsReadFromText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    const QVariant noMap = QVariant::fromValue(StringMap());
    QTest::newRow("a string as it is") << 1 << " [x] " << text(" [x] ");
    QTest::newRow("a string list") << 2 << R"(["b", "a"])" << QVariant(QStringList{"b"_s, "a"_s});
    QTest::newRow("what is no text in a string list is empty")
        << 2 << R"(["b", 1])" << QVariant(QStringList{"b"_s, QString()});
    QTest::newRow("a string list that is an object") << 2 << R"({"a":"b"})" << QVariant(QStringList());
    QTest::newRow("a string list that is no JSON") << 2 << "a,b" << QVariant(QStringList());
    QTest::newRow("a string map") << 3 << R"([{"i":2,"v":"b"},{"i":1,"v":"a"}])"
                                  << QVariant::fromValue(StringMap{{1, "a"_s}, {2, "b"_s}});
    QTest::newRow("a string map that is no JSON") << 3 << "x" << noMap;
    QTest::newRow("an integer") << 4 << "-12" << QVariant(-12);
    QTest::newRow("an integer that is no number") << 4 << "12a" << QVariant(0);
    QTest::newRow("an integer with a point") << 4 << "1.5" << QVariant(0);
    QTest::newRow("an integer out of range") << 4 << "99999999999" << QVariant(0);
    QTest::newRow("a double") << 5 << "-1.5e3" << QVariant(-1500.0);
    QTest::newRow("a double that is no number") << 5 << "1,5" << QVariant(0.0);
    QTest::newRow("true") << 6 << "true" << QVariant(true);
    QTest::newRow("true in upper case is false") << 6 << "TRUE" << QVariant(false);
    QTest::newRow("one is false") << 6 << "1" << QVariant(false);
    QTest::newRow("an option") << 7 << "3" << QVariant(3);
    QTest::newRow("a color") << 8 << "#ff0010" << QVariant(QColor(255, 0, 16));
    QTest::newRow("a color by name") << 8 << "red" << QVariant(QColor(Qt::red));
    QTest::newRow("no color") << 8 << "reddish" << QVariant(QColor());
    QTest::newRow("an image") << 10 << R"({"isValid":true,"value":"a.png"})" << text("a.png");
    QTest::newRow("no image") << 10 << R"({"isValid":false,"value":"a.png"})" << none;
    QTest::newRow("an image that does not say that it is valid") << 10 << R"({"value":"a.png"})" << none;
    QTest::newRow("an image that is no JSON") << 10 << "a.png" << none;
    for (const int type : {0, 11, 12, 13, -1})
        QTest::newRow(qPrintable("nothing for type %1"_s.arg(type))) << type << "x" << none;
}

void tst_FieldValues::aValueIsReadFromText()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    COMPARE_VARIANTS(Utils::fieldValueFromString(type, text), value);
}

void tst_FieldValues::whatIsWrittenIsReadAgain()
{
    QFont underlined("Roboto Thin"_s, 12, QFont::Bold, true);
    underlined.setUnderline(true);
    const QVector<QPair<int, QVariant>> values = {
        {1, text("日本 \" \\ %1")},
        {2, QStringList{"[\"a\",1]"_s, QString(), "é\n"_s}},
        {3, QVariant::fromValue(StringMap{{INT_MIN, "a,b"_s}, {INT_MAX, "\""_s}})},
        {4, INT_MIN},
        {5, -0.125},
        {6, true},
        {7, INT_MAX},
        {8, QColor(1, 2, 3)},
        {9, underlined},
        {10, text("{\"isValid\":false}")},
        {10, none},
    };
    for (const auto &value : values)
        COMPARE_VARIANTS(
            Utils::fieldValueFromString(value.first, Utils::fieldValueToString(value.first, value.second)),
            value.second);
}

// All characters, pairs of surrogates and halves of them.
void tst_FieldValues::jsonIsWrittenAsByQt()
{
    QStringList texts{QString(), QString::fromUtf8("a \"\xf0\x9f\x9a\xb0\" \xc3\xa4\n")};
    for (int c = 0; c <= 0xffff; ++c) {
        texts.append(QString(QChar(c)) + QLatin1Char('x'));
    }
    const auto json = [](const QJsonDocument &document) {
        return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
    };
    const QString list = Utils::fieldValueToString(FieldTypeStringList, texts);
    QVERIFY(list == json(QJsonDocument(QJsonArray::fromStringList(texts))));

    QJsonArray entries;
    StringMap map;
    for (int i = 0; i < texts.size(); ++i) {
        map.insert(i, texts.at(i));
        entries.append(QJsonObject{{QStringLiteral("i"), i}, {QStringLiteral("v"), texts.at(i)}});
    }
    QVERIFY(Utils::fieldValueToString(FieldTypeStringMap, QVariant::fromValue(map))
            == json(QJsonDocument(entries)));
}

void tst_FieldValues::aFontIsReadStrictly_data()
{
    QTest::addColumn<QString>("patch");
    QTest::addColumn<bool>("ok");

    QTest::newRow("all keys of their types") << "{}" << true;
    for (const char *key : {"family", "size", "bold", "style", "underline"}) {
        QTest::newRow(qPrintable(QLatin1String(key) + " is missing"_s))
            << "{'%1': null}"_s.arg(QLatin1String(key)) << false;
        // The strict check deliberately refuses the booleans that are written.
        QTest::newRow(qPrintable(QLatin1String(key) + " is a boolean"_s))
            << "{'%1': true}"_s.arg(QLatin1String(key)) << false;
    }
    QTest::newRow("the family is a number") << "{'family': 1}" << false;
    QTest::newRow("the size is a text") << "{'size': '10'}" << false;
    QTest::newRow("the style is a number") << "{'style': 1}" << false;
}

void tst_FieldValues::aFontIsReadStrictly()
{
    QFETCH(QString, patch);
    QFETCH(bool, ok);
    const QJsonObject valid =
        MetaData::json("{'family': 'Roboto', 'size': 12, 'bold': 1, 'style': 'italic', 'underline': 1}"_s)
            .toObject();
    const QJsonObject json = MetaData::patched(valid, patch);
    bool result = !ok;
    const QFont font = Utils::fieldFontFromString(QString::fromUtf8(QJsonDocument(json).toJson()), &result);
    QCOMPARE(result, ok);
    if (!ok) {
        QCOMPARE(font, QFont());
        return;
    }
    // Only a boolean that is true makes the font bold; the number that passes the check does not.
    QCOMPARE(Utils::fieldFontToString(font),
             R"({"bold":false,"family":"Roboto","size":12,"style":"italic","underline":false})"_s);
    QCOMPARE(font.weight(), 50);
}

void tst_FieldValues::aFontIsReadLeniently_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("weight");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<bool>("underline");

    QTest::newRow("a full text")
        << R"({"bold":true,"family":"Roboto","size":12,"style":"italic","underline":true})"
        << "Roboto" << 75 << true << true;
    QTest::newRow("an unknown style is normal") << R"({"family":"Roboto","size":12,"style":"oblique"})"
                                                << "Roboto" << 50 << false << false;
    QTest::newRow("no keys") << "{}"
                             << "" << 50 << false << false;
    QTest::newRow("no JSON") << "Roboto,10"
                             << "" << 50 << false << false;
    QTest::newRow("a size of zero") << R"({"family":"A","size":0})"
                                    << "A" << 50 << false << false;
    QTest::newRow("a size of a pixel font") << R"({"family":"A","size":-1})"
                                            << "A" << 50 << false << false;
    QTest::newRow("a size out of range") << R"({"family":"A","size":1e300})"
                                         << "A" << 50 << false << false;
}

// None of these may make QFont complain.
void tst_FieldValues::aFontIsReadLeniently()
{
    QFETCH(QString, text);
    for (const QFont &font : {Utils::fieldFontFromString(text, nullptr),
                              Utils::fieldValueFromString(FieldTypeFont, text).value<QFont>()}) {
        QTEST(font.family(), "family");
        QTEST(font.weight(), "weight");
        QTEST(font.style() == QFont::StyleItalic, "italic");
        QTEST(font.underline(), "underline");
        if (text.contains("12"_s))
            QCOMPARE(font.pointSize(), 12);
    }
    bool ok = true;
    Utils::fieldFontFromString(text, &ok);
    QVERIFY(!ok);
}

void tst_FieldValues::aSizeIsReadFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("width and height") << "100x50" << QSizeF(100, 50);
    QTest::newRow("zero") << "0x0" << QSizeF(0, 0);
    QTest::newRow("fractions and exponents") << "0.5x1e2" << QSizeF(0.5, 100);
    for (const char *bad :
         {"", "x", "100", "100x", "x50", "1x2x3", "100X50", "-1x5", "5x-1", "axb", "1,5x2", "nanx5", "5xinf"})
        QTest::newRow(qPrintable("not \"%1\""_s.arg(QLatin1String(bad)))) << bad << QSizeF(-1, -1);
}

void tst_FieldValues::aSizeIsReadFromText()
{
    QFETCH(QString, text);
    QFETCH(QSizeF, size);
    QSizeF read(7, 7);
    QCOMPARE(Utils::convertStringTo(text, read), size.width() >= 0);
    QCOMPARE(read, size);
}

void tst_FieldValues::fontFamilies()
{
    for (const char *family : {"Roboto", "Roboto Black", "roboto light", "ROBOTO medium", "Roboto Thin"})
        QVERIFY2(Utils::fontFamilyIsValid(QLatin1String(family)), family);
    for (const char *family : {"", "Arial", "Roboto ", "Roboto Bold", "Roboto  Thin"})
        QVERIFY2(!Utils::fontFamilyIsValid(QLatin1String(family)), family);
    const QFont font = Utils::defaultFont();
    QCOMPARE(Utils::fieldFontToString(font),
             R"({"bold":false,"family":"Roboto","size":10,"style":"normal","underline":false})"_s);
    QCOMPARE(font.weight(), 50);
    QVERIFY(Utils::fontFamilyIsValid(font.family()));
}

void tst_FieldValues::boundsOfIntegers_data()
{
    QTest::addColumn<QVariant>("minimum");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("maximum");
    QTest::addColumn<int>("bounded");

    QTest::newRow("inside") << QVariant(0) << QVariant(50) << QVariant(100) << 50;
    QTest::newRow("below") << QVariant(0) << QVariant(-1) << QVariant(100) << 0;
    QTest::newRow("above") << QVariant(0) << QVariant(150) << QVariant(100) << 100;
    QTest::newRow("no minimum") << none << QVariant(-150) << QVariant(100) << -150;
    QTest::newRow("no maximum") << QVariant(0) << QVariant(150) << none << 150;
    QTest::newRow("a number as text") << none << text("7") << none << 7;
    QTest::newRow("a double is rounded") << none << QVariant(2.7) << none << 3;
    QTest::newRow("a bool is a number") << none << QVariant(true) << none << 1;
    QTest::newRow("no number counts as zero") << QVariant(-5) << text("abc") << QVariant(5) << 0;
    QTest::newRow("no number is bounded as zero") << QVariant(10) << text("abc") << QVariant(100) << 10;
    QTest::newRow("no value counts as zero") << QVariant(10) << none << none << 10;
    QTest::newRow("not a number counts as zero") << QVariant(-5) << QVariant(notANumber) << QVariant(5) << 0;
    QTest::newRow("not a number is bounded as zero")
        << QVariant(10) << QVariant(notANumber) << QVariant(100) << 10;
    QTest::newRow("a huge number takes the maximum")
        << QVariant(0) << QVariant(1e300) << QVariant(100) << 100;
    QTest::newRow("a huge negative one the minimum") << QVariant(0) << QVariant(-1e300) << QVariant(100) << 0;
    QTest::newRow("infinity takes the maximum") << QVariant(0) << QVariant(infinite) << QVariant(100) << 100;
    QTest::newRow("a huge number without maximum") << none << QVariant(1e300) << none << INT_MAX;
    QTest::newRow("one more than fits") << none << QVariant(2147483648.0) << none << INT_MAX;
    QTest::newRow("one less than fits") << none << QVariant(-2147483649.0) << none << INT_MIN;
    QTest::newRow("a long number") << none << QVariant(4294967297LL) << none << INT_MAX;
    QTest::newRow("an unsigned number") << none << QVariant(4294967295U) << none << INT_MAX;
    QTest::newRow("a huge number as text") << QVariant(0) << text("99999999999") << QVariant(100) << 100;
    QTest::newRow("a text beyond 64 bits") << none << text("99999999999999999999") << none << INT_MAX;
    QTest::newRow("a text beyond 64 bits, with a sign")
        << none << text(" +99999999999999999999 ") << none << INT_MAX;
    QTest::newRow("a negative text beyond 64 bits")
        << none << text("-99999999999999999999") << none << INT_MIN;
    QTest::newRow("a text with a letter behind 20 digits")
        << QVariant(1) << text("99999999999999999999x") << none << 1;
    QTest::newRow("a sign alone") << QVariant(-1) << text("-") << none << 0;
    QTest::newRow("a float") << none << QVariant(-2.5F) << none << -2;
    QTest::newRow("bytes") << none << QVariant(QByteArray("12")) << none << 12;
    QTest::newRow("a long") << none << QVariant::fromValue(-5000000000L) << none << INT_MIN;
    QTest::newRow("an unsigned long") << none << QVariant::fromValue(5000000000UL) << none << INT_MAX;
    QTest::newRow("the largest unsigned number") << none << QVariant(~0ULL) << none << INT_MAX;
    QTest::newRow("the largest integer, unsigned") << none << QVariant(2147483647ULL) << none << INT_MAX;
    QTest::newRow("a small unsigned number") << none << QVariant(7ULL) << none << 7;
    QTest::newRow("minimum above maximum") << QVariant(10) << QVariant(5) << QVariant(0) << 0;
    QTest::newRow("bounds that are no numbers are zero") << text("abc") << QVariant(-5) << none << 0;
    QTest::newRow("a maximum that is not a number is zero")
        << none << QVariant(5) << QVariant(notANumber) << 0;
    QTest::newRow("a huge bound saturates") << none << QVariant(5) << QVariant(1e300) << 5;
}

void tst_FieldValues::boundsOfIntegers()
{
    QFETCH(QVariant, minimum);
    QFETCH(QVariant, value);
    QFETCH(QVariant, maximum);
    QFETCH(int, bounded);
    koraBound<int>(minimum, value, maximum);
    COMPARE_VARIANTS(value, QVariant(bounded));
}

void tst_FieldValues::boundsOfDoubles_data()
{
    QTest::addColumn<QVariant>("minimum");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("maximum");
    QTest::addColumn<double>("bounded");

    QTest::newRow("an integer becomes a double") << none << QVariant(7) << none << 7.0;
    QTest::newRow("inside") << QVariant(0) << QVariant(0.25) << QVariant(1) << 0.25;
    QTest::newRow("below") << QVariant(0.5) << QVariant(0.25) << QVariant(1) << 0.5;
    QTest::newRow("above") << QVariant(0) << text("1.5") << QVariant(1.25) << 1.25;
    QTest::newRow("infinity takes the maximum")
        << QVariant(0) << QVariant(infinite) << QVariant(100) << 100.0;
    QTest::newRow("a text beyond the range takes the maximum")
        << QVariant(0) << text("3e320") << QVariant(100) << 100.0;
    QTest::newRow("a text below the range takes the minimum")
        << QVariant(0) << text("-3e320") << QVariant(100) << 0.0;
    QTest::newRow("a bound beyond the range does not bind") << none << QVariant(7) << text("3e320") << 7.0;
    QTest::newRow("a huge number stays") << none << QVariant(1e300) << none << 1e300;
    QTest::newRow("no number counts as zero") << none << text("abc") << none << 0.0;
    QTest::newRow("not a number is zero") << none << QVariant(notANumber) << none << 0.0;
    QTest::newRow("not a number is bounded as zero")
        << QVariant(10) << QVariant(notANumber) << QVariant(100) << 10.0;
    QTest::newRow("not a number as text too") << QVariant(10) << text("nan") << QVariant(100) << 10.0;
    QTest::newRow("a minimum that is not a number is zero")
        << QVariant(notANumber) << QVariant(-5) << none << 0.0;
    QTest::newRow("a maximum that is not a number is zero")
        << none << QVariant(5) << QVariant(notANumber) << 0.0;
    QTest::newRow("minimum above maximum") << QVariant(10) << QVariant(5) << QVariant(0) << 0.0;
}

void tst_FieldValues::boundsOfDoubles()
{
    QFETCH(QVariant, minimum);
    QFETCH(QVariant, value);
    QFETCH(QVariant, maximum);
    QFETCH(double, bounded);
    koraBound<double>(minimum, value, maximum);
    COMPARE_VARIANTS(value, QVariant(bounded));
}

void tst_FieldValues::aValueIsCheckedBeforeItIsSet_data()
{
    QTest::addColumn<QString>("id"); // of a field; the type is what follows the blank
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("checked");

    QTest::newRow("an integer above its maximum") << "i" << 4 << QVariant(150) << QVariant(100);
    QTest::newRow("an integer that is no number") << "i" << 4 << text("abc") << QVariant(10);
    QTest::newRow("a double below its minimum") << "d" << 5 << QVariant(-7) << QVariant(-0.5);
    QTest::newRow("a double without bounds") << "free" << 5 << QVariant(7) << QVariant(7.0);
    QTest::newRow("another type is left alone") << "s" << 1 << QVariant(150) << QVariant(150);
    QTest::newRow("an option is left alone") << "i" << 7 << QVariant(150) << QVariant(150);
    QTest::newRow("an unknown field is left alone") << "nothing" << 4 << text("abc") << text("abc");
}

void tst_FieldValues::aValueIsCheckedBeforeItIsSet()
{
    QFETCH(QString, id);
    QFETCH(int, type);
    QFETCH(QVariant, value);
    QFETCH(QVariant, checked);
    const QJsonArray fields = {MetaData::field("integer"_s, "{'id': 'i', 'minimum': 10, 'maximum': 100}"_s),
                               MetaData::field("double"_s, "{'id': 'd', 'minimum': -0.5}"_s),
                               MetaData::field("double"_s, "{'id': 'free'}"_s),
                               MetaData::field("string"_s, "{'id': 's'}"_s)};
    WidgetMetaInformation widget;
    QList<TranslationStringType> translations;
    QCOMPARE(Utils::infoFromMetaDataParseWidget(MetaData::widget(QString(), fields), widget,
                                                MetaData::pluginId, "en-US"_s, translations),
             0);
    COMPARE_VARIANTS(Utils::fieldValueCheckBeforeSet(type, value, id, widget), checked);
    COMPARE_VARIANTS(Utils::fieldValueCheckBeforeSet(type, value, id, WidgetMetaInformation()), value);
}

void tst_FieldValues::aValueIsConvertedToTheField_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<QVariant>("converted"); // of no interest where it does not

    const auto fails = [](const char *row, int type, const QVariant &value) {
        QTest::newRow(row) << type << value << false << none;
    };
    const QVariant map = QVariant::fromValue(StringMap{{1, "a"_s}});
    QTest::newRow("a number to a string") << 1 << QVariant(5) << true << text("5");
    QTest::newRow("a string to a string list") << 2 << text("a") << true << QVariant(QStringList("a"_s));
    QTest::newRow("a string map stays") << 3 << map << true << map;
    QTest::newRow("text to an integer") << 4 << text("-7") << true << QVariant(-7);
    QTest::newRow("a bool to an integer") << 4 << QVariant(true) << true << QVariant(1);
    QTest::newRow("the largest integer") << 4 << QVariant(2147483647.0) << true << QVariant(INT_MAX);
    QTest::newRow("the smallest integer") << 4 << text("-2147483648") << true << QVariant(INT_MIN);
    QTest::newRow("text to a double") << 5 << text("1.5") << true << QVariant(1.5);
    QTest::newRow("a huge double") << 5 << QVariant(1e300) << true << QVariant(1e300);
    QTest::newRow("a number to a bool") << 6 << QVariant(1) << true << QVariant(true);
    QTest::newRow("text to an option") << 7 << text("2") << true << QVariant(2);
    QTest::newRow("text to a color") << 8 << text("#102030") << true << QVariant(QColor(16, 32, 48));
    QTest::newRow("a font stays") << 9 << font("Roboto", 10, 75) << true << font("Roboto", 10, 75);
    QTest::newRow("the family of a font") << 9 << text("Roboto") << true << QVariant(QFont("Roboto"_s));
    QTest::newRow("the family and size of a font")
        << 9 << text("Roboto,7") << true << QVariant(QFont("Roboto"_s, 7));
    for (const QString &description : {"Roboto,7,5,75,0,1,0,0,0"_s, "Roboto,7,-1,5,75,0,1,0,0,0"_s,
                                       "Roboto,7,-1,5,75,0,1,0,0,0,Regular"_s}) {
        QFont bold("Roboto"_s, 7, QFont::Bold);
        bold.setUnderline(true);
        if (description.endsWith("Regular"_s))
            bold.setStyleName("Regular"_s);
        QTest::newRow(qPrintable(description)) << 9 << QVariant(description) << true << QVariant(bold);
    }
    QTest::newRow("no image stays none") << 10 << none << true << none;
    QTest::newRow("a number to an image") << 10 << QVariant(5) << true << text("5");
    QTest::newRow("anything for a tag") << 11 << QVariant(5) << true << QVariant(5);
    QTest::newRow("anything for a trend") << 12 << none << true << none;

    fails("a color is no string list", 2, QColor(Qt::red));
    fails("text is no string map", 3, text("x"));
    fails("no value is no string map", 3, none);
    for (const int type : {4, 7}) {
        const auto row = [type](const char *what) {
            return "%1 is no %2"_s.arg(QLatin1String(what), type == 4 ? "integer"_s : "option"_s);
        };
        fails(qPrintable(row("text")), type, text("abc"));
        fails(qPrintable(row("text of a fraction")), type, text("1.5"));
        fails(qPrintable(row("text of a number that wraps")), type, text("99999999999"));
        fails(qPrintable(row("a long number")), type, QVariant(4294967297LL));
        fails(qPrintable(row("one more than the largest")), type, QVariant(2147483648.0));
        fails(qPrintable(row("one less than the smallest")), type, QVariant(-2147483649.0));
        fails(qPrintable(row("an unsigned number")), type, QVariant(2147483648U));
        fails(qPrintable(row("a long unsigned number")), type, QVariant(2147483648ULL));
        fails(qPrintable(row("a huge number")), type, QVariant(1e300));
        fails(qPrintable(row("infinity")), type, QVariant(-infinite));
        fails(qPrintable(row("not a number")), type, QVariant(notANumber));
    }
    fails("text is no double", 5, text("abc"));
    fails("a list is no bool", 6, QVariantList{1});
    fails("a list is no color", 8, QVariantList{1});
    fails("a number is no font", 9, 5);
    // Qt would print that it does not know the form.
    for (const char *description : {"", "a,1,2", "a,7,-1,5,75,0,1,0", "a,7,-1,5,75,0,1,0,0,0,Regular,more"})
        fails(qPrintable("no font: "_s + QLatin1String(description)), 9, text(description));
    fails("a list is no image", 10, QVariantList{1});
    fails("nothing for an undefined field", 0, text("x"));
}

void tst_FieldValues::aValueIsConvertedToTheField()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    QFETCH(bool, converts);
    QFETCH(QVariant, converted);
    const FieldInfo info(true, true, false, FieldType(type), QMetaType::UnknownType);
    QCOMPARE(info.convertToFieldType(value), converts);
    if (converts)
        COMPARE_VARIANTS(value, converted);
}

void tst_FieldValues::additionalInformationIsConvertedToItsOwnType()
{
    const FieldInfo info(false, true, true, FieldTypeInteger, QMetaType::QFont);
    QVariant value = font("Roboto", 10, 75);
    QVERIFY(info.convertToFieldType(value));
    COMPARE_VARIANTS(value, font("Roboto", 10, 75));
    value = 5;
    QVERIFY(!info.convertToFieldType(value));

    const FieldInfo undefined;
    QVERIFY(!undefined.setFieldValueIsEnabled() && !undefined.getFieldValueIsEnabled()
            && !undefined.isAdditionalInformation());
    QCOMPARE(undefined.fieldType(), FieldTypeUndefined);
    QCOMPARE(undefined.metaType(), int(QMetaType::UnknownType));
}

// Nothing of the library was called before: the comparison is registered when it is loaded.
void tst_FieldValues::stringMapsCompareByContent()
{
    const auto map = [](const QString &text) { return QVariant::fromValue(StringMap{{1, text}}); };
    QVERIFY(map("a"_s) == map("a"_s));
    QVERIFY(map("a"_s) != map("b"_s));
}

KORA_TEST_MAIN(tst_FieldValues)

#include "tst_fieldvalues.moc"
