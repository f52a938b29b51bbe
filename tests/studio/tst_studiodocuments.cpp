// SPDX-License-Identifier: Apache-2.0
#include <studio/golden.h>
#include <support/testmain.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/core/widgetmetainformation_p.h>

#include <functional>

using namespace KORA::INTERNAL;
using Meta = WidgetLibraryPluginMetaInformation;
using Utils = WidgetLibraryPluginUtils;

Q_DECLARE_METATYPE(KORA::INTERNAL::TranslationStringType)

namespace {

const QString english = QStringLiteral("en-US");

Meta metaFrom(const QJsonObject &metaData)
{
    Meta meta;
    const int error = Utils::metaInformationFromMetaData({{QStringLiteral("MetaData"), metaData}}, meta);
    if (error != 0) {
        qFatal("test metadata refused: %s", qPrintable(Utils::errorToString(error)));
    }
    return meta;
}

Meta meters()
{
    QFile file(QStringLiteral(":/meters.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no test metadata");
    }
    return metaFrom(QJsonDocument::fromJson(file.readAll()).object());
}

QJsonObject widget(const char *id, const QJsonObject &keys)
{
    QJsonObject object = keys;
    object.insert(QStringLiteral("id"), QLatin1String(id));
    object.insert(QStringLiteral("version"), QStringLiteral("1.0.0"));
    return object;
}

Meta library(const QJsonArray &widgets, const QString &language = english)
{
    return metaFrom({
        {QStringLiteral("id"), QStringLiteral("c7e1a7a8-52c1-4a0e-8a53-0d6f7c1f9e11")},
        {QStringLiteral("name"), QStringLiteral("Library")},
        {QStringLiteral("author"), QStringLiteral("Author")},
        {QStringLiteral("version"), QStringLiteral("1.0.0")},
        {QStringLiteral("defaultLanguage"), language},
        {QStringLiteral("widgets"), widgets},
    });
}

QByteArray documentOf(const std::function<int(QXmlStreamWriter &)> &generator)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    if (generator(writer) != 0 || writer.hasError()) {
        qFatal("the document was not written");
    }
    return bytes;
}

QByteArray properties(const Meta &meta, const QString &language)
{
    return documentOf([&](QXmlStreamWriter &writer) {
        writer.writeStartElement(QStringLiteral("defs"));
        const int error = Utils::studioPropertiesFromMetaInformation(meta, writer, language);
        writer.writeEndElement();
        return error;
    });
}

QByteArray defaults(const Meta &meta, const QString &language)
{
    return documentOf([&](QXmlStreamWriter &writer) {
        return Utils::studioDefaultsFromMetaInformation(meta, writer, language, QStringLiteral("page_%1"),
                                                        QStringLiteral("project_%1"));
    });
}

QByteArray gallery(const Meta &meta, const QString &language, const TranslationStringType &group,
                   Utils::GalleryType type)
{
    return documentOf([&](QXmlStreamWriter &writer) {
        return Utils::studioGalleryFromMetaInformation(meta, writer, language, group, type);
    });
}

// The values of an attribute of all elements of that name, in document order.
QStringList valuesIn(const QByteArray &document, const char *element, const char *attribute)
{
    QStringList values;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String(element)
            && reader.attributes().hasAttribute(QLatin1String(attribute))) {
            values.append(reader.attributes().value(QLatin1String(attribute)).toString());
        }
    }
    if (reader.hasError()) {
        qFatal("not well-formed: %s", qPrintable(reader.errorString()));
    }
    return values;
}

} // namespace

class StudioDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsEqualTheReferences_data();
    void documentsEqualTheReferences();
    void defaultGroupBesideAnEqualGroup_data();
    void defaultGroupBesideAnEqualGroup();
    void everyTextLinkNamesOneText();
    void widgetWithPrivateFieldsOnly();
    void fieldWithoutType();
    void unknownGalleryType();
    void charactersThatXmlCannotHold_data();
    void charactersThatXmlCannotHold();
};

