// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <support/logrecorder.h>

#include <QtCore/QFileInfo>
#include <QtTest/QTest>

#include <kora/host.h>

#include <kora/dev/model/benchdocument.h>

/// The example library, loaded once for a test program.
class PlantLibrary
{
public:
    PlantLibrary()
    {
        LogRecorder log;
        KORA::INTERNAL::koraInit(QIcon());
        m_loader.loadFromPluginPath(QStringLiteral(KORA_TEST_LIBRARY_plant), QString());
        m_loader.init();
        log.takeLines(); // that it was loaded
    }

    /// Null if it could not be loaded.
    KORA::INTERNAL::WidgetLibraryPluginData *data() const
    {
        const auto &plugins = m_loader.pluginData();
        return plugins.isEmpty() ? nullptr : plugins.first()->toWidgetLibraryPluginData();
    }

private:
    KORA::INTERNAL::PluginLoader m_loader;
};
