// SPDX-License-Identifier: Apache-2.0
#include "metadatabuilder.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include <support/logrecorder.h>
#include <support/processortime.h>
#include <support/testmain.h>

#include <QtGui/QColor>
#include <QtTest/QtTest>

#include <algorithm>

using namespace KORA::INTERNAL;
using MetaData::parseField;
using MetaData::parseWidget;
using Info = WidgetLibraryPluginMetaInformation;
using Utils = WidgetLibraryPluginUtils;
using StringMap = QMap<int, QString>;

namespace {

const auto english = "en-US"_s;

QVector<int> numbers(const QVector<TagType> &types)
{
    return QVector<int>(types.begin(), types.end());
}

} // namespace

class tst_WidgetMetaData : public QObject
{
    Q_OBJECT

private slots:
    void otherCodesAreThoseOfAnyPlugin();
    void aLibraryIsRefused_data();
    void aLibraryIsRefused();
    void aFieldIsRefused_data();
    void aFieldIsRefused();
    void fieldChecksRunInOrder_data();
    void fieldChecksRunInOrder();

    void aWidgetIsRead();
    void aWidgetNeedsLittle();
    void aFieldIsRead();
    void aFieldNeedsLittle();
    void defaultValuesHaveTheKindOfTheField_data();
    void defaultValuesHaveTheKindOfTheField();
    void acceptedTagTypes_data();
    void acceptedTagTypes();
    void aFontObjectIsReadOverTheDefaultFont_data();
    void aFontObjectIsReadOverTheDefaultFont();
    void theKeysOfTextsAreReadAlone();
    void translationsReachEveryText();
    void aLaterWidgetReplacesItsTwin();
    void aLibraryParsesInLinearTime();
};

// What is refused ------------------------------------------------------------------------------------------

void tst_WidgetMetaData::otherCodesAreThoseOfAnyPlugin()
{
    QCOMPARE(Utils::errorToString(0), "no error"_s);
    QCOMPARE(Utils::errorToString(17), "Errore reading translation files"_s);
    for (const int code : {-1, 18, 9999, 10043})
        QCOMPARE(Utils::errorToString(code), "error code undefined"_s);
    LogRecorder log;
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin("{'name': 1}"_s), info), 5);
    QCOMPARE(Utils::metaInformationFromMetaData(QJsonObject(), info), 2);
    log.takeLines();
}

void tst_WidgetMetaData::aLibraryIsRefused_data()
{
    QTest::addColumn<QString>(
        "widgets"); // the value of "widgets"; a lone object is a patch of the valid widget
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text"); // after "MetaData/widgets"

    QTest::newRow("widgets that are a text") << "'x'" << 10000 << " attribute is not valid";
    QTest::newRow("a widget that is a text") << "['x']" << 10000 << " attribute is not valid";
    QTest::newRow("a widget without id") << "{'id': null}" << 10001 << "/id attribute is not present";
    for (const char *id : {"1", "''", "'my-widget'", "'a b'", "'a\\n'", "'é'"})
        QTest::newRow(qPrintable("a widget with the id "_s + QString::fromUtf8(id)))
            << "{'id': %1}"_s.arg(QString::fromUtf8(id)) << 10002 << "/id attribute is not valid";
    QTest::newRow("a widget whose display is a number")
        << "{'display': 1}" << 10003 << "/display attribute is not valid";
    QTest::newRow("a widget whose description is half a pair")
        << "{'description': ['x']}" << 10004 << "/description attribute is not valid";
    QTest::newRow("a widget without version")
        << "{'version': null}" << 10005 << "/version attribute is not present";
    for (const char *version : {"1", "'1.0'", "'1.0.0.0'", "''"})
        QTest::newRow(qPrintable("a widget with the version "_s + QLatin1String(version)))
            << "{'version': %1}"_s.arg(QLatin1String(version)) << 10006 << "/version attribute is not valid";
    for (const char *size : {"100", "'100X50'", "'100'", "'-1x5'", "[100, 50]"})
        QTest::newRow(qPrintable("a widget with the default size "_s + QLatin1String(size)))
            << "{'defaultSize': %1}"_s.arg(QLatin1String(size)) << 10007
            << "/defaultSize attribute is not valid";
    QTest::newRow("a gallery group that is a number")
        << "{'galleryGroupName': 1}" << 10008 << "/galleryGroupName attribute is not valid";
    QTest::newRow("a text where the page gallery wants a boolean")
        << "{'showInPageGallery': 'true'}" << 10009 << "/showInPageGallery attribute is not valid";
    QTest::newRow("a number where the project gallery wants a boolean")
        << "{'showInProjectGallery': 1}" << 10010 << "/showInProjectGallery attribute is not valid";
    QTest::newRow("a number where alarm events want a boolean")
        << "{'receiveAlarmsEvents': 1}" << 10011 << "/receiveAlarmsEvents attribute is not valid";
    QTest::newRow("fields that are an object")
        << "{'fields': {}}" << 10012 << "/fields attribute is not valid";
    QTest::newRow("a field that is a text")
        << "{'fields': ['x']}" << 10012 << "/fields attribute is not valid";
    QTest::newRow("a field's own error")
        << "{'fields': [{}]}" << 10013 << "/fields/id attribute is not present";
    // The first check that fails names the error.
    QTest::newRow("all keys wrong, the id missing")
        << "{'id': null, 'version': 1, 'display': 1, 'fields': 1}" << 10001 << "/id attribute is not present";
    QTest::newRow("version and display wrong")
        << "{'version': 1, 'display': 1, 'fields': 1}" << 10006 << "/version attribute is not valid";
    QTest::newRow("display and fields wrong")
        << "{'display': 1, 'fields': 1}" << 10003 << "/display attribute is not valid";
}

