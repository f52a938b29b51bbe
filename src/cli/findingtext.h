// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/diagnosis/finding.h>

/// A line "file:line:column: error: message [rule]" for each, with the hint below it.
QString textOfFindings(const KORA::DEV::Findings &findings);
