// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <kora/core/widgetmetainformation.h>

#include "fieldsettings.h"

namespace KORA {
namespace INTERNAL {
class WidgetLibraryPluginData;
} // namespace INTERNAL
} // namespace KORA

/// How a widget is to be shown.
struct PictureSettings
{
    QSizeF size;      ///< empty for the widget's own default size
    QString language; ///< of its multi-language texts
    bool isInsideProjectEditor = true;
    QList<FieldValue> values; ///< set after the default values
};

/// Makes the widget, gives it its values, starts it and draws it on white. A null image with the reason in
/// @p problem if that fails.
QImage pictureOf(const KORA::INTERNAL::WidgetLibraryPluginData &plugin,
                 const KORA::INTERNAL::WidgetMetaInformation &widget, const PictureSettings &settings,
                 QString &problem);
