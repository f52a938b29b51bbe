// SPDX-License-Identifier: Apache-2.0
#include <kora/core/pluginmetainformation.h>

#include <kora/core/translatablestringlist_p.h>

namespace KORA {
namespace INTERNAL {

class PluginMetaInformationPrivate : public QSharedData
{
public:
    TranslationStringType name;
    QString id;
    QString author;
    VersionType version;
    TranslationStringType copyright;
    TranslationStringType description;
    TranslationStringType license;
    QString defaultLanguage = QStringLiteral("en-US");
    QStringList translation;
};

PluginMetaInformation::PluginMetaInformation()
    : d(new PluginMetaInformationPrivate)
{}

PluginMetaInformation::PluginMetaInformation(const PluginMetaInformation &other) = default;

PluginMetaInformation &PluginMetaInformation::operator=(const PluginMetaInformation &other) = default;

PluginMetaInformation::~PluginMetaInformation() = default;

void PluginMetaInformation::init(const TranslationStringType &name, const QString &id, const QString &author,
                                 const VersionType &version, const TranslationStringType &copyright,
                                 const TranslationStringType &description,
                                 const TranslationStringType &license, const QString &defaultLanguage,
                                 const QStringList &translation)
{
    d->name = name;
    d->id = id;
    d->author = author;
    d->version = version;
    d->copyright = copyright;
    d->description = description;
    d->license = license;
    d->defaultLanguage = defaultLanguage;
    d->translation = translation;
}

const PluginMetaInformation::TranslationStringType &PluginMetaInformation::name() const
{
    return d->name;
}

const QString &PluginMetaInformation::id() const
{
    return d->id;
}

const QString &PluginMetaInformation::author() const
{
    return d->author;
}

const PluginMetaInformation::VersionType &PluginMetaInformation::version() const
{
    return d->version;
}

const PluginMetaInformation::TranslationStringType &PluginMetaInformation::copyright() const
{
    return d->copyright;
}

const PluginMetaInformation::TranslationStringType &PluginMetaInformation::description() const
{
    return d->description;
}

const PluginMetaInformation::TranslationStringType &PluginMetaInformation::license() const
{
    return d->license;
}

const QString &PluginMetaInformation::defaultLanguage() const
{
    return d->defaultLanguage;
}

const QStringList &PluginMetaInformation::translation() const
{
    return d->translation;
}

QList<PluginMetaInformation::TranslationStringType>
PluginMetaInformation::translatableStrings(const QString &language) const
{
    QList<TranslationStringType> list;
    addTranslatableStringToList(list, d->name, language);
    return list;
}

void PluginMetaInformation::clear()
{
    d->name.clear();
    d->id.clear();
    d->author.clear();
    d->version = VersionType();
    d->defaultLanguage = QStringLiteral("en-US");
    d->translation.clear();
}

void PluginMetaInformation::addTranslatableStringToList(QList<TranslationStringType> &list,
                                                        const TranslationStringType &text,
                                                        const QString &language)
{
    TranslatableStringList(list, language).add(text);
}

} // namespace INTERNAL
} // namespace KORA
