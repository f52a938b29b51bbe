// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <kora/core/metadataerror_p.h>
#include <kora/loader/studio/gallerygroups_p.h>
#include <kora/loader/studio/xmlelement_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

// Replaced, not filled by arg(): a format without the place is the caller's choice and no reason for a warning.
QString fileName(QString format, int number)
{
    return format.replace(QLatin1String("%1"), QString::number(number));
}

void writeTranslationInfo(QXmlStreamWriter &writer)
{
    const XmlElement translationInfo(writer, QStringLiteral("translationInfo"));
    writer.writeTextElement(QStringLiteral("ctxAttribute"), QStringLiteral("id"));
    writer.writeTextElement(QStringLiteral("trAttribute"), QStringLiteral("name"));
    writer.writeTextElement(QStringLiteral("trAttribute"), QStringLiteral("label"));
}

void writePages(QXmlStreamWriter &writer, const QList<GalleryPage> &pages, const QString &languageId,
                const QString &fileFormat)
{
    const XmlElement element(writer, QStringLiteral("pages"));
    for (const GalleryPage &page : pages) {
        const QString name = page.group.get(languageId, true);
        writeLeaf(writer, QStringLiteral("page"),
                  {{QStringLiteral("displayName"), name},
                   {QStringLiteral("file"), fileName(fileFormat, page.fileNumber)},
                   {QStringLiteral("name"), name}});
    }
}

void writePageGalleryManager(QXmlStreamWriter &writer, const WidgetLibraryPluginMetaInformation &meta,
                             const QString &languageId, const QString &fileFormat)
{
    const auto pages = galleryPages(meta, WidgetLibraryPluginUtils::PageGallery, languageId);
    if (pages.isEmpty()) {
        return;
    }
    const XmlElement object(writer, QStringLiteral("object"),
                            {
                                {QStringLiteral("id"), QLatin1String("_CustomBuiltWgt_") + meta.id()},
                                {QStringLiteral("class"), QStringLiteral("GalleryMgrWgt")},
                                {QStringLiteral("label"), meta.name().get(languageId, true)},
                                {QStringLiteral("isGlobal"), QStringLiteral("true")},
                            });
    writePages(writer, pages, languageId, fileFormat);
}

void writeProjectGalleryManager(QXmlStreamWriter &writer, const WidgetLibraryPluginMetaInformation &meta,
                                const QString &languageId, const QString &fileFormat)
{
    const auto pages = galleryPages(meta, WidgetLibraryPluginUtils::ProjectGallery, languageId);
    if (pages.isEmpty()) {
        return;
    }
    const XmlElement object(writer, QStringLiteral("object"),
                            {
                                {QStringLiteral("id"), QLatin1String("_CustomBuiltWgtProject_") + meta.id()},
                                {QStringLiteral("class"), QStringLiteral("GalleryMgrWgt")},
                                {QStringLiteral("label"), meta.name().get(languageId, true)},
                                {QStringLiteral("isGlobal"), QStringLiteral("true")},
                                {QStringLiteral("type"), QStringLiteral("Project")},
                            });
    writePages(writer, pages, languageId, fileFormat);
}

} // namespace

int WidgetLibraryPluginUtils::studioDefaultsFromMetaInformation(
    const WidgetLibraryPluginMetaInformation &meta, QXmlStreamWriter &writer, const QString &languageId,
    const QString &pageFileFormat, const QString &projectPageFileFormat)
{
    const XmlElement wgtPage(writer, QStringLiteral("wgtPage"),
                             {{QStringLiteral("projectType"), QStringLiteral("HMI Project")},
                              {QStringLiteral("svgFile"), QStringLiteral("")}});
    writeTranslationInfo(writer);
    const XmlElement object(writer, QStringLiteral("object"),
                            {
                                {QStringLiteral("id"), QStringLiteral("studio_defaults")},
                                {QStringLiteral("class"), QStringLiteral("ProjectWgt")},
                                {QStringLiteral("pageType"), QStringLiteral("project")},
                                {QStringLiteral("pageSize"), QStringLiteral("100,100")},
                                {QStringLiteral("imageDBDefault"), QStringLiteral("true")},
                            });
    writePageGalleryManager(writer, meta, languageId, pageFileFormat);
    writeProjectGalleryManager(writer, meta, languageId, projectPageFileFormat);
    return MetaDataNoError;
}

} // namespace INTERNAL
} // namespace KORA
