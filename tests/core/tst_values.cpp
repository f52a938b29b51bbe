// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/pluginmetainformation.h>
#include <kora/core/versiontype.h>

#include <support/testmain.h>

#include <QtTest/QtTest>

using namespace KORA::INTERNAL;
using MetaData::text;

/// Versions and translatable texts.
class tst_Values : public QObject
{
    Q_OBJECT

private slots:
    void aVersionIsReadFromText_data();
    void aVersionIsReadFromText();
    void versionsAreOrderedByNumber();
    void anInvalidVersionComparesAsZero();
    void aTextIsLookedUpByLanguage_data();
    void aTextIsLookedUpByLanguage();
    void textsAreEqualInAllTheirParts();
    void clearingATextKeepsItsDefaultLanguage();
    void aTranslatableTextIsCollectedOnce_data();
    void aTranslatableTextIsCollectedOnce();
};

void tst_Values::aVersionIsReadFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("version"); // empty: invalid

    QTest::newRow("three numbers") << "1.2.3"
                                   << "1.2.3";
    QTest::newRow("leading zeros go") << "01.2.0003"
                                      << "1.2.3";
    QTest::newRow("zero is valid") << "0.0.0"
                                   << "0.0.0";
    QTest::newRow("the largest number") << "999999999.0.999999999"
                                        << "999999999.0.999999999";
    QTest::newRow("one more than the largest") << "1000000000.0.0"
                                               << "";
    QTest::newRow("one more than the largest at the end") << "0.0.1000000000"
                                                          << "";
    QTest::newRow("a number that wraps to 1 in 32 bits") << "4294967297.0.0"
                                                         << "";
    QTest::newRow("no text") << ""
                             << "";
    QTest::newRow("two numbers") << "1.2"
                                 << "";
    QTest::newRow("four numbers") << "1.2.3.4"
                                  << "";
    QTest::newRow("an empty last part") << "1.2."
                                        << "";
    QTest::newRow("an empty middle part") << "1..2"
                                          << "";
    QTest::newRow("a letter") << "1.a.3"
                              << "";
    QTest::newRow("hexadecimal") << "1.0x2.3"
                                 << "";
    QTest::newRow("a negative number") << "1.-2.3"
                                       << "";
}

void tst_Values::aVersionIsReadFromText()
{
    QFETCH(QString, text);
    QFETCH(QString, version);
    const VersionType read(text);
    QCOMPARE(read.isValid(), !version.isEmpty());
    QCOMPARE(read.version(), version);
    const QStringList parts = version.split(QLatin1Char('.'));
    QCOMPARE(read.versionMajor(), parts.value(0).toUInt());
    QCOMPARE(read.versionMinor(), parts.value(1).toUInt());
    QCOMPARE(read.versionPatch(), parts.value(2).toUInt());
}

void tst_Values::versionsAreOrderedByNumber()
{
    const QVector<VersionType> ascending = {{0, 0, 1}, {0, 1, 0},  {0, 1, 1},   {1, 0, 0},
                                            {1, 9, 9}, {1, 10, 0}, {1, 99, 99}, {2, 0, 0}};
    for (int a = 0; a < ascending.size(); ++a) {
        for (int b = 0; b < ascending.size(); ++b) {
            const VersionType &left = ascending[a];
            const VersionType right(ascending[b].version());
            QCOMPARE(left == right, a == b);
            QCOMPARE(left != right, a != b);
            QCOMPARE(left < right, a < b);
            QCOMPARE(left <= right, a <= b);
            QCOMPARE(left > right, a > b);
            QCOMPARE(left >= right, a >= b);
        }
    }
}

void tst_Values::anInvalidVersionComparesAsZero()
{
    const VersionType zero(0, 0, 0);
    QVERIFY(zero.isValid());
    QVERIFY(!VersionType().isValid());
    QVERIFY(VersionType() == zero && VersionType() <= zero && VersionType() >= zero);
    QVERIFY(VersionType() < VersionType(0, 0, 1));
}

