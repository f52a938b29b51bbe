// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include <support/testmain.h>

#include <QtTest/QtTest>

using namespace KORA::INTERNAL;
using MetaData::parseWidget;
using Info = WidgetLibraryPluginMetaInformation;
using Utils = WidgetLibraryPluginUtils;
using StringMap = QMap<int, QString>;

namespace {

const auto english = "en-US"_s;

/// The texts of the groups, in one language.
QString names(const QList<TranslationStringType> &groups)
{
    return MetaData::notation(groups);
}

} // namespace

class tst_WidgetModel : public QObject
{
    Q_OBJECT

private slots:
    void typesHaveNames();
    void aFieldHoldsWhatItIsMadeOf();
    void theLatestVersionIsByNumber();
    void fieldAccessByType_data();
    void fieldAccessByType();
    void translatableTextsStandInOrder();
    void galleryGroupsComeFromTheLatestVersions();
    void clearingKeepsTheGalleryGroups();
};

void tst_WidgetModel::typesHaveNames()
{
    const QStringList fieldTypes =
        "undefined string stringList stringMap integer double bool option color font image tag trend"_s.split(
            QLatin1Char(' '));
    for (int type = 0; type < fieldTypes.size(); ++type) {
        QCOMPARE(Info::fieldTypeToString(FieldType(type)), fieldTypes[type]);
        QCOMPARE(int(Info::fieldTypeFromString(fieldTypes[type])), type);
        QCOMPARE(int(Info::fieldTypeFromString(fieldTypes[type].toUpper())), type);
        QCOMPARE(Info::fieldTypeCanBeUsedInARequirementsExpression(FieldType(type)), type >= 4 && type <= 7);
    }
    const QStringList tagTypes =
        " bool byte short int ubyte ushort uint uint64 int64 float double string arraybool arraybyte "
        "arrayshort arrayint arrayubyte arrayushort arrayuint arrayuint64 arrayint64 arrayfloat "
        "arraydouble"_s.split(QLatin1Char(' '));
    QCOMPARE(tagTypes.size(), 24);
    for (int type = 0; type < tagTypes.size(); ++type) {
        QCOMPARE(Info::tagTypeToString(TagType(type)), tagTypes[type]);
        QCOMPARE(int(Info::tagTypeFromString(tagTypes[type])), type);
        // Unlike field types, tag types are compared with case.
        QCOMPARE(int(Info::tagTypeFromString(tagTypes[type].toUpper())), 0);
    }
    for (const int unknown : {-1, 13})
        QCOMPARE(Info::fieldTypeToString(FieldType(unknown)), QString());
    for (const int unknown : {-1, 24})
        QCOMPARE(Info::tagTypeToString(TagType(unknown)), QString());
    QCOMPARE(int(Info::fieldTypeFromString("string "_s)), 0);
    QCOMPARE(int(Info::fieldTypeFromString(QString())), 0);
}

void tst_WidgetModel::aFieldHoldsWhatItIsMadeOf()
{
    const auto text = [](const char *word) {
        TranslationStringType text;
        text.set(english, QLatin1String(word));
        return text;
    };
    const FieldMetaInformation field("speed"_s, text("Speed"), text("How fast"), FieldTypeInteger, true,
                                     QVariant(7), true, text("Motor"), true, "on==true"_s, true);
    QVERIFY(field.isValid() && field.tagCanBeAttached() && field.readOnly() && field.isPrivate());
    QCOMPARE(field.id(), "speed"_s);
    QCOMPARE(field.type(), FieldTypeInteger);
    QCOMPARE(field.defaultValue(), QVariant(7));
    QCOMPARE(field.requirements(), "on==true"_s);
    QCOMPARE(names({field.display(), field.description(), field.group()}),
             names({text("Speed"), text("How fast"), text("Motor")}));
    const FieldMetaInformation other("b"_s, {}, {}, FieldTypeBool, false, {}, false, {}, false, {}, false);
    QVERIFY(!other.isValid() && !other.tagCanBeAttached() && !other.readOnly() && !other.isPrivate());
}

