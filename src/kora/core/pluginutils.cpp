// SPDX-License-Identifier: Apache-2.0
#include <kora/core/pluginutils.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <iterator>

#include <kora/core/jsonreading_p.h>
#include <kora/core/metadataerror_p.h>
#include <kora/core/pluginmetainformation.h>
#include <kora/core/translatablestringlist_p.h>
#include <kora/core/uuid_p.h>
#include <kora/log/logging.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String metaDataKey("MetaData");
const QLatin1String nameKey("name");
const QLatin1String idKey("id");
const QLatin1String authorKey("author");
const QLatin1String versionKey("version");
const QLatin1String copyrightKey("copyright");
const QLatin1String descriptionKey("description");
const QLatin1String licenseKey("license");
const QLatin1String defaultLanguageKey("defaultLanguage");
const QLatin1String translationKey("translation");

const char *const errorTexts[] = {
    "no error",
    "Generig error",
    "MetaData attribute not present",
    "MetaData attribute not valid",
    "MetaData/name attribute not present",
    "MetaData/name attribute not valid",
    "MetaData/id attribute not present",
    "MetaData/id attribute not valid",
    "MetaData/author attribute not present",
    "MetaData/author attribute not valid",
    "MetaData/version attribute not present",
    "MetaData/version attribute not valid",
    "MetaData/copyright attribute not valid",
    "MetaData/description attribute not valid",
    "MetaData/license attribute not valid",
    "MetaData/defaultLanguage attribute is not valid",
    "MetaData/translation attribute is not valid",
    "Errore reading translation files",
};

/// Reads the object "MetaData", key by key; each step returns 0 or its code.
class MetaDataReader
{
public:
    MetaDataReader(const QJsonObject &metaData, QList<TranslationStringType> &translations)
        : m_metaData(metaData)
        , m_translations(translations)
    {}

    int read(PluginMetaInformation &info);

private:
    int readId();
    int readTranslation();
    int readDefaultLanguage();
    int readTranslationFiles();
    int readName();
    int readAuthor();
    int readVersion();
    int readOptionalTexts();

    bool readKey(QLatin1String key, TranslationStringType &out) const;

    const QJsonObject &m_metaData;
    QList<TranslationStringType> &m_translations;

    TranslationStringType m_name;
    QString m_id;
    QString m_author;
    VersionType m_version;
    TranslationStringType m_copyright;
    TranslationStringType m_description;
    TranslationStringType m_license;
    QString m_defaultLanguage = QStringLiteral("en-US");
    QStringList m_translation;
};

int MetaDataReader::read(PluginMetaInformation &info)
{
    using Step = int (MetaDataReader::*)();
    static const Step steps[] = {
        &MetaDataReader::readId,
        &MetaDataReader::readTranslation,
        &MetaDataReader::readDefaultLanguage,
        &MetaDataReader::readTranslationFiles,
        &MetaDataReader::readName,
        &MetaDataReader::readAuthor,
        &MetaDataReader::readVersion,
        &MetaDataReader::readOptionalTexts,
    };
    for (const Step step : steps) {
        if (const int error = (this->*step)()) {
            return error;
        }
    }
    info.init(m_name, m_id, m_author, m_version, m_copyright, m_description, m_license, m_defaultLanguage,
              m_translation);
    return MetaDataNoError;
}

int MetaDataReader::readId()
{
    const auto found = m_metaData.constFind(idKey);
    if (found == m_metaData.constEnd()) {
        return MetaDataIdNotPresent;
    }
    const QString id = found.value().toString();
    if (!found.value().isString()) {
        return MetaDataIdNotValid;
    }
    if (!isUuid(id)) {
        logMetaDataError(QString(), QStringLiteral("%1 is invalid. Must be a valid UUIDv4").arg(id));
        return MetaDataIdNotValid;
    }
    m_id = id;
    return MetaDataNoError;
}

int MetaDataReader::readTranslation()
{
    const auto found = m_metaData.constFind(translationKey);
    if (found == m_metaData.constEnd()) {
        return MetaDataNoError;
    }
    if (!found.value().isArray()) {
        return MetaDataTranslationNotValid;
    }
    const QJsonArray codes = found.value().toArray();
    for (const QJsonValue &value : codes) {
        if (!value.isString()) {
            return MetaDataTranslationNotValid;
        }
        const QString code = value.toString().trimmed();
        if (!PluginUtils::isValidLanguageCode(code)) {
            logMetaDataError(m_id,
                             QStringLiteral("translation contains the invalid language code %1").arg(code));
            return MetaDataTranslationNotValid;
        }
        m_translation.append(code);
    }
    return MetaDataNoError;
}

