// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>

#include <kora/core/widgetlibrarypluginutils.h>

namespace KORA {
namespace INTERNAL {

/// A page of a gallery as the list of pages shows it, and the number in the name of its file.
struct GalleryPage
{
    TranslationStringType group;
    int fileNumber;
};

/// The groups that get a gallery file, by file number; the default group, where it is used, is the unnamed one
/// in front.
QList<TranslationStringType> galleryFileGroups(const WidgetLibraryPluginMetaInformation &meta,
                                               WidgetLibraryPluginUtils::GalleryType type);

/// The pages that the design tool lists. The default group is not listed beside a group that equals it: that
/// group's file holds the widgets of both.
QList<GalleryPage> galleryPages(const WidgetLibraryPluginMetaInformation &meta,
                                WidgetLibraryPluginUtils::GalleryType type, const QString &languageId);

/// The group itself, or "Basic" for an unnamed one.
TranslationStringType namedGroup(const TranslationStringType &group, const QString &languageId);

} // namespace INTERNAL
} // namespace KORA