void StudioDocumentsTest::documentsEqualTheReferences_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("document");

    const Meta meta = meters();
    const TranslationStringType round = meta.pageWidgetsGalleryGroups().value(0);
    const auto add = [](const char *name, const QByteArray &document) {
        QTest::newRow(name) << QLatin1String("meters/") + QLatin1String(name) << document;
    };
    add("en-US/studio_properties.xml", properties(meta, english));
    add("it-IT/studio_properties.xml", properties(meta, QStringLiteral("it-IT")));
    add("en-US/studio_defaults.krx", defaults(meta, english));
    add("de-DE/studio_defaults.krx", defaults(meta, QStringLiteral("de-DE")));
    add("en-US/gallery_round.krx", gallery(meta, english, round, Utils::PageGallery));
    add("de-DE/gallery_round.krx", gallery(meta, QStringLiteral("de-DE"), round, Utils::PageGallery));
    add("en-US/project_gallery_round.krx", gallery(meta, english, round, Utils::ProjectGallery));
    add("en-US/gallery_default_group.krx", gallery(meta, english, {}, Utils::PageGallery));

    const Meta empty = library({});
    add("empty/studio_properties.xml", properties(empty, english));
    add("empty/studio_defaults.krx", defaults(empty, english));
    add("empty/gallery.krx", gallery(empty, english, {}, Utils::PageGallery));
}

void StudioDocumentsTest::documentsEqualTheReferences()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, document);
    const QString difference = differenceFromGolden(name, document);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void StudioDocumentsTest::defaultGroupBesideAnEqualGroup_data()
{
    QTest::addColumn<QString>("libraryLanguage");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QStringList>("pages");
    QTest::addColumn<QStringList>("widgetsOfEach");

    const QString pageZero = QStringLiteral("Basic:page_0");
    QTest::newRow("only the default group")
        << english << QString() << QStringList{pageZero} << QStringList{QStringLiteral("named unnamed")};
    QTest::newRow("beside another group")
        << english << QStringLiteral("Round") << QStringList{pageZero, QStringLiteral("Round:page_1")}
        << QStringList{QStringLiteral("unnamed"), QStringLiteral("named")};
    QTest::newRow("beside an equal group: one page, which holds the widgets of both")
        << english << QStringLiteral("Basic") << QStringList{QStringLiteral("Basic:page_1")}
        << QStringList{QStringLiteral("named unnamed")};
    QTest::newRow("beside a group of the same words in another language: two pages")
        << QStringLiteral("fr-FR") << QStringLiteral("Basic")
        << QStringList{pageZero, QStringLiteral("Basic:page_1")}
        << QStringList{QStringLiteral("unnamed"), QStringLiteral("named")};
}

// Each page's file, found by its number, holds the widgets of the page's group.
void StudioDocumentsTest::defaultGroupBesideAnEqualGroup()
{
    QFETCH(const QString, libraryLanguage);
    QFETCH(const QString, group);
    QFETCH(const QStringList, pages);
    QFETCH(const QStringList, widgetsOfEach);

    const QJsonObject shown{{QStringLiteral("showInPageGallery"), true}};
    QJsonObject inGroup = shown;
    inGroup.insert(QStringLiteral("galleryGroupName"), group);
    const Meta meta = library({widget("named", inGroup), widget("unnamed", shown)}, libraryLanguage);

    const QByteArray document = defaults(meta, english);
    const QStringList names = valuesIn(document, "page", "displayName");
    const QStringList files = valuesIn(document, "page", "file");
    QStringList actualPages;
    QStringList actualWidgets;
    for (int i = 0; i < files.size(); ++i) {
        actualPages.append(names.at(i) + QLatin1Char(':') + files.at(i));
        const int file = files.at(i).mid(int(qstrlen("page_"))).toInt();
        QList<TranslationStringType> fileGroups = meta.pageWidgetsGalleryGroups();
        fileGroups.prepend({});
        const QByteArray page = gallery(meta, english, fileGroups.value(file), Utils::PageGallery);
        actualWidgets.append(valuesIn(page, "item", "id").join(QLatin1Char(' ')));
    }
    QCOMPARE(actualPages, pages);
    QCOMPARE(actualWidgets, widgetsOfEach);
}

