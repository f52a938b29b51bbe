// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QColor>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// Studio is the design tool's editor: handles, no input for the widgets. Runtime is the panel.
enum class BenchMode { Studio, Runtime };

/// The page that widgets are placed on.
struct KORA_EXPORT PageState
{
    static constexpr int smallestSide = 16;
    static constexpr int largestSide = 8192;

    QSize size{800, 480};         ///< pixels, each side from smallestSide to largestSide
    QColor background{Qt::white}; ///< invalid for a checkerboard
    bool gridIsShown = true;
    int gridStep = 8; ///< pixels, from 1 to 256

    bool operator==(const PageState &other) const;
    bool operator!=(const PageState &other) const { return !(*this == other); }
};

/// All that makes a placed widget again.
struct KORA_EXPORT PlacedWidgetState
{
    int id = 0;   ///< stable while the bench runs, also over undo; not stored
    QString name; ///< unique on the page
    QString widgetId;
    QString version;
    QRectF geometry; ///< on the page, pixels
    bool isVisible = true;
    bool isLocked = false; ///< not to be moved or resized
    bool isRunning = true;
    QJsonObject values; ///< field id to the JSON form of its value; those that differ from the default
    QJsonObject texts;  ///< field id of a multi-language text to an object of language to text
    QMap<QString, QString> bindings; ///< field id to the tag, or for a trend field the trend, that it follows
};

/// A page with widgets, their values and the simulated plant, as a file: beside a plugin's sources a state to come
/// back to and a test, in the user's state folder the bench's session.
struct KORA_EXPORT Scenario
{
    QString pluginId;
    QString language = QStringLiteral("en-US");
    BenchMode mode = BenchMode::Studio;
    PageState page;
    QVector<PlacedWidgetState> widgets; ///< bottom first
    QJsonObject providers;              ///< clock, tags, trends and alarms; see Providers::toJson()
    QJsonObject view;                   ///< zoom, scroll position and selection; of a session only

    QJsonObject toJson() const;
    /// Keys that are absent keep their defaults. False, and nothing assigned, with every fault in @p problems, each
    /// with the place it stands at.
    static bool fromJson(const QJsonObject &json, Scenario &scenario, QStringList &problems);

    /// Replaces the file at once; false with the reason in @p problem.
    bool save(const QString &path, QString &problem) const;
    static bool load(const QString &path, Scenario &scenario, QStringList &problems);
};

} // namespace DEV
} // namespace KORA