void tst_Values::aTextIsLookedUpByLanguage_data()
{
    QTest::addColumn<QString>("notation");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("strict");
    QTest::addColumn<QString>("withFallback");

    QTest::newRow("its own language") << "de-DE=Druck & en-US=Pressure"
                                      << "de-DE"
                                      << "Druck"
                                      << "Druck";
    QTest::newRow("a missing one falls back") << "en-US=Pressure"
                                              << "de-DE"
                                              << ""
                                              << "Pressure";
    QTest::newRow("an empty one does not") << "de-DE= & en-US=Pressure"
                                           << "de-DE"
                                           << ""
                                           << "";
    QTest::newRow("only the default language is a fallback") << "it-IT=Pressione"
                                                             << "de-DE"
                                                             << ""
                                                             << "";
    QTest::newRow("any text is a language") << "x y=z"
                                            << "x y"
                                            << "z"
                                            << "z";
}

void tst_Values::aTextIsLookedUpByLanguage()
{
    QFETCH(QString, notation);
    QFETCH(QString, language);
    const TranslationStringType value = text(notation);
    QTEST(value.get(language, false), "strict");
    QTEST(value.get(language, true), "withFallback");
    QCOMPARE(value.contains(language), notation.contains(language + QLatin1Char('=')));
    QCOMPARE(MetaData::notation(value), notation); // keys and texts, in ascending order
    QCOMPARE(value.keys(), value.translations().keys());
}

void tst_Values::textsAreEqualInAllTheirParts()
{
    const TranslationStringType a = text("en-US=Pressure | comment"_s);
    TranslationStringType b = a;
    QVERIFY(a == b);
    b.defaultLanguage = "de-DE"_s;
    QVERIFY(a != b);
    QVERIFY(a != text("en-US=Pressure"_s));
    QVERIFY(a != text("en-US=pressure | comment"_s));
    QVERIFY(a != text("de-DE=Druck & en-US=Pressure | comment"_s));
}

void tst_Values::clearingATextKeepsItsDefaultLanguage()
{
    TranslationStringType value;
    QCOMPARE(value.defaultLanguage, "en-US"_s);
    value.setComment("comment"_s);
    QVERIFY(value.isEmpty());
    value.set("de-DE"_s, QString());
    QVERIFY(!value.isEmpty());
    value.defaultLanguage = "de-DE"_s;
    value.clear();
    QVERIFY(value.isEmpty());
    QCOMPARE(value.comment(), QString());
    QCOMPARE(value.defaultLanguage, "de-DE"_s);
}

void tst_Values::aTranslatableTextIsCollectedOnce_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("after");

    QTest::newRow("only the working language goes in") << ""
                                                       << "de-DE=Druck & en-US=Pressure | c"
                                                       << "en-US=Pressure | c";
    QTest::newRow("the text goes in as it is") << ""
                                               << "en-US=  a  b "
                                               << "en-US=  a  b ";
    QTest::newRow("a text that is there stays single") << "en-US=a | c"
                                                       << "en-US=a | c"
                                                       << "en-US=a | c";
    QTest::newRow("another comment makes another text") << "en-US=a | c"
                                                        << "en-US=a"
                                                        << "en-US=a | c\nen-US=a";
    QTest::newRow("other blanks make another text") << "en-US=a"
                                                    << "en-US=a "
                                                    << "en-US=a\nen-US=a ";
    QTest::newRow("white space is nothing") << ""
                                            << "en-US= \t\n | c"
                                            << "";
    QTest::newRow("another language is nothing") << ""
                                                 << "de-DE=Druck"
                                                 << "";
    QTest::newRow("an entry in another language is another text") << "de-DE=a"
                                                                  << "en-US=a"
                                                                  << "de-DE=a\nen-US=a";
}

void tst_Values::aTranslatableTextIsCollectedOnce()
{
    QFETCH(QString, before);
    QFETCH(QString, added);
    QList<TranslationStringType> list = MetaData::texts(before);
    PluginMetaInformation::addTranslatableStringToList(list, text(added), "en-US"_s);
    QTEST(MetaData::notation(list), "after");

    QList<TranslationStringType> german;
    PluginMetaInformation::addTranslatableStringToList(german, text("de-DE=x"_s), "de-DE"_s);
    QCOMPARE(german.value(0).defaultLanguage, "de-DE"_s);
}

KORA_TEST_MAIN(tst_Values)

#include "tst_values.moc"