void tst_WidgetModel::theLatestVersionIsByNumber()
{
    const QJsonArray widgets = {MetaData::widget("{'version': '1.10.0'}"_s),
                                MetaData::widget("{'version': '1.9.0'}"_s),
                                MetaData::widget("{'id': 'a', 'version': '0.0.1'}"_s)};
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(widgets), info), 0);
    QCOMPARE(info.widgets().size(), 3);
    const QMap<QString, WidgetMetaInformation> latest = info.widgetsLatestVersion();
    QCOMPARE(latest.keys().join(QLatin1Char(',')), "a,gauge"_s);
    QCOMPARE(latest.value("gauge"_s).version().version(), "1.10.0"_s);
}

void tst_WidgetModel::fieldAccessByType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("multiLanguage");
    QTest::addColumn<bool>("hasFont");

    for (int type = FieldTypeString; type <= FieldTypeTrend; ++type) {
        const QString name = Info::fieldTypeToString(FieldType(type));
        QTest::newRow(qPrintable(name)) << name << false << false;
        if (type <= FieldTypeStringMap)
            QTest::newRow(qPrintable("multi-language "_s + name)) << name << true << true;
    }
}

void tst_WidgetModel::fieldAccessByType()
{
    QFETCH(QString, type);
    QFETCH(bool, multiLanguage);
    QFETCH(bool, hasFont);
    const QString patch = "{'multiLanguage': true, %1}"_s.arg(MetaData::fontLabels);
    WidgetMetaInformation widget;
    QCOMPARE(
        parseWidget(MetaData::widget(QString(), {MetaData::field(type, multiLanguage ? patch : QString())}),
                    widget),
        0);
    const QMap<QString, FieldInfo> table = widget.fieldInfo();
    QCOMPARE(table.keys().join(QLatin1Char(',')), hasFont ? "f,f.font"_s : "f"_s);
    const FieldInfo info = table.value("f"_s);
    QCOMPARE(info.setFieldValueIsEnabled(), !hasFont);
    QVERIFY(info.getFieldValueIsEnabled() && !info.isAdditionalInformation());
    QCOMPARE(info.fieldType(), Info::fieldTypeFromString(type));
    QCOMPARE(info.metaType(), int(QMetaType::UnknownType));
    if (!hasFont)
        return;
    const FieldInfo font = table.value("f.font"_s);
    QVERIFY(!font.setFieldValueIsEnabled() && font.getFieldValueIsEnabled()
            && font.isAdditionalInformation());
    QCOMPARE(font.fieldType(), info.fieldType());
    QCOMPARE(font.metaType(), int(QMetaType::QFont));
}

void tst_WidgetModel::translatableTextsStandInOrder()
{
    const QJsonArray widgets = {
        MetaData::widget("{'id': 'b', 'display': 'B', 'description': 'Plant'}"_s),
        MetaData::widget(
            "{'id': 'a', 'display': ['A', 'note'], 'description': 'D', 'galleryGroupName': 'G'}"_s,
            {MetaData::field("option"_s, "{'id': 'z', 'display': 'A'}"_s),
             MetaData::field("string"_s,
                             "{'id': 'y', 'display': 'Y', 'description': 'YD', 'group': 'YG',"
                             " 'multiLanguage': true, 'defaultValue': 'YV', %1}"_s.arg(MetaData::fontLabels)),
             MetaData::field("string"_s, "{'defaultValue': 'not translated'}"_s)})};
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(widgets), info), 0);
    QCOMPARE(MetaData::notation(info.translatableStrings(english)).remove("en-US="_s),
             "Plant\nA | note\nD\nG\nF\nY\nYD\nYG\nFamily\nSize\nBold\nStyle\nUnderline\nYV\n"
             "A\nOff\nOn\nB"_s);
    QCOMPARE(info.translatableStrings("it-IT"_s), QList<TranslationStringType>());
}