void tst_WidgetMetaData::aLibraryIsRefused()
{
    QFETCH(QString, widgets);
    QFETCH(int, code);
    QFETCH(QString, text);
    LogRecorder log;
    QJsonValue value = MetaData::json(widgets);
    if (value.isObject()) {
        WidgetMetaInformation widget;
        QCOMPARE(parseWidget(MetaData::widget("{'id': 'before'}"_s), widget), 0);
        const QJsonObject json = MetaData::widget(widgets);
        QCOMPARE(parseWidget(json, widget), code);
        QCOMPARE(widget.id(), "before"_s);
        log.takeLines();
        value = QJsonArray{MetaData::widget("{'id': 'valid'}"_s), json};
    }
    QJsonObject metaData = MetaData::plugin().value("MetaData"_s).toObject();
    metaData.insert("widgets"_s, value);
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData({{"MetaData"_s, metaData}}, info), code);
    QCOMPARE(Utils::errorToString(code), "MetaData/widgets"_s + text);
    QVERIFY(info.widgets().isEmpty());
    const QString lines = log.takeTexts().join(QLatin1Char('\n'));
    const QString expected =
        value.isArray() ? "An error occurred reading the widget at index %1"_s.arg(value.toArray().size() - 1)
                        : "The 'widgets' item must be an array"_s;
    QVERIFY2(lines.contains("critical METADATA "_s) && lines.contains(expected), qPrintable(lines));
}

