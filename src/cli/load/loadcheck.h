// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/dev/diagnosis/finding.h>

#include "loadcheckchild.h"

/// What is to be checked by running the plugin's code.
struct LoadCheckOptions
{
    QString path;       ///< as the user named it; for the hints
    QString program;    ///< the kora command, for the child processes; empty for this process's own
    LoadCheckPlan plan; ///< its firstStep is 0
    bool isInProcess =
        false; ///< in this process, for a debugger: nothing is caught and there is no time limit
};

struct LoadCheckResult
{
    KORA::DEV::Findings findings;
    bool hasDied = false; ///< a check crashed, hung, aborted or exited; a finding tells which
    QString problem; ///< a widget or check that does not exist, or no child process; empty if all was checked
};

/// Runs the checks in child processes, a new one after each that dies, which goes on with the next check. Needs no
/// application object; in the process itself a QApplication.
LoadCheckResult runLoadChecks(const LoadCheckOptions &options);