void tst_WidgetModel::galleryGroupsComeFromTheLatestVersions()
{
    const auto parse = [](Info &info, const QString &changes) {
        QJsonArray widgets;
        for (const QJsonValue &change : MetaData::json(changes).toArray()) {
            const QByteArray patch = QJsonDocument(change.toObject()).toJson();
            widgets << MetaData::widget(QString::fromUtf8(patch));
        }
        return Utils::metaInformationFromMetaData(MetaData::plugin(widgets), info);
    };
    Info info;
    QCOMPARE(
        parse(info,
              "[{'id': 'd', 'galleryGroupName': 'Old', 'showInPageGallery': true},"
              " {'id': 'd', 'version': '1.10.0', 'galleryGroupName': 'Tanks', 'showInPageGallery': true},"
              " {'id': 'd', 'version': '1.9.0', 'galleryGroupName': 'Older', 'showInPageGallery': true},"
              " {'id': 'c', 'galleryGroupName': ['Tanks', 'other'], 'showInPageGallery': true},"
              " {'id': 'b', 'galleryGroupName': 'Pumps', 'showInPageGallery': true, "
              "'showInProjectGallery': true},"
              " {'id': 'a', 'galleryGroupName': 'Tanks', 'showInPageGallery': true},"
              " {'id': 'e', 'galleryGroupName': 'Hidden'},"
              " {'id': 'f'},"
              " {'id': 'g', 'galleryGroupName': '', 'showInProjectGallery': true}]"_s),
        0);
    QCOMPARE(names(info.pageWidgetsGalleryGroups()), "en-US=Tanks\nen-US=Pumps\nen-US=Tanks | other"_s);
    QCOMPARE(names(info.projectWidgetsGalleryGroups()), "en-US=Pumps"_s);
    QVERIFY(!info.pageWidgetsDefaultGalleryGroupIsUsed());
    QVERIFY(info.projectWidgetsDefaultGalleryGroupIsUsed());

    Info other;
    QCOMPARE(parse(other, "[{'id': 'a', 'showInPageGallery': true}]"_s), 0);
    QCOMPARE(names(other.pageWidgetsGalleryGroups()) + names(other.projectWidgetsGalleryGroups()), QString());
    QVERIFY(other.pageWidgetsDefaultGalleryGroupIsUsed());
    QVERIFY(!other.projectWidgetsDefaultGalleryGroupIsUsed());
}

void tst_WidgetModel::clearingKeepsTheGalleryGroups()
{
    const QJsonArray widgets = {
        MetaData::widget("{'galleryGroupName': 'Page', 'showInPageGallery': true}"_s),
        MetaData::widget("{'id': 'b', 'galleryGroupName': 'Project', 'showInProjectGallery': true}"_s),
        MetaData::widget("{'id': 'c', 'showInPageGallery': true, 'showInProjectGallery': true}"_s)};
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(widgets), info), 0);
    info.clear();
    QVERIFY(info.widgets().isEmpty() && info.widgetsLatestVersion().isEmpty());
    QVERIFY(info.id().isEmpty() && info.name().isEmpty() && !info.version().isValid());
    QCOMPARE(names(info.pageWidgetsGalleryGroups()), "en-US=Page"_s);
    QCOMPARE(names(info.projectWidgetsGalleryGroups()), "en-US=Project"_s);
    QVERIFY(info.pageWidgetsDefaultGalleryGroupIsUsed() && info.projectWidgetsDefaultGalleryGroupIsUsed());

    // Read anew, nothing of the former library is left.
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(QJsonArray()), info), 0);
    QCOMPARE(names(info.pageWidgetsGalleryGroups()) + names(info.projectWidgetsGalleryGroups()), QString());
    QVERIFY(!info.pageWidgetsDefaultGalleryGroupIsUsed() && !info.projectWidgetsDefaultGalleryGroupIsUsed());
}

KORA_TEST_MAIN(tst_WidgetModel)

#include "tst_widgetmodel.moc"