void tst_WidgetMetaData::aFieldIsRefused_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("patch"); // of a valid field of that type
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("key"); // and state, as the code's text has them

    const auto rows = [](const char *sentence, const char *type, const char *key, int code,
                         const QStringList &values, const char *also = "") {
        for (const QString &value : values)
            QTest::newRow(qPrintable(QLatin1String(sentence) + QLatin1Char(' ') + value))
                << type << "{'%1': %2 %3}"_s.arg(QLatin1String(key), value, QLatin1String(also)) << code
                << "%1 attribute is not valid"_s.arg(QLatin1String(key));
    };
    const auto values = [](const char *list) { return QString::fromUtf8(list).split(QLatin1Char(';')); };
    const auto missing = [](const char *sentence, const char *type, const char *key, int code,
                            const QString &also) {
        QTest::newRow(sentence) << type << "{%2 '%1': null}"_s.arg(QLatin1String(key), also) << code
                                << "%1 attribute is not present"_s.arg(QLatin1String(key));
    };

    missing("without id", "integer", "id", 10013, QString());
    rows("the id", "integer", "id", 10014, values("1;'a-b';'a b';'a\\n';'é';'a.font'"));
    missing("without type", "integer", "type", 10028, QString());
    rows("the type", "integer", "type", 10029, values("4;'undefined';'text';'';'integer '"));
    missing("without display", "integer", "display", 10015, QString());
    rows("the display", "integer", "display", 10016, values("1;['x'];['x', 1]"));
    rows("the description", "integer", "description", 10027, values("1;{};['x']"));

    rows("tagCanBeAttached", "integer", "tagCanBeAttached", 10030, values("1;'true'"));
    rows("on a tag field, tagCanBeAttached", "tag", "tagCanBeAttached", 10030, values("false;1"));
    rows("on a trend field, tagCanBeAttached", "trend", "tagCanBeAttached", 10030, values("false;true"));

    rows("the default of a string", "string", "defaultValue", 10031, values("1;{}"));
    rows("the default of a string list", "stringList", "defaultValue", 10031, values("{};1;[1];['a', {}]"));
    rows("the default of a string map", "stringMap", "defaultValue", 10031,
         values("{};['a'];[{'i': 1}];[{'v': 'a'}];[{'i': '1', 'v': 'a'}];[{'i': 1.5, 'v': 'a'}];[{'i': 1, "
                "'v': 2}];"
                "[{'i': 2147483648, 'v': 'a'}];[{'i': 1, 'v': 'a'}, {'i': 1, 'v': 'b'}]"));
    rows("the default of an integer", "integer", "defaultValue", 10031,
         values("true;'x';1.5;2147483648;-2147483649;1e300"));
    rows("the default of a double", "double", "defaultValue", 10031, values("true;'x'"));
    rows("the default of a bool", "bool", "defaultValue", 10031, values("1;'true'"));
    rows("the default of an option", "option", "defaultValue", 10031, values("0;3;1.5;'On';4294967297"));
    rows("the default of a color", "color", "defaultValue", 10031, values("1;'no color'"));
    rows("the default of a font", "font", "defaultValue", 10031, values("1;{'family': 'Arial'}"));
    rows("the default of an image", "image", "defaultValue", 10031, values("1;[]"));
    rows("on a tag field, the default", "tag", "defaultValue", 10031, values("1;'x'"));
    rows("on a trend field, the default", "trend", "defaultValue", 10031, values("1;'x'"));

    rows("readOnly", "integer", "readOnly", 10032, values("1;'true'"));
    rows("the group", "integer", "group", 10033, values("1;{};['G', 'c']"));
    rows("private", "integer", "private", 10037, values("1;'true'"));
    rows("the requirements", "integer", "requirements", 10038, values("1;['a'];'speed >= 3'"));
    rows("tagAcceptedTypes", "tag", "tagAcceptedTypes", 10041,
         values("'int';[1];['int', 'Int'];['number'];['']"));
    rows("tagOnDemand", "tag", "tagOnDemand", 10042, values("1;'true'"));
    for (const char *type : {"integer", "double"}) {
        rows(qPrintable(QLatin1String(type) + ": the minimum"_s), type, "minimum", 10034,
             values("'x';true;{}"));
        rows(qPrintable(QLatin1String(type) + ": the maximum"_s), type, "maximum", 10035,
             values("'x';true;{}"));
    }
    rows("the minimum of an integer", "integer", "minimum", 10034, values("0.5;2147483648;-1e300"));
    rows("the maximum of an integer", "integer", "maximum", 10035, values("0.5;-2147483649;1e300"));

    QTest::newRow("without options") << "option"
                                     << "{'options': null}" << 10036 << "options attribute is not valid";
    rows("the options", "option", "options", 10036, values("{};[];['On'];[{'index': 1}];[{'option': 'On'}]"));
    for (const char *index : {"'1'", "1.5", "true", "2147483648", "1e300"})
        rows("the options", "option", "options", 10036,
             {"[{'index': 0, 'option': 'Off'}, {'index': %1, 'option': 'On'}]"_s.arg(QLatin1String(index))});
    for (const char *option : {"1", "'a-b'", "'a b'", "'a,b=1'", "'é'", "'On\\n'"})
        rows("the options", "option", "options", 10036,
             {"[{'index': 0, 'option': %1}]"_s.arg(QString::fromUtf8(option))});

    const QString multiLanguage = "'multiLanguage': true, %1,"_s.arg(MetaData::fontLabels);
    int code = 10017;
    for (const char *key : {"displayFontFamily", "displayFontSize", "displayFontBold", "displayFontStyle",
                            "displayFontUnderline"}) {
        const QString name = QLatin1String(key);
        missing(qPrintable("a font without "_s + name), "font", key, code, QString());
        for (const char *type : {"string", "stringList", "stringMap"})
            missing(qPrintable("a multi-language %1 without %2"_s.arg(QLatin1String(type), name)), type, key,
                    code, multiLanguage);
        rows(qPrintable("on a font, "_s + name), "font", key, code + 1, values("1;['x']"));
        rows(qPrintable("on an integer, "_s + name), "integer", key, code + 1, values("1"));
        code += 2;
    }
    for (const char *type : {"string", "stringList", "stringMap"}) {
        rows(qPrintable(QLatin1String(type) + ": multiLanguage"_s), type, "multiLanguage", 10040,
             values("1;'true'"));
        rows(qPrintable(QLatin1String(type) + ": defaultFont"_s), type, "defaultFont", 10039,
             values("1;'Roboto';{'family': 'Arial'};{'bold': 1}"));
    }
}

