// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>
#include <QtGui/QIcon>

#include <memory>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/init.h>
#include <kora/loader/pluginloader.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

namespace KORA {
namespace TestKit {

/// A widget library under test: a plugin folder that is loaded and started as by a host, or a plugin object with the
/// file of its metadata.
///
///     Library library(QStringLiteral(KORA_TEST_PLUGIN_FOLDER));
///     QVERIFY2(library.isValid(), qPrintable(library.problem()));
///
/// Needs a QApplication and must outlive the widgets.
class Library
{
public:
    using MetaData = KORA::INTERNAL::WidgetLibraryPluginMetaInformation;

    explicit Library(const QString &pluginFolder)
        : m_loader(std::make_unique<KORA::INTERNAL::PluginLoader>())
    {
        KORA::INTERNAL::koraInit(QIcon());
        if (!m_loader->loadFromPluginDir(pluginFolder) || !m_loader->init()) {
            m_problem =
                QStringLiteral("the plugin folder %1 was refused; `kora check` tells why").arg(pluginFolder);
            return;
        }
        const auto *data = m_loader->pluginData().first()->toWidgetLibraryPluginData();
        m_plugin = data->instance();
        m_metaData = *data->metaInformation();
    }
    /// @p plugin stays the caller's.
    Library(KORA::WidgetLibraryPlugin *plugin, const QString &metaDataPath)
        : m_plugin(plugin)
    {
        KORA::INTERNAL::koraInit(QIcon());
        QFile file(metaDataPath);
        if (!file.open(QIODevice::ReadOnly)) {
            m_problem = QStringLiteral("%1: %2").arg(metaDataPath, file.errorString());
            return;
        }
        using KORA::INTERNAL::WidgetLibraryPluginUtils;
        const QJsonObject object{
            {QStringLiteral("MetaData"), QJsonDocument::fromJson(file.readAll()).object()}};
        const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(object, m_metaData);
        if (code != 0) {
            m_problem =
                QStringLiteral("%1: %2").arg(metaDataPath, WidgetLibraryPluginUtils::errorToString(code));
        }
    }

    bool isValid() const { return m_problem.isEmpty(); }
    /// Why it is not valid.
    const QString &problem() const { return m_problem; }
    KORA::WidgetLibraryPlugin *plugin() const { return m_plugin; }
    const MetaData &metaData() const { return m_metaData; }

    /// A widget that the metadata declares, in the version or else the latest; invalid if there is none.
    KORA::INTERNAL::WidgetMetaInformation widget(const QString &id, const QString &version = {}) const
    {
        return version.isEmpty() ? m_metaData.widgetsLatestVersion().value(id)
                                 : m_metaData.widgets().value({id, version});
    }

private:
    std::unique_ptr<KORA::INTERNAL::PluginLoader> m_loader;
    KORA::WidgetLibraryPlugin *m_plugin = nullptr;
    MetaData m_metaData;
    QString m_problem;
};

} // namespace TestKit
} // namespace KORA
