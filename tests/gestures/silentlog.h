// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/log/logging.h>
#include <support/logrecorder.h>

/// While it lives nobody listens to the library's log: each update of a pinch writes four lines.
class SilentLog
{
public:
    SilentLog() { KORA::koraUninstallLogMessageHandlerPrivate(); }
    SilentLog(const SilentLog &) = delete;
    SilentLog &operator=(const SilentLog &) = delete;
    ~SilentLog() { LogRecorder::installUnexpectedLineHandler(); }
};