void StudioDocumentsTest::everyTextLinkNamesOneText()
{
    const Meta meta = meters();
    const QByteArray document =
        gallery(meta, english, meta.pageWidgetsGalleryGroups().value(0), Utils::PageGallery);
    const QStringList ids = valuesIn(document, "MLText", "id");
    const QStringList links = valuesIn(document, "textid", "val");
    QCOMPARE(QSet<QString>(ids.cbegin(), ids.cend()).size(), ids.size());
    QCOMPARE(links, ids);
}

void StudioDocumentsTest::widgetWithPrivateFieldsOnly()
{
    const QJsonObject field{
        {QStringLiteral("id"), QStringLiteral("secret")},
        {QStringLiteral("type"), QStringLiteral("bool")},
        {QStringLiteral("display"), QStringLiteral("Secret")},
        {QStringLiteral("private"), true},
    };
    const Meta meta = library({widget("w", {{QStringLiteral("fields"), QJsonArray{field}}})});
    const QStringList names = valuesIn(properties(meta, english), "text", "attributeName");
    QCOMPARE(names.size(), 7);
    QCOMPARE(names.last(), QStringLiteral("onDataUpdate"));
    QVERIFY(!names.contains(QStringLiteral("secret")));
}

// No metadata can say so; a host that fills the records itself can.
void StudioDocumentsTest::fieldWithoutType()
{
    WidgetMetaInformationPrivate data;
    data.id = QStringLiteral("w");
    data.fields.insert(QStringLiteral("f"), FieldMetaInformation());
    Meta meta;
    meta.init({{{data.id, QString()}, WidgetMetaInformation(data)}});
    QByteArray document;
    QXmlStreamWriter writer(&document);
    const int error = Utils::studioPropertiesFromMetaInformation(meta, writer, english);
    QCOMPARE(Utils::errorToString(error),
             QStringLiteral("MetaData/widgets/fields/type attribute is not valid"));
    QVERIFY(document.contains("krpluginWidgetVersion"));
    QVERIFY(!document.contains("onDataUpdate"));
    QVERIFY(!document.contains("</g>"));
}

void StudioDocumentsTest::unknownGalleryType()
{
    QByteArray document;
    QXmlStreamWriter writer(&document);
    const int error = Utils::studioGalleryFromMetaInformation(meters(), writer, english, {},
                                                              static_cast<Utils::GalleryType>(2));
    QCOMPARE(Utils::errorToString(error),
             QStringLiteral("MetaData/widgets/showInProjectGallery attribute is not valid"));
    QVERIFY(document.isEmpty());
}

void StudioDocumentsTest::charactersThatXmlCannotHold_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("control character") << QStringLiteral("a\u0007b");
    QTest::newRow("not a character") << QString(QChar(0xffff));
    QTest::newRow("lone surrogate") << QString(QChar(0xd800));
}

// The generators leave it to the writer, which the caller asks; no text may pass unnoticed.
void StudioDocumentsTest::charactersThatXmlCannotHold()
{
    QFETCH(const QString, text);
    const QJsonObject keys{{QStringLiteral("display"), text}, {QStringLiteral("showInPageGallery"), true}};
    const Meta meta = library({widget("w", keys)});
    QByteArray document;
    QXmlStreamWriter writer(&document);
    QCOMPARE(Utils::studioGalleryFromMetaInformation(meta, writer, english, {}, Utils::PageGallery), 0);
    QVERIFY(writer.hasError());
}

KORA_TEST_MAIN(StudioDocumentsTest)

#include "tst_studiodocuments.moc"
