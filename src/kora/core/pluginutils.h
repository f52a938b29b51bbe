// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

#include <kora/core/translationstringtype.h>
#include <kora/export.h>

class QJsonValue;

namespace KORA {
namespace INTERNAL {

class PluginMetaInformation;

/// Reads the part of the metadata that every plugin has. All failures come back as a code, whose text
/// errorToString() gives; some are also logged, at critical level under the category "METADATA".
class KORA_EXPORT PluginUtils
{
public:
    PluginUtils() = delete;

    /// Reads the object "MetaData" of a plugin's JSON metadata (as QPluginLoader::metaData() gives it).
    ///
    /// Returns 0, or the code of the first check that failed; @p info is then as it was before. @p metaData
    /// receives the object "MetaData" for further readers and @p translations the texts of the plugin's
    /// translation files (":/<id>/resources/translation/<language>.csv"); both may be filled on failure too.
    static int metaInformationFromMetaData(const QJsonObject &pluginMetaData, PluginMetaInformation &info,
                                           QJsonObject &metaData, QList<TranslationStringType> &translations);

    /// Reads a text, or a pair [text, comment], in @p language. If @p translations hold the pair, @p out
    /// receives all languages of the first such entry. With @p trim the text is trimmed; with @p notEmpty an
    /// empty one is refused. False for any other JSON value.
    static bool infoFromMetaDataParseTranslatableString(const QJsonValue &value, const QString &language,
                                                        const QList<TranslationStringType> &translations,
                                                        TranslationStringType &out, bool trim, bool notEmpty);

    /// Two lower-case letters, a hyphen, two upper-case letters: "en-US".
    static bool isValidLanguageCode(const QString &code);

    /// Reads a translation file: CSV in UTF-8, a header line, then lines of (text in @p defaultLanguage,
    /// comment, text in @p language).
    ///
    /// The texts are added to the first entry with that text and comment; without one a new entry is made when
    /// @p addMissing is set. False, with @p translations untouched, if the file cannot be opened, a line has
    /// not exactly three fields, or a text already has another translation.
    static bool importTranslationFile(const QString &path, QList<TranslationStringType> &translations,
                                      const QString &defaultLanguage, const QString &language,
                                      bool addMissing);

    /// The text of a code of metaInformationFromMetaData().
    static QString errorToString(int code);
};

} // namespace INTERNAL
} // namespace KORA