void tst_WidgetMetaData::aFieldIsRefused()
{
    QFETCH(QString, type);
    QFETCH(QString, patch);
    QFETCH(int, code);
    QFETCH(QString, key);
    LogRecorder log;
    const QJsonObject json = MetaData::field(type, patch);
    FieldMetaInformation field;
    QCOMPARE(parseField(MetaData::field("bool"_s, "{'id': 'before'}"_s), field), 0);
    QCOMPARE(parseField(json, field), code);
    QCOMPARE(field.id(), "before"_s);
    QCOMPARE(field.type(), FieldTypeBool);

    // The last text has a slip that hosts have learned to expect.
    const QString text = code == 10042 ? "tagOnDemand} is not valid"_s : key;
    QCOMPARE(Utils::errorToString(code), "MetaData/widgets/fields/"_s + text);

    // The ways in which tag and trend fields are special are said in the log.
    QString message;
    if (code == 10030 && type == QLatin1String("tag") && patch.contains("false"_s))
        message = "you can not specify tagCanBeAttached as 'false' for tag field"_s;
    else if (code == 10030 && type == QLatin1String("trend"))
        message = "you can not specify tagCanBeAttached for trend field"_s;
    else if (code == 10031 && (type == QLatin1String("tag") || type == QLatin1String("trend")))
        message = "you can not specify defaultValue for %1 field"_s.arg(type);
    const QString lines = log.takeTexts().join(QLatin1Char('\n'));
    if (!message.isEmpty()) {
        const QString expected = "An error occurred reading field 'f': "_s + message;
        QVERIFY2(lines.contains(" METADATA "_s) && lines.contains(expected), qPrintable(lines));
    }
    WidgetMetaInformation widget;
    QCOMPARE(parseWidget(MetaData::widget(QString(), {json}), widget), code);
    QVERIFY(!widget.isValid());
    log.takeLines();
}

void tst_WidgetMetaData::fieldChecksRunInOrder_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("repairs"); // "key=valid value=code before the repair", in order
    const auto common = "id='f'=10014;type='%1'=10029;display='F'=10016;description='D'=10027;"
                        "tagCanBeAttached=true=10030;%2readOnly=true=10032;group='G'=10033;"
                        "private=true=10037;requirements='a'=10038;"
                        "tagAcceptedTypes=['int']=10041;tagOnDemand=true=10042;"_s;
    const auto defaultValue = "defaultValue=%1=10031;"_s;
    QTest::newRow("integer") << "integer"
                             << common.arg("integer"_s, defaultValue.arg(1))
                                    + "minimum=1=10034;maximum=1=10035;displayFontFamily='x'=10018"_s;
    QTest::newRow("option")
        << "option"
        << common.arg("option"_s, QString())
               + "options=[{'index': 1, 'option': 'a'}]=10036;displayFontSize='x'=10020"_s;
    QTest::newRow("string") << "string"
                            << common.arg("string"_s, defaultValue.arg("'x'"_s))
                                   + "multiLanguage=true=10040;defaultFont={}=10039;"
                                     "displayFontFamily='x'=10018;displayFontSize='x'=10020;"
                                     "displayFontBold='x'=10022;displayFontStyle='x'=10024;"
                                     "displayFontUnderline='x'=10026"_s;
}

// Every key is wrong at first; each repair brings up the next check.
void tst_WidgetMetaData::fieldChecksRunInOrder()
{
    QFETCH(QString, repairs);
    LogRecorder log;
    const QStringList steps = repairs.split(QLatin1Char(';'));
    QJsonObject json;
    for (const QString &step : steps)
        json.insert(step.section(QLatin1Char('='), 0, 0), QJsonArray{0});
    FieldMetaInformation field;
    for (const QString &step : steps) {
        QCOMPARE(parseField(json, field), step.section(QLatin1Char('='), 2).toInt());
        json.insert(step.section(QLatin1Char('='), 0, 0),
                    MetaData::json(step.section(QLatin1Char('='), 1, 1)));
    }
    QCOMPARE(parseField(json, field), 0);
    log.takeLines();
}

// Requirements ---------------------------------------------------------------------------------------------

// What is read ---------------------------------------------------------------------------------------------

