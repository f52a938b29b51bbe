// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "check/rules.h"

#include <vector>

/// The rules of kora check --load.
const std::vector<Rule> &loadCheckRules();
