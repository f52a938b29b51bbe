// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QFont>

#include <kora/core/bound.h>
#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/export.h>

class QJsonObject;
class QJsonValue;

namespace KORA {
namespace INTERNAL {

/// Reads a widget library's metadata, and writes and reads the text forms of field values.
///
/// Readers return 0 or an error code, whose text errorToString() gives. They assign their output only when all
/// checks passed.
class KORA_EXPORT WidgetLibraryPluginUtils
{
public:
    using TranslationStringType = INTERNAL::TranslationStringType;

    WidgetLibraryPluginUtils() = delete;

    // Metadata ---------------------------------------------------------------------------------------------

    /// Reads a plugin's whole metadata (as QPluginLoader::metaData() gives it): the generic part, then the
    /// array "widgets" with their fields. The first invalid entry refuses the library; @p info then holds the
    /// generic part, if that was valid, and its widgets are as they were before.
    static int metaInformationFromMetaData(const QJsonObject &pluginMetaData,
                                           WidgetLibraryPluginMetaInformation &info);
    /// Reads one element of "widgets". Its texts get their translations from @p translations and are added to
    /// them.
    static int infoFromMetaDataParseWidget(const QJsonValue &value, WidgetMetaInformation &widget,
                                           const QString &pluginId, const QString &defaultLanguage,
                                           QList<TranslationStringType> &translations);
    /// Reads one element of a widget's "fields".
    static int infoFromMetaDataParseField(const QJsonValue &value, FieldMetaInformation &field,
                                          const QString &pluginId, const QString &defaultLanguage,
                                          QList<TranslationStringType> &translations);
    /// Reads a font object, any of "family", "size", "bold", "style", "underline" over defaultFont().
    static bool infoFromMetaDataParseFontObject(const QJsonObject &object, QFont &font);
    /// Reads the keys that string, stringList and stringMap fields share: "multiLanguage" and "defaultFont".
    static int infoFromMetaDataParseStringFieldCommon(const QJsonObject &object, FieldMetaInformation &field);
    /// Reads "multiLanguage"; false is the default. False if it is present and no boolean.
    static bool infoFromMetaDataParseStringFieldIsMultiLanguage(const QJsonObject &object,
                                                                bool &multiLanguage);
    /// The text of a code; codes outside 10000 to 10042 are those of PluginUtils.
    static QString errorToString(int code);

    // Field values -----------------------------------------------------------------------------------------

    /// The text form of a value, used in the design tool's documents; empty for types that store no value.
    static QString fieldValueToString(int fieldType, const QVariant &value);
    /// The value of a text form; what does not parse gives the type's zero.
    static QVariant fieldValueFromString(int fieldType, const QString &text);
    /// A compact JSON object with "bold", "family", "size" (points), "style" and "underline".
    static QString fieldFontToString(const QFont &font);
    /// The font of a text form. With @p ok the text is checked strictly: every key must be there, "bold" and
    /// "underline" as numbers. The booleans that fieldFontToString() writes deliberately do not pass.
    static QFont fieldFontFromString(const QString &text, bool *ok);
    /// Reads "<width>x<height>", both at least 0; else @p size is (-1, -1) and the result false.
    static bool convertStringTo(const QString &text, QSizeF &size);
    /// Roboto, 10 points, normal.
    static QFont defaultFont();
    /// Whether the family is one of the five Roboto families that panels have; ignores case.
    static bool fontFamilyIsValid(const QString &family);
    /// What a host sets for @p value: an integer or double clamped to the bounds that the widget's metadata
    /// gives for the field, any other value as it is.
    static QVariant fieldValueCheckBeforeSet(int fieldType, const QVariant &value, const QString &fieldId,
                                             const WidgetMetaInformation &widget);
};

} // namespace INTERNAL
} // namespace KORA
