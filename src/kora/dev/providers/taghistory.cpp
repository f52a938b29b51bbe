// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/taghistory.h>

#include <algorithm>

namespace KORA {
namespace DEV {

void TagHistory::record(qint64 time, const QVariant &value)
{
    if (!m_samples.empty() && time <= m_samples.back().time) {
        m_samples.back().value = value;
        return;
    }
    m_samples.push_back({time, value});
    if (m_samples.size() > Capacity) {
        m_samples.pop_front();
    }
}

const TagHistory::Sample *TagHistory::sampleAt(qint64 time) const
{
    const auto next =
        std::upper_bound(m_samples.cbegin(), m_samples.cend(), time,
                         [](qint64 moment, const Sample &sample) { return moment < sample.time; });
    return next == m_samples.cbegin() ? nullptr : &*std::prev(next);
}

} // namespace DEV
} // namespace KORA