void tst_WidgetMetaData::aWidgetIsRead()
{
    const QJsonObject json = MetaData::widget(
        "{'id': 'Gauge_2', 'version': '01.2.03', 'display': ['Gauge', 'c'], 'description': ' D ',"
        " 'defaultSize': '100x50.5', 'galleryGroupName': ['G', 'c'], 'showInPageGallery': true,"
        " 'showInProjectGallery': true, 'receiveAlarmsEvents': true, 'unknown': 1}"_s,
        {MetaData::field("integer"_s), MetaData::field("double"_s, "{'id': 'a'}"_s)});
    WidgetMetaInformation widget;
    QCOMPARE(parseWidget(json, widget), 0);
    QVERIFY(widget.isValid());
    QCOMPARE(widget.id(), "Gauge_2"_s);
    QCOMPARE(widget.version().version(), "1.2.3"_s);
    QCOMPARE(MetaData::notation(widget.display()), "en-US=Gauge | c"_s);
    QCOMPARE(MetaData::notation(widget.description()), "en-US= D "_s);
    QCOMPARE(widget.defaultSize(), QSizeF(100, 50.5));
    QCOMPARE(MetaData::notation(widget.galleryGroupName()), "en-US=G | c"_s);
    QVERIFY(widget.showInPageGallery() && widget.showInProjectGallery() && widget.receiveAlarmsEvents());
    QCOMPARE(widget.fields().keys().join(QLatin1Char(',')), "a,f"_s);
    QCOMPARE(widget.fields().value("a"_s).type(), FieldTypeDouble);

    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin({json}), info), 0);
    const Info::WidgetKey key("Gauge_2"_s, "1.2.3"_s);
    QCOMPARE(info.widgets().keys(), QList<Info::WidgetKey>{key});
    QCOMPARE(info.id(), MetaData::pluginId);
}

void tst_WidgetMetaData::aWidgetNeedsLittle()
{
    WidgetMetaInformation widget;
    QCOMPARE(parseWidget(MetaData::widget("{'fields': null}"_s), widget), 0);
    QVERIFY(widget.isValid() && widget.fields().isEmpty() && widget.fieldInfo().isEmpty());
    QCOMPARE(widget.defaultSize(), QSizeF(-1, -1));
    QVERIFY(widget.display().isEmpty() && widget.description().isEmpty()
            && widget.galleryGroupName().isEmpty());
    QVERIFY(!widget.showInPageGallery() && !widget.showInProjectGallery() && !widget.receiveAlarmsEvents());

    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(), info), 0);
    QVERIFY(info.widgets().isEmpty());
}

void tst_WidgetMetaData::aFieldIsRead()
{
    FieldMetaInformation field;
    QCOMPARE(parseField(
                 MetaData::field("STRING"_s, "{'id': '2_F', 'display': ['F', 'c'], 'description': 'D',"
                                             " 'tagCanBeAttached': true, 'readOnly': true, 'group': 'G',"
                                             " 'private': true, 'requirements': 'a==1 && b',"
                                             " 'multiLanguage': true, 'tagOnDemand': true,"
                                             " 'defaultFont': {'size': 14, 'bold': true},"
                                             " 'defaultValue': ['V', 'c'], %1}"_s.arg(MetaData::fontLabels)),
                 field),
             0);
    QVERIFY(field.isValid());
    QCOMPARE(field.id(), "2_F"_s);
    QCOMPARE(field.type(), FieldTypeString);
    QCOMPARE(MetaData::notation(field.display()), "en-US=F | c"_s);
    QCOMPARE(MetaData::notation(field.description()), "en-US=D"_s);
    QCOMPARE(MetaData::notation(field.group()), "en-US=G"_s);
    QVERIFY(field.tagCanBeAttached() && field.readOnly() && field.isPrivate() && field.tagOnDemand());
    QCOMPARE(field.requirements(), "a==1 && b"_s);
    QVERIFY(field.isMultiLanguage() && field.isMultiLanguageText() && field.defaultFontSpecified());
    QFont font = Utils::defaultFont();
    font.setPointSize(14);
    font.setWeight(QFont::Bold);
    QCOMPARE(field.defaultFont(), font);
    QCOMPARE(MetaData::notation({field.displayFontFamily(), field.displayFontSize(), field.displayFontBold(),
                                 field.displayFontStyle(), field.displayFontUnderline()}),
             "en-US=Family\nen-US=Size\nen-US=Bold\nen-US=Style\nen-US=Underline"_s);
    QCOMPARE(MetaData::notation(field.defaultTexts().values()), "en-US=V | c"_s);

    QCOMPARE(parseField(MetaData::field("integer"_s, "{'minimum': -5, 'maximum': 2147483647}"_s), field), 0);
    QCOMPARE(field.minimum(), QVariant(-5));
    QCOMPARE(field.maximum(), QVariant(2147483647));
    QCOMPARE(parseField(MetaData::field("double"_s, "{'minimum': 0, 'maximum': 0.5}"_s), field), 0);
    QCOMPARE(field.minimum(), QVariant(0.0));
    QCOMPARE(field.maximum(), QVariant(0.5));
    QCOMPARE(parseField(MetaData::field("option"_s), field), 0);
    QCOMPARE(field.options().size(), 2);
    QCOMPARE(field.options()[1].index, 2);
    QCOMPARE(MetaData::notation(field.options()[1].text), "en-US=On"_s);
}

