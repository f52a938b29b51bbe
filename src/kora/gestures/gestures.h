// SPDX-License-Identifier: Apache-2.0
#pragma once
#include <kora/export.h>
namespace KORA {
KORA_EXPORT bool koraGesturesInit();
}
