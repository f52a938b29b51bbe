// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

class QWidget;

namespace KORA {

namespace INTERNAL {
class WidgetLibraryPluginData;
} // namespace INTERNAL

namespace DEV {

class BenchActions;

/// All keys and what the mouse does. Not modal.
void showShortcuts(const BenchActions &actions, QWidget *parent);

/// The library that is loaded: file, build time, version, what it declares. @p plugin may be null.
void showAbout(INTERNAL::WidgetLibraryPluginData *plugin, const QString &buildTime, QWidget *parent);

} // namespace DEV
} // namespace KORA