void tst_WidgetMetaData::aFieldNeedsLittle()
{
    FieldMetaInformation field;
    QVERIFY(!field.isValid());
    QCOMPARE(parseField(MetaData::field("string"_s), field), 0);
    QVERIFY(field.isValid() && field.description().isEmpty() && field.group().isEmpty());
    QVERIFY(!field.tagCanBeAttached() && !field.readOnly() && !field.isPrivate() && !field.tagOnDemand());
    QVERIFY(!field.isMultiLanguage() && !field.defaultFontSpecified() && field.displayFontFamily().isEmpty());
    QCOMPARE(field.defaultFont(), Utils::defaultFont());
    QVERIFY(!field.defaultValue().isValid() && !field.minimum().isValid() && !field.maximum().isValid());
    QVERIFY(field.requirements().isEmpty() && field.options().isEmpty()
            && field.tagAcceptedTypes().isEmpty());
    // Keys of texts mean nothing to other types, whatever they hold.
    for (const char *type : {"integer", "double", "bool", "color", "image", "tag", "trend"}) {
        const auto strange = MetaData::field(QLatin1String(type), "{'multiLanguage': 5, 'defaultFont': 5}"_s);
        QCOMPARE(parseField(strange, field), 0);
        QVERIFY(!field.isMultiLanguage() && !field.isMultiLanguageText());
    }
    // Unlike a widget's, a field's id may be empty.
    QCOMPARE(parseField(MetaData::field("tag"_s, "{'id': ''}"_s), field), 0);
    QVERIFY(field.isValid() && field.id().isEmpty() && field.tagCanBeAttached());
}

void tst_WidgetMetaData::defaultValuesHaveTheKindOfTheField_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("json");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("string") << "string"
                            << "' a '" << QVariant(" a "_s);
    QTest::newRow("string list") << "stringList"
                                 << "['b', 'a']" << QVariant(QStringList{"b"_s, "a"_s});
    QTest::newRow("string map") << "stringMap"
                                << "[{'i': 2, 'v': 'b'}, {'i': -1, 'v': 'a'}]"
                                << QVariant::fromValue(StringMap{{-1, "a"_s}, {2, "b"_s}});
    QTest::newRow("smallest integer") << "integer"
                                      << "-2147483648" << QVariant(std::numeric_limits<int>::min());
    QTest::newRow("integer with a point") << "integer"
                                          << "7.0" << QVariant(7);
    QTest::newRow("double") << "double"
                            << "0.25" << QVariant(0.25);
    QTest::newRow("whole double") << "double"
                                  << "3" << QVariant(3.0);
    QTest::newRow("bool") << "bool"
                          << "true" << QVariant(true);
    QTest::newRow("option") << "option"
                            << "2" << QVariant(2);
    QTest::newRow("color") << "color"
                           << "'#102030'" << QVariant(QColor(16, 32, 48));
    QTest::newRow("image") << "image"
                           << "'pump.svg'" << QVariant("pump.svg"_s);
    QFont font("Roboto Light"_s, 20, QFont::Normal, true);
    font.setUnderline(true);
    QTest::newRow("font") << "font"
                          << "{'family': 'Roboto Light', 'size': 20, 'style': 'italic', 'underline': true}"
                          << QVariant(font);
}

void tst_WidgetMetaData::defaultValuesHaveTheKindOfTheField()
{
    QFETCH(QString, type);
    QFETCH(QString, json);
    QFETCH(QVariant, value);
    FieldMetaInformation field;
    QCOMPARE(parseField(MetaData::field(type, "{'defaultValue': %1}"_s.arg(json)), field), 0);
    QCOMPARE(field.defaultValue().userType(), value.userType());
    QCOMPARE(field.defaultValue(), value);
}

void tst_WidgetMetaData::acceptedTagTypes_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<QVector<int>>("types");
    QTest::newRow("none") << "[]" << QVector<int>();
    QTest::newRow("sorted") << "['string', 'bool', 'arraydouble']" << QVector<int>{1, 12, 23};
    QTest::newRow("numeric") << "['numeric']" << QVector<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    QTest::newRow("signed") << "['signednumeric']" << QVector<int>{2, 3, 4, 9};
    QTest::newRow("unsigned") << "['unsignednumeric']" << QVector<int>{5, 6, 7, 8};
    QTest::newRow("real") << "['real']" << QVector<int>{10, 11};
    QTest::newRow("numeric arrays") << "['arraynumeric']"
                                    << QVector<int>{14, 15, 16, 17, 18, 19, 20, 21, 22, 23};
    QTest::newRow("signed arrays") << "['arraysignednumeric']" << QVector<int>{14, 15, 16, 21};
    QTest::newRow("unsigned arrays") << "['arrayunsignednumeric']" << QVector<int>{17, 18, 19, 20};
    QTest::newRow("real arrays") << "['arrayreal']" << QVector<int>{22, 23};
    QTest::newRow("groups and types together, each once")
        << "['real', 'unsignednumeric', 'uint', 'bool', 'real']" << QVector<int>{1, 5, 6, 7, 8, 10, 11};
}

