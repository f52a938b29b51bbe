// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>

/// Turns the signals that ask a process to end (Ctrl+C, a closed terminal, the system's end) into Qt's. One per
/// process, on the main thread.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);

Q_SIGNALS:
    void endRequested();
};
