// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class LoadCheckReport;

/// What a run of checks is about.
struct LoadCheckPlan
{
    QString libraryPath;
    QString expectedId; ///< what the plugin's id must be; empty for any
    quint32 seed = 1;
    int timeLimitMs = 20000; ///< of each check; the checks that can do with less keep well below it
    QStringList widgets;     ///< "gauge" or "gauge@1.0.0"; empty for all
    QStringList checks;      ///< names; empty for all
    int firstStep = 0;       ///< what comes before was done by an earlier run
};

/// Loads the library, takes every step of the plan and tells the report, in this process: needs a QApplication and
/// dies with the plugin's code.
void takeCheckSteps(const LoadCheckPlan &plan, LoadCheckReport &report);