void tst_WidgetMetaData::acceptedTagTypes()
{
    QFETCH(QString, json);
    FieldMetaInformation field;
    QCOMPARE(parseField(MetaData::field("tag"_s, "{'tagAcceptedTypes': %1}"_s.arg(json)), field), 0);
    QTEST(numbers(field.tagAcceptedTypes()), "types");
}

void tst_WidgetMetaData::aFontObjectIsReadOverTheDefaultFont_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("text"); // of the font

    QTest::newRow("nothing changes nothing")
        << "{}" << true << R"({"bold":false,"family":"Roboto","size":10,"style":"normal","underline":false})";
    QTest::newRow("each key counts")
        << "{'family': 'roboto BLACK', 'size': 7, 'bold': true, 'style': 'italic', 'underline': true}" << true
        << R"({"bold":true,"family":"roboto BLACK","size":7,"style":"italic","underline":true})";
    QTest::newRow("false and normal count too")
        << "{'bold': false, 'style': 'normal', 'underline': false, 'other': 1}" << true
        << R"({"bold":false,"family":"Roboto","size":10,"style":"normal","underline":false})";
    for (const char *bad : {"'family': 'Arial'", "'family': ''", "'family': 1", "'size': '10'", "'size': 0",
                            "'size': -3", "'size': 1e300", "'bold': 1", "'bold': 'true'",
                            "'style': 'oblique'", "'style': 'Italic'", "'style': true", "'underline': 1"})
        QTest::newRow(bad) << "{%1}"_s.arg(QLatin1String(bad)) << false << "";
}

void tst_WidgetMetaData::aFontObjectIsReadOverTheDefaultFont()
{
    QFETCH(QString, json);
    QFETCH(bool, accepted);
    QFETCH(QString, text);
    const QFont before("Before"_s, 33, QFont::Black, true);
    QFont font = before;
    QCOMPARE(Utils::infoFromMetaDataParseFontObject(MetaData::json(json).toObject(), font), accepted);
    QCOMPARE(Utils::fieldFontToString(font), accepted ? text : Utils::fieldFontToString(before));
}

// As a host reads them that has the object of a text field.
void tst_WidgetMetaData::theKeysOfTextsAreReadAlone()
{
    const auto object = [](const char *json) { return MetaData::json(QString::fromLatin1(json)).toObject(); };
    bool flag = false;
    QVERIFY(Utils::infoFromMetaDataParseStringFieldIsMultiLanguage(object("{'multiLanguage': true}"), flag));
    QVERIFY(flag);
    QVERIFY(!Utils::infoFromMetaDataParseStringFieldIsMultiLanguage(object("{'multiLanguage': 0}"), flag));
    QVERIFY(flag); // untouched
    QVERIFY(Utils::infoFromMetaDataParseStringFieldIsMultiLanguage(object("{}"), flag));
    QVERIFY(!flag);

    FieldMetaInformation field;
    QCOMPARE(parseField(MetaData::field("string"_s), field), 0);
    QCOMPARE(Utils::infoFromMetaDataParseStringFieldCommon(
                 object("{'multiLanguage': true, 'defaultFont': {'size': 14}}"), field),
             0);
    QFont font = Utils::defaultFont();
    font.setPointSize(14);
    const auto isChanged = [&] {
        return field.isMultiLanguage() && field.defaultFontSpecified() && field.defaultFont() == font;
    };
    QVERIFY(isChanged() && field.isValid() && field.type() == FieldTypeString);
    QCOMPARE(Utils::infoFromMetaDataParseStringFieldCommon(object("{'multiLanguage': 'no'}"), field), 10040);
    QVERIFY(isChanged());
    QCOMPARE(Utils::infoFromMetaDataParseStringFieldCommon(object("{'defaultFont': 'Roboto'}"), field),
             10039);
    QVERIFY(isChanged());
    QCOMPARE(Utils::infoFromMetaDataParseStringFieldCommon(object("{}"), field), 0);
    QVERIFY(!field.isMultiLanguage() && field.defaultFont() == Utils::defaultFont());

    LogRecorder log;
    const auto refused = [&field](const char *type, const QStringList &defaults) {
        for (const QString &text : defaults) {
            const auto patch = "{'multiLanguage': true, 'defaultValue': %1}"_s.arg(text);
            if (parseField(MetaData::field(QLatin1String(type), patch), field) != 10031)
                return text;
        }
        return QString();
    };
    QCOMPARE(refused("string", {"5"_s, "{}"_s}), QString());
    QCOMPARE(refused("stringList", {"5"_s, "[['a', 'c'], 5]"_s, "[{}]"_s}), QString());
    QCOMPARE(refused("stringMap", {"{}"_s, "['a']"_s, "[{'i': 1.5, 'v': 'a'}]"_s, "[{'i': 1, 'v': 5}]"_s,
                                   "[{'i': 1, 'v': 'a'}, {'i': 1, 'v': 'b'}]"_s}),
             QString());
    log.takeLines();

    QList<TranslationStringType> translations;
    QCOMPARE(Utils::infoFromMetaDataParseField(QJsonValue(5), field, {}, english, translations), 10012);
    QVERIFY(field.isValid() && translations.isEmpty());
}

