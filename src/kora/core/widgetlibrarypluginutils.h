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
class QXmlStreamWriter;

namespace KORA {
namespace INTERNAL {

/// Reads a widget library's metadata, writes and reads the text forms of field values, and writes the documents
/// that the design tool shows the library with.
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

    // The design tool's documents --------------------------------------------------------------------------
    //
    // Texts are written in @p languageId, or in the library's default language where they have none in it. Errors
    // of the writer, such as characters that XML cannot hold, show in QXmlStreamWriter::hasError().

    /// Who sees a gallery: the designer of a page, or the designer of the project.
    enum GalleryType : int { PageGallery = 0, ProjectGallery = 1 };

    /// Writes the property sheet of every widget, one element "g" each, for a root element that the caller opens
    /// and closes. A field without a valid type gives the code of "type", with elements left open.
    static int studioPropertiesFromMetaInformation(const WidgetLibraryPluginMetaInformation &meta,
                                                   QXmlStreamWriter &writer, const QString &languageId);
    /// Writes the list of the library's gallery pages; "%1" in the two formats stands for the number of the
    /// gallery file, which counts the default group as 0 where that is used. Always 0.
    static int studioDefaultsFromMetaInformation(const WidgetLibraryPluginMetaInformation &meta,
                                                 QXmlStreamWriter &writer, const QString &languageId,
                                                 const QString &pageFileFormat,
                                                 const QString &projectPageFileFormat);
    /// Writes a gallery page: the widgets of @p group in their latest versions, ready to be placed, and the table
    /// of their texts. An unnamed group is the default group, "Basic". Writes nothing for an unknown gallery type
    /// and returns the code of "showInProjectGallery".
    static int studioGalleryFromMetaInformation(const WidgetLibraryPluginMetaInformation &meta,
                                                QXmlStreamWriter &writer, const QString &languageId,
                                                const TranslationStringType &group, GalleryType galleryType);
};

} // namespace INTERNAL
} // namespace KORA
