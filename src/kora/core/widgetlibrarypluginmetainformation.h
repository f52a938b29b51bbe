// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>

#include <kora/core/pluginmetainformation.h>
#include <kora/core/widgetmetainformation.h>
#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

class WidgetLibraryPluginMetaInformationPrivate;

/// What a widget library's metadata declares: the generic part, its widgets and the gallery groups that the
/// design tool offers them in. WidgetLibraryPluginUtils::metaInformationFromMetaData() fills it.
class KORA_EXPORT WidgetLibraryPluginMetaInformation : public PluginMetaInformation
{
public:
    using FieldType = INTERNAL::FieldType;
    using TagType = INTERNAL::TagType;
    using FieldInfo = INTERNAL::FieldInfo;
    using FieldMetaInformation = INTERNAL::FieldMetaInformation;
    using WidgetMetaInformation = INTERNAL::WidgetMetaInformation;
    using OptionType = INTERNAL::OptionType;

    /// (widget id, canonical version text): a library may declare several versions of a widget.
    using WidgetKey = QPair<QString, QString>;
    using WidgetMap = QMap<WidgetKey, WidgetMetaInformation>;

    WidgetLibraryPluginMetaInformation();
    WidgetLibraryPluginMetaInformation(const WidgetLibraryPluginMetaInformation &other);
    WidgetLibraryPluginMetaInformation &operator=(const WidgetLibraryPluginMetaInformation &other);
    ~WidgetLibraryPluginMetaInformation() override;

    using PluginMetaInformation::init;
    /// Sets the widgets and derives the gallery groups from the latest version of each, in widget-id order.
    void init(const WidgetMap &widgets);

    const WidgetMap &widgets() const;
    /// The named groups of the widgets that are shown in the page gallery, each once.
    const QList<TranslationStringType> &pageWidgetsGalleryGroups() const;
    const QList<TranslationStringType> &projectWidgetsGalleryGroups() const;
    /// Whether a widget that is shown in the page gallery names no group.
    bool pageWidgetsDefaultGalleryGroupIsUsed() const;
    bool projectWidgetsDefaultGalleryGroupIsUsed() const;

    /// Widget id to the widget in its highest version; by numbers, so 1.10.0 comes after 1.9.0.
    QMap<QString, WidgetMetaInformation> widgetsLatestVersion() const;

    QList<TranslationStringType> translatableStrings(const QString &language) const override;

    /// Clears the generic part and the widgets; gallery groups and their flags are deliberately kept.
    void clear() override;

    /// "string", "integer", ...; empty for a value that is no field type.
    static QString fieldTypeToString(FieldType type);
    /// Ignores case; FieldTypeUndefined for any other text, "undefined" included.
    static FieldType fieldTypeFromString(const QString &text);
    /// "bool", "arraydouble", ...; empty for TagTypeNone and for a value that is no tag type.
    static QString tagTypeToString(TagType type);
    /// Unlike field types, tag types are deliberately compared with case; TagTypeNone for any other text.
    static TagType tagTypeFromString(const QString &text);
    /// Whether a field of this type may be named in the requirements of another.
    static bool fieldTypeCanBeUsedInARequirementsExpression(FieldType type);

private:
    QSharedDataPointer<WidgetLibraryPluginMetaInformationPrivate> d;
};

} // namespace INTERNAL
} // namespace KORA
