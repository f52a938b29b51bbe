// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <kora/core/widgetlibrarypluginmetainformation.h>

/// The description as tables for people.
QString describeAsText(const KORA::INTERNAL::WidgetLibraryPluginMetaInformation &plugin,
                       const QString &libraryPath);

/// The description with everything that the metadata says; docs/command.md lists the keys.
QJsonObject describeAsJson(const KORA::INTERNAL::WidgetLibraryPluginMetaInformation &plugin,
                           const QString &libraryPath);

/// Whether the widget is in its latest version.
bool isLatest(const KORA::INTERNAL::WidgetLibraryPluginMetaInformation &plugin,
              const KORA::INTERNAL::WidgetMetaInformation &widget);
