// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/plugin.h>
#include <kora/runtime/plugin_p.h>

namespace KORA {

namespace INTERNAL {

PluginPrivate *PluginPrivateAccessor::priv(Plugin *plugin)
{
    return plugin->d.get();
}

} // namespace INTERNAL

Plugin::Plugin(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<PluginPrivate>())
{}

Plugin::~Plugin() = default;

bool Plugin::event(QEvent *event)
{
    return QObject::event(event);
}

void Plugin::aboutToLoad() {}

void Plugin::load() {}

void Plugin::aboutToUnload() {}

void Plugin::unload() {}

} // namespace KORA
