// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace KORA {
namespace INTERNAL {
class PluginLoader;
} // namespace INTERNAL
} // namespace KORA

class LogCollector;

/// How the page of a scenario is to be drawn.
struct ScenarioRendering
{
    QString scenario; ///< file
    QString out;      ///< file, or folder; empty for the present one
    QString golden;   ///< picture to compare with; empty for none
    QString language; ///< empty, as is the mode: the scenario's
    QString mode;
    qint64 timeMs = 0; ///< for which the simulated plant has run when the widgets start
};

/// Draws it with the one plugin of @p loader, which is loaded but not started, and tells the result. The exit code.
int renderScenario(KORA::INTERNAL::PluginLoader &loader, const ScenarioRendering &rendering,
                   LogCollector &log);
