// SPDX-License-Identifier: Apache-2.0
//
// A widget library of a benchmark. Copies of it become other plugins when the id in the metadata is replaced.
#include <kora/runtime/widgetlibraryplugin.h>

class BenchmarkPlugin : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "plugin.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)
};

#include "plugin.moc"
