// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVariant>

#include <deque>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// The latest values of a tag, each from the moment of its change on. Times are milliseconds after the clock's start.
class KORA_EXPORT TagHistory
{
public:
    static constexpr std::size_t Capacity = 10000;

    struct Sample
    {
        qint64 time = 0;
        QVariant value; ///< invalid: the tag was unknown
    };

    /// A second value at the same moment takes the place of the first; a moment before the last one is taken for
    /// the last one.
    void record(qint64 time, const QVariant &value);
    void clear() { m_samples.clear(); }
    const std::deque<Sample> &samples() const { return m_samples; }
    /// The latest sample at or before that moment; null if the history starts later.
    const Sample *sampleAt(qint64 time) const;

private:
    std::deque<Sample> m_samples;
};

} // namespace DEV
} // namespace KORA
