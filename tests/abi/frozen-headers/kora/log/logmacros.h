// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/log/logging.h>

/// Streams that carry file, line and function of the place where they stand:
///
///     koraWarning(id(), "PUMP") << "no answer from" << tag;
///
/// The source is the plugin or widget that the message is about, or an empty string; the category is a literal.
// clang-format off
#define koraDebug(sourceId, category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).debug().debug()
#define koraInfo(sourceId, category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).info().debug()
#define koraWarning(sourceId, category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).warning().debug()
#define koraCritical(sourceId, category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).critical().debug()
// clang-format on
