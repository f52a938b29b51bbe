// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginmetainformation.h>

#include <iterator>

#include <kora/core/fieldtypes_p.h>
#include <kora/core/translatablestringlist_p.h>

namespace KORA {
namespace INTERNAL {

class WidgetLibraryPluginMetaInformationPrivate : public QSharedData
{
public:
    WidgetLibraryPluginMetaInformation::WidgetMap widgets;
    QList<TranslationStringType> pageGroups;
    QList<TranslationStringType> projectGroups;
    bool pageDefaultGroupIsUsed = false;
    bool projectDefaultGroupIsUsed = false;
};

namespace {

const char *const tagTypeNames[] = {
    "",           "bool",       "byte",        "short",      "int",         "ubyte",     "ushort",
    "uint",       "uint64",     "int64",       "float",      "double",      "string",    "arraybool",
    "arraybyte",  "arrayshort", "arrayint",    "arrayubyte", "arrayushort", "arrayuint", "arrayuint64",
    "arrayint64", "arrayfloat", "arraydouble",
};

bool isUnnamed(const TranslationStringType &group)
{
    return group.get(group.defaultLanguage, false).isEmpty();
}

// A group without a name is the gallery's default group, which is flagged instead of listed.
void addGroup(const TranslationStringType &group, QList<TranslationStringType> &groups, bool &defaultIsUsed)
{
    if (isUnnamed(group)) {
        defaultIsUsed = true;
    } else if (!groups.contains(group)) {
        groups.append(group);
    }
}

QMap<QString, WidgetMetaInformation>
latestVersions(const WidgetLibraryPluginMetaInformation::WidgetMap &widgets)
{
    QMap<QString, WidgetMetaInformation> latest;
    for (const WidgetMetaInformation &widget : widgets) {
        const auto known = latest.constFind(widget.id());
        if (known == latest.constEnd() || widget.version() >= known->version()) {
            latest.insert(widget.id(), widget);
        }
    }
    return latest;
}

void addFieldTexts(const FieldMetaInformation &field, TranslatableStringList &texts)
{
    texts.add(field.display());
    texts.add(field.description());
    texts.add(field.group());
    texts.add(field.displayFontFamily());
    texts.add(field.displayFontSize());
    texts.add(field.displayFontBold());
    texts.add(field.displayFontStyle());
    texts.add(field.displayFontUnderline());
    const auto options = field.options();
    for (const OptionType &option : options) {
        texts.add(option.text);
    }
    const auto defaultTexts = field.defaultTexts();
    for (const TranslationStringType &text : defaultTexts) {
        texts.add(text);
    }
}

} // namespace

WidgetLibraryPluginMetaInformation::WidgetLibraryPluginMetaInformation()
    : d(new WidgetLibraryPluginMetaInformationPrivate)
{}

WidgetLibraryPluginMetaInformation::WidgetLibraryPluginMetaInformation(
    const WidgetLibraryPluginMetaInformation &other) = default;

WidgetLibraryPluginMetaInformation &
WidgetLibraryPluginMetaInformation::operator=(const WidgetLibraryPluginMetaInformation &other) = default;

WidgetLibraryPluginMetaInformation::~WidgetLibraryPluginMetaInformation() = default;

void WidgetLibraryPluginMetaInformation::init(const WidgetMap &widgets)
{
    d->widgets = widgets;
    d->pageGroups.clear();
    d->projectGroups.clear();
    d->pageDefaultGroupIsUsed = false;
    d->projectDefaultGroupIsUsed = false;
    const auto latest = latestVersions(widgets);
    for (const WidgetMetaInformation &widget : latest) {
        if (widget.showInPageGallery()) {
            addGroup(widget.galleryGroupName(), d->pageGroups, d->pageDefaultGroupIsUsed);
        }
        if (widget.showInProjectGallery()) {
            addGroup(widget.galleryGroupName(), d->projectGroups, d->projectDefaultGroupIsUsed);
        }
    }
}

const WidgetLibraryPluginMetaInformation::WidgetMap &WidgetLibraryPluginMetaInformation::widgets() const
{
    return d->widgets;
}

const QList<TranslationStringType> &WidgetLibraryPluginMetaInformation::pageWidgetsGalleryGroups() const
{
    return d->pageGroups;
}

const QList<TranslationStringType> &WidgetLibraryPluginMetaInformation::projectWidgetsGalleryGroups() const
{
    return d->projectGroups;
}

bool WidgetLibraryPluginMetaInformation::pageWidgetsDefaultGalleryGroupIsUsed() const
{
    return d->pageDefaultGroupIsUsed;
}

bool WidgetLibraryPluginMetaInformation::projectWidgetsDefaultGalleryGroupIsUsed() const
{
    return d->projectDefaultGroupIsUsed;
}

QMap<QString, WidgetMetaInformation> WidgetLibraryPluginMetaInformation::widgetsLatestVersion() const
{
    return latestVersions(d->widgets);
}

QList<TranslationStringType>
WidgetLibraryPluginMetaInformation::translatableStrings(const QString &language) const
{
    QList<TranslationStringType> list = PluginMetaInformation::translatableStrings(language);
    TranslatableStringList texts(list, language);
    for (const WidgetMetaInformation &widget : qAsConst(d->widgets)) {
        texts.add(widget.display());
        texts.add(widget.description());
        texts.add(widget.galleryGroupName());
        const auto fields = widget.fields();
        for (const FieldMetaInformation &field : fields) {
            addFieldTexts(field, texts);
        }
    }
    return list;
}

void WidgetLibraryPluginMetaInformation::clear()
{
    PluginMetaInformation::clear();
    d->widgets.clear();
}

QString WidgetLibraryPluginMetaInformation::fieldTypeToString(FieldType type)
{
    return type >= FieldTypeUndefined && type <= FieldTypeTrend ? QLatin1String(fieldTypeTraits(type).name)
                                                                : QString();
}

FieldType WidgetLibraryPluginMetaInformation::fieldTypeFromString(const QString &text)
{
    for (int type = FieldTypeString; type <= FieldTypeTrend; ++type) {
        const QLatin1String name(fieldTypeTraits(type).name);
        if (text.size() == name.size() && text.compare(name, Qt::CaseInsensitive) == 0) {
            return static_cast<FieldType>(type);
        }
    }
    return FieldTypeUndefined;
}

QString WidgetLibraryPluginMetaInformation::tagTypeToString(TagType type)
{
    const bool isTagType = type >= TagTypeNone && type < static_cast<int>(std::size(tagTypeNames));
    return QLatin1String(tagTypeNames[isTagType ? type : TagTypeNone]);
}

TagType WidgetLibraryPluginMetaInformation::tagTypeFromString(const QString &text)
{
    for (int type = TagTypeBool; type < static_cast<int>(std::size(tagTypeNames)); ++type) {
        if (text == QLatin1String(tagTypeNames[type])) {
            return static_cast<TagType>(type);
        }
    }
    return TagTypeNone;
}

bool WidgetLibraryPluginMetaInformation::fieldTypeCanBeUsedInARequirementsExpression(FieldType type)
{
    return fieldTypeTraits(type).canBeUsedInRequirements;
}

} // namespace INTERNAL
} // namespace KORA
