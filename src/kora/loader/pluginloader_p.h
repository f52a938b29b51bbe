// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/loader/pluginloader.h>
#include <kora/runtime/plugin.h>

class QDir;

namespace KORA {
namespace INTERNAL {

class PluginLoaderPrivate
{
public:
    /// Logs and returns true while the loader is inited: nothing may be loaded then.
    bool refuseWhenInit() const;
    /// Opens the folder; logs and returns false if it does not exist.
    bool enterDir(const QString &dirPath, QDir &dir) const;
    /// Calls the first hook on every plugin, then the second on every plugin.
    void callHooks(void (KORA::Plugin::*first)(), void (KORA::Plugin::*second)());

    bool isInit = false;
    QMap<QString, PluginData *> pluginData; // owned; deleted by PluginLoader::unload()
};

} // namespace INTERNAL
} // namespace KORA
