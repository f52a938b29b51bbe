// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/qglobal.h>

/// Marks what `libKRPluginLibrary.so` exports; everything else in it is hidden.
#if defined(KORA_BUILDING_LIBRARY)
#define KORA_EXPORT Q_DECL_EXPORT
#else
#define KORA_EXPORT Q_DECL_IMPORT
#endif