int MetaDataReader::readDefaultLanguage()
{
    const auto found = m_metaData.constFind(defaultLanguageKey);
    if (found == m_metaData.constEnd()) {
        return MetaDataNoError;
    }
    if (!found.value().isString()) {
        return MetaDataDefaultLanguageNotValid;
    }
    const QString code = found.value().toString().trimmed();
    if (!PluginUtils::isValidLanguageCode(code)) {
        logMetaDataError(m_id, QStringLiteral("defaultLanguage %1 is an invalid language code").arg(code));
        return MetaDataDefaultLanguageNotValid;
    }
    m_defaultLanguage = code;
    return MetaDataNoError;
}

int MetaDataReader::readTranslationFiles()
{
    for (const QString &language : qAsConst(m_translation)) {
        const QString path = QStringLiteral(":/%1/resources/translation/%2.csv").arg(m_id, language);
        if (!QFile::exists(path)) {
            continue;
        }
        if (!PluginUtils::importTranslationFile(path, m_translations, m_defaultLanguage, language, true)) {
            logMetaDataError(m_id, QStringLiteral("Error reading the translation file"));
            return MetaDataTranslationFile;
        }
    }
    return MetaDataNoError;
}

bool MetaDataReader::readKey(QLatin1String key, TranslationStringType &out) const
{
    return PluginUtils::infoFromMetaDataParseTranslatableString(m_metaData.value(key), m_defaultLanguage,
                                                                m_translations, out, false, false);
}

int MetaDataReader::readName()
{
    if (!m_metaData.contains(nameKey)) {
        return MetaDataNameNotPresent;
    }
    return readKey(nameKey, m_name) ? MetaDataNoError : MetaDataNameNotValid;
}

int MetaDataReader::readAuthor()
{
    const auto found = m_metaData.constFind(authorKey);
    if (found == m_metaData.constEnd()) {
        return MetaDataAuthorNotPresent;
    }
    m_author = found.value().toString();
    return found.value().isString() ? MetaDataNoError : MetaDataAuthorNotValid;
}

int MetaDataReader::readVersion()
{
    const auto found = m_metaData.constFind(versionKey);
    if (found == m_metaData.constEnd()) {
        return MetaDataVersionNotPresent;
    }
    if (!found.value().isString()) {
        return MetaDataVersionNotValid;
    }
    const QString text = found.value().toString();
    m_version = VersionType(text);
    if (!m_version.isValid()) {
        logMetaDataError(m_id, QStringLiteral("version %1 is invalid").arg(text));
        return MetaDataVersionNotValid;
    }
    return MetaDataNoError;
}

int MetaDataReader::readOptionalTexts()
{
    const struct
    {
        QLatin1String key;
        TranslationStringType &out;
        MetaDataError error;
    } texts[] = {
        {copyrightKey, m_copyright, MetaDataCopyrightNotValid},
        {descriptionKey, m_description, MetaDataDescriptionNotValid},
        {licenseKey, m_license, MetaDataLicenseNotValid},
    };
    for (const auto &text : texts) {
        if (m_metaData.contains(text.key) && !readKey(text.key, text.out)) {
            return text.error;
        }
    }
    return MetaDataNoError;
}

} // namespace

void logMetaDataError(const QString &pluginId, const QString &message)
{
    LogHandler(pluginId, nullptr, 0, nullptr, "METADATA").critical().debug().noquote() << message;
}

int PluginUtils::metaInformationFromMetaData(const QJsonObject &pluginMetaData, PluginMetaInformation &info,
                                             QJsonObject &metaData,
                                             QList<TranslationStringType> &translations)
{
    const auto found = pluginMetaData.constFind(metaDataKey);
    if (found == pluginMetaData.constEnd()) {
        return MetaDataNotPresent;
    }
    if (!found.value().isObject()) {
        return MetaDataNotValid;
    }
    metaData = found.value().toObject();
    return MetaDataReader(metaData, translations).read(info);
}

bool PluginUtils::infoFromMetaDataParseTranslatableString(const QJsonValue &value, const QString &language,
                                                          const QList<TranslationStringType> &translations,
                                                          TranslationStringType &out, bool trim,
                                                          bool notEmpty)
{
    if (!readText(value, language, out, trim, notEmpty)) {
        return false;
    }
    const QString text = out.get(language, false);
    const auto known = std::find_if(translations.begin(), translations.end(), [&](const auto &entry) {
        return entry.get(language, false) == text && entry.comment() == out.comment();
    });
    if (known != translations.end()) {
        out = *known;
    }
    return true;
}

bool PluginUtils::isValidLanguageCode(const QString &code)
{
    // "\z", not "$": that also matches before a final line break.
    static const QRegularExpression expression(QStringLiteral("\\A[a-z][a-z]-[A-Z][A-Z]\\z"));
    return expression.match(code).hasMatch();
}

QString PluginUtils::errorToString(int code)
{
    if (code < 0 || code >= static_cast<int>(std::size(errorTexts))) {
        return QStringLiteral("error code undefined");
    }
    return QLatin1String(errorTexts[code]);
}

} // namespace INTERNAL
} // namespace KORA
