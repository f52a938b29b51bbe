// SPDX-License-Identifier: Apache-2.0
#include "generator.h"

#include <QtCore/QJsonArray>

namespace {

QString fieldDisplay(int widget, int field)
{
    return QStringLiteral("Value %1 of widget %2").arg(QString::number(field), QString::number(widget));
}

QJsonObject font()
{
    return {{QStringLiteral("size"), 12}, {QStringLiteral("bold"), true}};
}

QJsonArray options()
{
    QJsonArray result;
    for (int i = 0; i < 3; ++i) {
        result.append(QJsonObject{{QStringLiteral("index"), i},
                                  {QStringLiteral("option"), QStringLiteral("mode_%1").arg(i)}});
    }
    return result;
}

// What a field of each type declares beyond the keys of all fields.
QJsonObject typeKeys(int field)
{
    const QString type = QStringLiteral("type");
    const QString value = QStringLiteral("defaultValue");
    switch (field % 10) {
    case 0:
        return {{type, QStringLiteral("integer")},
                {value, 50},
                {QStringLiteral("minimum"), 0},
                {QStringLiteral("maximum"), 100}};
    case 1:
        return {{type, QStringLiteral("double")}, {value, 0.5}};
    case 2:
        return {{type, QStringLiteral("bool")}, {value, true}};
    case 3:
        return {{type, QStringLiteral("string")}, {value, QStringLiteral("bar & \"psi\"")}};
    case 4:
        return {{type, QStringLiteral("option")}, {value, 1}, {QStringLiteral("options"), options()}};
    case 5:
        return {{type, QStringLiteral("color")}, {value, QStringLiteral("#1e90ff")}};
    case 6:
        return {{type, QStringLiteral("stringList")},
                {value, QJsonArray{QStringLiteral("low"), QStringLiteral("high")}}};
    case 7:
        return {{type, QStringLiteral("tag")},
                {QStringLiteral("tagAcceptedTypes"), QJsonArray{QStringLiteral("numeric")}}};
    case 8:
        return {{type, QStringLiteral("string")}, {QStringLiteral("defaultFont"), font()}};
    default:
        return {{type, QStringLiteral("image")}, {value, QStringLiteral("pump.png")}};
    }
}

QJsonObject fieldObject(int widget, int field)
{
    QJsonObject object = typeKeys(field);
    object.insert(QStringLiteral("id"), QStringLiteral("value_%1").arg(field));
    object.insert(QStringLiteral("display"), fieldDisplay(widget, field));
    object.insert(QStringLiteral("description"),
                  QStringLiteral("What the operator sees as value %1.").arg(field));
    object.insert(QStringLiteral("group"), QStringLiteral("Appearance"));
    if (field % 10 == 1) {
        object.insert(QStringLiteral("requirements"), QStringLiteral("value_0 > 10 && value_2"));
    }
    return object;
}

QJsonObject widgetObject(int widget, int fields)
{
    QJsonArray fieldArray;
    for (int field = 0; field < fields; ++field) {
        fieldArray.append(fieldObject(widget, field));
    }
    return {
        {QStringLiteral("id"), QStringLiteral("widget_%1").arg(widget)},
        {QStringLiteral("version"), QStringLiteral("1.0.0")},
        {QStringLiteral("display"), QStringLiteral("Widget %1").arg(widget)},
        {QStringLiteral("description"),
         QJsonArray{QStringLiteral("Shows a measured value."), QStringLiteral("gallery")}},
        {QStringLiteral("defaultSize"), QStringLiteral("120x80")},
        {QStringLiteral("galleryGroupName"), QStringLiteral("Group %1").arg(widget % 4)},
        {QStringLiteral("showInPageGallery"), true},
        {QStringLiteral("fields"), fieldArray},
    };
}

} // namespace

QJsonObject metaDataObject(const LibraryShape &shape)
{
    QJsonArray widgets;
    for (int widget = 0; widget < shape.widgets; ++widget) {
        widgets.append(widgetObject(widget, shape.fieldsPerWidget));
    }
    QJsonObject object{
        {QStringLiteral("id"), shape.id},
        {QStringLiteral("name"), QStringLiteral("Benchmark")},
        {QStringLiteral("author"), QStringLiteral("Benchmark")},
        {QStringLiteral("version"), QStringLiteral("1.0.0")},
        {QStringLiteral("widgets"), widgets},
    };
    if (shape.isTranslated) {
        object.insert(QStringLiteral("translation"), QJsonArray{QStringLiteral("it-IT")});
    }
    return object;
}

QJsonObject pluginMetaData(const LibraryShape &shape)
{
    return {{QStringLiteral("IID"), QStringLiteral("org.Vako.KORA.WidgetLibrary")},
            {QStringLiteral("MetaData"), metaDataObject(shape)}};
}

QByteArray translationFile(const LibraryShape &shape, int entries)
{
    QByteArray lines = "text,comment,it-IT\n";
    for (int i = 0; i < entries; ++i) {
        const QString text = fieldDisplay(i / shape.fieldsPerWidget, i % shape.fieldsPerWidget);
        lines += QStringLiteral("%1,,Testo di %1\n").arg(text).toUtf8();
    }
    return lines;
}
