// SPDX-License-Identifier: Apache-2.0
#include "describe.h"

#include <kora/core/widgetlibrarypluginutils.h>

#include "output.h"
#include "texttable.h"

#include <algorithm>

using namespace KORA::INTERNAL;

namespace {

using Model = WidgetLibraryPluginMetaInformation;
using Utils = WidgetLibraryPluginUtils;

/// Names for many tag types at once, as metadata has them, the largest first.
struct TagGroup
{
    const char *name;
    QVector<TagType> types;
};

const int arrayOffset = TagTypeArrayBool - TagTypeBool;

QString textOf(const TranslationStringType &text)
{
    return text.get(text.defaultLanguage, true);
}

// Does not look like any text: numbers and words stand for themselves.
QString quoted(const QString &text)
{
    return QStringLiteral("\"%1\"").arg(text);
}

QString line(const QString &label, const QString &value)
{
    return value.isEmpty() ? QString()
                           : QStringLiteral("  %1%2\n").arg(label.leftJustified(18), printable(value));
}

QString fontText(const QFont &font)
{
    QStringList words{font.family(), QString::number(font.pointSize())};
    if (font.bold()) {
        words.append(QStringLiteral("bold"));
    }
    if (font.italic()) {
        words.append(QStringLiteral("italic"));
    }
    if (font.underline()) {
        words.append(QStringLiteral("underline"));
    }
    return words.join(QLatin1Char(' '));
}

QString optionText(const FieldMetaInformation &field, int index)
{
    const QVector<OptionType> options = field.options();
    for (const OptionType &option : options) {
        if (option.index == index) {
            return QStringLiteral("%1=%2").arg(QString::number(index), textOf(option.text));
        }
    }
    return QString::number(index);
}

QString listText(const QStringList &texts)
{
    QStringList words;
    for (const QString &text : texts) {
        words.append(quoted(text));
    }
    return words.join(QLatin1String(", "));
}

QString mapText(const QMap<int, QString> &texts)
{
    QStringList words;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        words.append(QStringLiteral("%1=%2").arg(QString::number(text.key()), quoted(text.value())));
    }
    return words.join(QLatin1String(", "));
}

QString defaultText(const FieldMetaInformation &field)
{
    const QVariant value = field.defaultValue();
    if (!value.isValid()) {
        return {};
    }
    switch (field.type()) {
    case FieldTypeString:
    case FieldTypeImage:
        return quoted(value.toString());
    case FieldTypeStringList:
        return listText(value.toStringList());
    case FieldTypeStringMap:
        return mapText(value.value<QMap<int, QString>>());
    case FieldTypeOption:
        return optionText(field, value.toInt());
    case FieldTypeFont:
        return fontText(value.value<QFont>());
    default:
        return Utils::fieldValueToString(field.type(), value);
    }
}

// Keeps one long text from pushing the other columns out of sight.
QString shortened(const QString &text)
{
    const int longest = 44;
    return text.size() <= longest ? text : text.left(longest - 3) + QLatin1String("...");
}

// "0 .. 100", "from 0", "to 100", or an option field's options.
QString valuesText(const FieldMetaInformation &field)
{
    QStringList options;
    const QVector<OptionType> optionList = field.options();
    for (const OptionType &option : optionList) {
        options.append(optionText(field, option.index));
    }
    if (!options.isEmpty()) {
        return options.join(QLatin1String(", "));
    }
    const QString minimum = field.minimum().toString();
    const QString maximum = field.maximum().toString();
    if (minimum.isEmpty()) {
        return maximum.isEmpty() ? QString() : QStringLiteral("to %1").arg(maximum);
    }
    return maximum.isEmpty() ? QStringLiteral("from %1").arg(minimum)
                             : QStringLiteral("%1 .. %2").arg(minimum, maximum);
}

QList<TagGroup> tagGroups()
{
    return {
        {"numeric",
         {TagTypeByte, TagTypeShort, TagTypeInt, TagTypeUByte, TagTypeUShort, TagTypeUInt, TagTypeUInt64,
          TagTypeInt64, TagTypeFloat, TagTypeDouble}},
        {"signednumeric", {TagTypeByte, TagTypeShort, TagTypeInt, TagTypeInt64}},
        {"unsignednumeric", {TagTypeUByte, TagTypeUShort, TagTypeUInt, TagTypeUInt64}},
        {"real", {TagTypeFloat, TagTypeDouble}},
    };
}

// Takes the group's types, moved by the offset, out of the list if all are in it.
bool takeGroup(QVector<TagType> &types, const TagGroup &group, int offset)
{
    QVector<TagType> members;
    for (const TagType type : group.types) {
        members.append(static_cast<TagType>(type + offset));
    }
    const bool hasAll = std::all_of(members.cbegin(), members.cend(),
                                    [&types](TagType type) { return types.contains(type); });
    if (hasAll) {
        for (const TagType type : qAsConst(members)) {
            types.removeAll(type);
        }
    }
    return hasAll;
}

