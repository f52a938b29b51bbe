// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>
#include <kora/runtime/plugin.h>

namespace KORA {

class KORA_EXPORT PluginPrivate
{};

namespace INTERNAL {

class KORA_EXPORT PluginPrivateAccessor
{
public:
    static PluginPrivate *priv(Plugin *plugin);
};

} // namespace INTERNAL
} // namespace KORA
