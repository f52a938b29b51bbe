// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/studio/gallerygroups_p.h>

namespace KORA {
namespace INTERNAL {

QList<TranslationStringType> galleryFileGroups(const WidgetLibraryPluginMetaInformation &meta,
                                               WidgetLibraryPluginUtils::GalleryType type)
{
    const bool isProject = type == WidgetLibraryPluginUtils::ProjectGallery;
    QList<TranslationStringType> groups =
        isProject ? meta.projectWidgetsGalleryGroups() : meta.pageWidgetsGalleryGroups();
    if (isProject ? meta.projectWidgetsDefaultGalleryGroupIsUsed()
                  : meta.pageWidgetsDefaultGalleryGroupIsUsed()) {
        groups.prepend(TranslationStringType());
    }
    return groups;
}

QList<GalleryPage> galleryPages(const WidgetLibraryPluginMetaInformation &meta,
                                WidgetLibraryPluginUtils::GalleryType type, const QString &languageId)
{
    QList<GalleryPage> pages;
    const QList<TranslationStringType> groups = galleryFileGroups(meta, type);
    for (int number = 0; number < groups.size(); ++number) {
        const TranslationStringType group = namedGroup(groups.at(number), languageId);
        const bool equalsOther = groups.at(number) != group && groups.contains(group);
        if (!equalsOther) {
            pages.append({group, number});
        }
    }
    return pages;
}

TranslationStringType namedGroup(const TranslationStringType &group, const QString &languageId)
{
    if (!group.get(group.defaultLanguage, false).isEmpty()) {
        return group;
    }
    TranslationStringType basic;
    basic.set(languageId, QStringLiteral("Basic"));
    return basic;
}

} // namespace INTERNAL
} // namespace KORA