QString tagTypesText(QVector<TagType> types)
{
    QStringList names;
    const QList<TagGroup> groups = tagGroups();
    for (const int offset : {0, arrayOffset}) {
        for (const TagGroup &group : groups) {
            if (takeGroup(types, group, offset)) {
                names.append(QLatin1String(offset == 0 ? "" : "array") + QLatin1String(group.name));
            }
        }
    }
    for (const TagType type : qAsConst(types)) {
        names.append(Model::tagTypeToString(type));
    }
    return names.join(QLatin1String(", "));
}

QString tagText(const FieldMetaInformation &field)
{
    if (field.type() != FieldTypeTag && !field.tagCanBeAttached()) {
        return {};
    }
    const QString types =
        field.tagAcceptedTypes().isEmpty() ? QStringLiteral("any") : tagTypesText(field.tagAcceptedTypes());
    return field.tagOnDemand() ? types + QLatin1String(" (on demand)") : types;
}

QString notesText(const FieldMetaInformation &field)
{
    QStringList notes;
    if (field.readOnly()) {
        notes.append(QStringLiteral("read-only"));
    }
    if (field.isPrivate()) {
        notes.append(QStringLiteral("private"));
    }
    if (field.isMultiLanguage()) {
        notes.append(QStringLiteral("multi-language"));
    }
    if (field.defaultFontSpecified() && field.type() != FieldTypeFont) {
        notes.append(fontText(field.defaultFont()));
    }
    if (!field.requirements().isEmpty()) {
        notes.append(QStringLiteral("shown if %1").arg(field.requirements()));
    }
    return notes.join(QLatin1String(", "));
}

QString fieldTable(const WidgetMetaInformation &widget)
{
    const auto fields = widget.fields();
    if (fields.isEmpty()) {
        return QStringLiteral("  no fields\n");
    }
    TextTable table({QStringLiteral("FIELD"), QStringLiteral("TYPE"), QStringLiteral("DEFAULT"),
                     QStringLiteral("VALUES"), QStringLiteral("TAGS"), QStringLiteral("LABEL"),
                     QStringLiteral("GROUP"), QStringLiteral("NOTES")});
    for (const FieldMetaInformation &field : fields) {
        table.addRow({field.id(), Model::fieldTypeToString(field.type()), shortened(defaultText(field)),
                      valuesText(field), tagText(field), textOf(field.display()), textOf(field.group()),
                      notesText(field)});
    }
    return QLatin1Char('\n') + table.toString(QStringLiteral("    "));
}

QString galleryText(const WidgetMetaInformation &widget)
{
    QStringList galleries;
    if (widget.showInPageGallery()) {
        galleries.append(QStringLiteral("page"));
    }
    if (widget.showInProjectGallery()) {
        galleries.append(QStringLiteral("project"));
    }
    if (galleries.isEmpty()) {
        return QStringLiteral("not shown");
    }
    const QString group = textOf(widget.galleryGroupName());
    return QStringLiteral("%1, %2").arg(galleries.join(QLatin1String(" and ")),
                                        group.isEmpty() ? QStringLiteral("default group")
                                                        : QStringLiteral("group %1").arg(quoted(group)));
}

QString sizeText(const QSizeF &size)
{
    return size.isValid()
               ? QStringLiteral("%1x%2").arg(QString::number(size.width()), QString::number(size.height()))
               : QString();
}

QString widgetText(const Model &plugin, const WidgetMetaInformation &widget)
{
    const QString latest = isLatest(plugin, widget) ? QStringLiteral(" (latest)") : QString();
    return QStringLiteral("\nWidget %1 %2%3\n").arg(widget.id(), widget.version().version(), latest)
           + line(QStringLiteral("display"), textOf(widget.display()))
           + line(QStringLiteral("description"), textOf(widget.description()))
           + line(QStringLiteral("default size"), sizeText(widget.defaultSize()))
           + line(QStringLiteral("gallery"), galleryText(widget))
           + line(QStringLiteral("alarms"),
                  widget.receiveAlarmsEvents() ? QStringLiteral("receives alarm events") : QString())
           + fieldTable(widget);
}

QString languagesText(const Model &plugin)
{
    QStringList languages{plugin.defaultLanguage() + QLatin1String(" (default)")};
    languages += plugin.translation();
    return languages.join(QLatin1String(", "));
}

} // namespace

QString describeAsText(const Model &plugin, const QString &libraryPath)
{
    QString text =
        QStringLiteral("Plugin %1 %2\n").arg(printable(textOf(plugin.name())), plugin.version().version())
        + line(QStringLiteral("id"), plugin.id()) + line(QStringLiteral("author"), plugin.author())
        + line(QStringLiteral("description"), textOf(plugin.description()))
        + line(QStringLiteral("copyright"), textOf(plugin.copyright()))
        + line(QStringLiteral("license"), textOf(plugin.license()))
        + line(QStringLiteral("languages"), languagesText(plugin))
        + line(QStringLiteral("library"), libraryPath)
        + line(QStringLiteral("widgets"), QString::number(plugin.widgets().size()));
    for (const WidgetMetaInformation &widget : plugin.widgets()) {
        text += widgetText(plugin, widget);
    }
    return text;
}
