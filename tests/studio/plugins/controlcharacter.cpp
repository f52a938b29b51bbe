// SPDX-License-Identifier: Apache-2.0
#include <kora/kora.h>

class ControlCharacterLibrary : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "controlcharacter.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)
};

#include "controlcharacter.moc"
