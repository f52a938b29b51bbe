// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

class CheckRun;

/// A named check of one widget version. Its findings have the rule "load-<name>".
struct LoadCheck
{
    const char *name;
    const char *meaning;
    /// Whether the widget's further checks are pointless when this one finds an error.
    bool isPrecondition;
    void (*run)(CheckRun &run);
};

/// In the order in which they run.
const QVector<LoadCheck> &widgetChecks();

/// The checks of the plugin as a whole: "load" before and "unload" after all others, "registration" between.
extern const char loadCheckName[];
extern const char registrationCheckName[];
extern const char unloadCheckName[];

/// Whether the plugin registers the widgets that its metadata declares and no others.
void checkRegistration(CheckRun &run);
