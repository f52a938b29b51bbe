// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>

#include <malloc.h>

/// What a process has taken for itself, in bytes.
struct Memory
{
    double heap; ///< in use on the heap; the same under emulation
    double
        written; ///< pages that this process has written, and no other shares; with the emulator's under emulation

    static Memory now()
    {
        malloc_trim(0); // what is free on the heap would hide pages that are written next
        const struct mallinfo2 info = mallinfo2();
        return {double(info.uordblks + info.hblkhd), privateDirty()};
    }

    Memory operator-(const Memory &other) const { return {heap - other.heap, written - other.written}; }

private:
    static double privateDirty()
    {
        QFile file(QStringLiteral("/proc/self/smaps_rollup"));
        if (!file.open(QIODevice::ReadOnly)) {
            return 0;
        }
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("Private_Dirty:")) {
                return line.simplified().split(' ').value(1).toDouble() * 1024;
            }
        }
        return 0;
    }
};
