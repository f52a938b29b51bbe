// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>

#include <kora/core/fieldinfo.h>
#include <kora/core/versiontype.h>
#include <kora/export.h>
#include <kora/runtime/invokableconstructor_p.h>
#include <kora/runtime/widgetlibraryplugin.h>

namespace KORA {

namespace INTERNAL {
class WidgetActionManagerImpl;
} // namespace INTERNAL

/// A host's hold on a widget library: it makes the widget instances.
class KORA_EXPORT WidgetLibraryPluginPrivate
{
public:
    using FieldInfo = INTERNAL::FieldInfo;

    /// The classes of one registered widget; static data of the plugin's library.
    struct WidgetMetaInfo
    {
        /// Looks up once what every instance takes. Each class may be null.
        explicit WidgetMetaInfo(const QMetaObject *widgetClass = nullptr,
                                const QMetaObject *graphicsObjectClass = nullptr,
                                const QString &versionText = {})
            : widgetClass(widgetClass)
            , graphicsObjectClass(graphicsObjectClass)
            , version(versionText)
            , widgetConstructor(widgetClass, "KORA::WidgetData")
            , graphicsObjectConstructor(graphicsObjectClass, "KORA::GraphicsObjectData")
        {}

        const QMetaObject *widgetClass;
        const QMetaObject *graphicsObjectClass;
        INTERNAL::VersionType version;
        InvokableConstructor widgetConstructor;
        InvokableConstructor graphicsObjectConstructor;
    };

    /// Makes a widget, without parent, with an action manager of its own on @p actionManagerImpl; the caller
    /// owns both, the manager through Widget::widgetActionManager(). @p fieldInfo is that of the widget's
    /// metadata.
    ///
    /// Null if (@p widgetId, @p version) is not registered, to the letter, or the class has no invokable
    /// constructor taking `const KORA::WidgetData &`.
    QObject *newWidgetInstance(const QString &widgetId, const QString &version, const QString &pluginId,
                               const QMap<QString, FieldInfo> &fieldInfo,
                               KORA::INTERNAL::WidgetActionManagerImpl *actionManagerImpl) const;

    /// (widget id, version text) to classes.
    QMap<QPair<QString, QString>, WidgetMetaInfo> widgetRegistry;
};

namespace INTERNAL {

class KORA_EXPORT WidgetLibraryPluginPrivateAccessor
{
public:
    static WidgetLibraryPluginPrivate *priv(KORA::WidgetLibraryPlugin *plugin);
};

} // namespace INTERNAL
} // namespace KORA
