// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVector>

#include <kora/dev/diagnosis/finding.h>

/// What a finding of kora check --load means, for who asks for its rule.
struct LoadCheckRule
{
    const char *id;
    KORA::DEV::Finding::Severity severity; ///< the worst that it comes with
    const char *meaning;
    const char *cause;
    const char *example; ///< what is right, or the way there
};

const QVector<LoadCheckRule> &loadCheckRules();