void tst_WidgetMetaData::translationsReachEveryText()
{
    QList<TranslationStringType> translations;
    const QString words = "W D G F FD FG Off On Family Size Bold Style Underline V"_s;
    for (const QString &word : words.split(QLatin1Char(' ')))
        translations << MetaData::text("de-DE=%1_de & en-US=%1"_s.arg(word));
    const QJsonObject json = MetaData::widget(
        "{'display': 'W', 'description': 'D', 'galleryGroupName': 'G'}"_s,
        {MetaData::field("option"_s, "{'description': 'FD', 'group': 'FG'}"_s),
         MetaData::field("stringMap"_s,
                         "{'id': 'm', 'description': 'X', 'multiLanguage': true, %1,"
                         " 'defaultValue': [{'i': 3, 'v': 'V'}]}"_s.arg(MetaData::fontLabels))});
    WidgetMetaInformation widget;
    QCOMPARE(Utils::infoFromMetaDataParseWidget(json, widget, MetaData::pluginId, english, translations), 0);
    QCOMPARE(MetaData::notation(translations.takeLast()), "en-US=X"_s); // the one text that was not there
    QCOMPARE(translations.size(), words.split(QLatin1Char(' ')).size());
    Info info;
    info.init({{{widget.id(), widget.version().version()}, widget}});
    QString german = MetaData::notation(info.translatableStrings("de-DE"_s));
    german.remove("de-DE="_s);
    QCOMPARE(german.remove("_de"_s).replace(QLatin1Char('\n'), QLatin1Char(' ')), words);
    const FieldMetaInformation map = widget.fields().value("m"_s);
    QCOMPARE(MetaData::notation(map.defaultTexts().value(3)), "de-DE=V_de & en-US=V"_s);
}

void tst_WidgetMetaData::aLaterWidgetReplacesItsTwin()
{
    const QJsonArray widgets = {MetaData::widget("{'version': '1.0.0', 'display': 'first'}"_s),
                                MetaData::widget("{'version': '01.0.0', 'display': 'second'}"_s)};
    Info info;
    QCOMPARE(Utils::metaInformationFromMetaData(MetaData::plugin(widgets), info), 0);
    QCOMPARE(info.widgets().size(), 1);
    QCOMPARE(MetaData::notation(info.widgets().first().display()), "en-US=second"_s);
}

void tst_WidgetMetaData::aLibraryParsesInLinearTime()
{
    const auto milliseconds = [](int widgetCount) {
        QJsonArray widgets;
        for (int w = 0; w < widgetCount; ++w) {
            QJsonArray fields;
            for (int f = 0; f < 10; ++f)
                fields << MetaData::field(
                    "font"_s,
                    "{'id': 'f%2', 'display': 'F %1 %2', 'description': 'D %1 %2', 'group': 'G %1 %2'}"_s.arg(
                        QString::number(w), QString::number(f)));
            widgets << MetaData::widget("{'id': 'w%1', 'display': 'W %1'}"_s.arg(w), fields);
        }
        const QJsonObject json = MetaData::plugin(widgets);
        return processorMilliseconds([&json, widgetCount] {
            Info info;
            return Utils::metaInformationFromMetaData(json, info) == 0
                   && info.translatableStrings(english).size() == 6 + 31 * widgetCount;
        });
    };
    // Ten times the work; quadratic time would be a hundred times as long.
    const double small = std::max(milliseconds(50), milliseconds(50));
    const double large = std::min(milliseconds(500), milliseconds(500));
    QVERIFY(small >= 0 && large >= 0);
    QVERIFY2(large < 40 * small,
             qPrintable("%1 ms, %2 ms"_s.arg(QString::number(small), QString::number(large))));
}

KORA_TEST_MAIN(tst_WidgetMetaData)

#include "tst_widgetmetadata.moc"
