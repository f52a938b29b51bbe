// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>

#include <kora/core/fieldinfo.h>
#include <kora/core/versiontype.h>

struct QMetaObject;

namespace KORA {

class Widget;
class WidgetActionManager;

/// What a widget is constructed from. The framework fills it; a widget class passes it on to Widget.
class WidgetData
{
public:
    QString id;
    INTERNAL::VersionType version;
    QString pluginId;
    QMap<QString, INTERNAL::FieldInfo> fieldInfo;
    const QMetaObject *graphicsObjectClass = nullptr;
    KORA::WidgetActionManager *widgetActionManager = nullptr;
};

/// What a graphics object is constructed from. The framework fills it; a graphics object class passes it on to
/// GraphicsObject.
class GraphicsObjectData
{
public:
    QString id;
    INTERNAL::VersionType version;
    KORA::Widget *widget = nullptr;
    KORA::WidgetActionManager *widgetActionManager = nullptr;
};

} // namespace KORA
