// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/kora.h>

namespace Plant {

/// The root of the library: registers the classes of the widgets that plant.json declares.
class PlantPlugin : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "plant.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)

public:
    PlantPlugin();
};

} // namespace Plant
