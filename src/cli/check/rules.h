// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <kora/dev/diagnosis/finding.h>

#include <vector>

/// A check of `kora check`, as `kora explain` tells of it.
struct Rule
{
    const char *id;
    KORA::DEV::Finding::Severity severity;
    const char *meaning;
    const char *cause;
    const char *example; ///< what is right, or the way there
};

/// A code of the library's metadata parser; its text is WidgetLibraryPluginUtils::errorToString().
struct CodeHelp
{
    int code;
    const char *cause;
    const char *remedy;
    const char *example;
};

/// All rules, in the order in which they are listed.
const std::vector<Rule> &allRules();
/// Null for a name that is no rule.
const Rule *findRule(const QString &id);

const std::vector<CodeHelp> &allCodes();
/// Null for a number that the parser does not return.
const CodeHelp *findCode(int code);

QString severityName(KORA::DEV::Finding::Severity severity);
