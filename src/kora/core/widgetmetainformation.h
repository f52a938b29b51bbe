// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtGui/QFont>

#include <kora/core/fieldinfo.h>
#include <kora/core/fieldtype.h>
#include <kora/core/translationstringtype.h>
#include <kora/core/versiontype.h>
#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

/// One choice of an option field.
struct KORA_EXPORT OptionType
{
    TranslationStringType text;
    int index = 0;
};

class FieldMetaInformationPrivate;
class WidgetMetaInformationPrivate;

/// A field (property) of a widget as the library's metadata declares it; an implicitly shared value.
class KORA_EXPORT FieldMetaInformation
{
public:
    FieldMetaInformation();
    /// The fields that are not named keep their defaults.
    FieldMetaInformation(const QString &id, const TranslationStringType &display,
                         const TranslationStringType &description, FieldType type, bool tagCanBeAttached,
                         const QVariant &defaultValue, bool readOnly, const TranslationStringType &group,
                         bool isPrivate, const QString &requirements, bool isValid);
    explicit FieldMetaInformation(const FieldMetaInformationPrivate &data);
    explicit FieldMetaInformation(FieldMetaInformationPrivate &&data);
    FieldMetaInformation(const FieldMetaInformation &other);
    FieldMetaInformation &operator=(const FieldMetaInformation &other);
    ~FieldMetaInformation();

    bool isValid() const;
    QString id() const;
    TranslationStringType display() const;
    TranslationStringType description() const;
    FieldType type() const;
    bool tagCanBeAttached() const;
    /// In the kind of the field's type; invalid when the metadata gives none.
    QVariant defaultValue() const;
    bool readOnly() const;
    TranslationStringType group() const;
    bool isPrivate() const;
    /// The condition under which the field is offered, as written: "mode==2 && enabled".
    QString requirements() const;
    QVariant minimum() const;
    QVariant maximum() const;
    QFont defaultFont() const;
    bool defaultFontSpecified() const;
    bool isMultiLanguage() const;
    QVector<OptionType> options() const;
    /// The labels under which the design tool shows the parts of the field's font.
    TranslationStringType displayFontFamily() const;
    TranslationStringType displayFontSize() const;
    TranslationStringType displayFontBold() const;
    TranslationStringType displayFontStyle() const;
    TranslationStringType displayFontUnderline() const;
    /// The tag types that may be attached, in ascending order; empty for any.
    QVector<TagType> tagAcceptedTypes() const;
    bool tagOnDemand() const;
    /// The default texts of a multi-language string (under 0), string list (under the position) or string map
    /// (under the index), in all languages; empty for other fields.
    QMap<int, TranslationStringType> defaultTexts() const;

    /// Whether the value is text that is kept per language: a multi-language string, string list or string map.
    /// The host owns such a value, a widget only reads it; its font is told along with it.
    bool isMultiLanguageText() const;

private:
    friend class WidgetLibraryPluginUtils;

    QSharedDataPointer<FieldMetaInformationPrivate> d;
};

/// A widget as the library's metadata declares it; an implicitly shared value.
class KORA_EXPORT WidgetMetaInformation
{
public:
    WidgetMetaInformation();
    explicit WidgetMetaInformation(const WidgetMetaInformationPrivate &data);
    explicit WidgetMetaInformation(WidgetMetaInformationPrivate &&data);
    WidgetMetaInformation(const WidgetMetaInformation &other);
    WidgetMetaInformation &operator=(const WidgetMetaInformation &other);
    ~WidgetMetaInformation();

    bool isValid() const;
    QString id() const;
    VersionType version() const;
    TranslationStringType display() const;
    TranslationStringType description() const;
    /// Width and height in pixels; (-1, -1) when the metadata gives none.
    QSizeF defaultSize() const;
    TranslationStringType galleryGroupName() const;
    bool showInPageGallery() const;
    bool showInProjectGallery() const;
    bool receiveAlarmsEvents() const;
    /// Field id to field.
    QMap<QString, FieldMetaInformation> fields() const;

    /// The field table for an instance of the widget. A multi-language text has a second entry under its id
    /// followed by ".font".
    QMap<QString, FieldInfo> fieldInfo() const;

private:
    QSharedDataPointer<WidgetMetaInformationPrivate> d;
};

} // namespace INTERNAL
} // namespace KORA
