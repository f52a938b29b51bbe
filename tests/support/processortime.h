// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ctime>

/// The processor time that @p work takes, in milliseconds: unlike time on the clock it is the same on a busy machine. -1
/// if @p work returns false.
template<typename Work>
double processorMilliseconds(Work work)
{
    const std::clock_t start = std::clock();
    const bool isDone = work();
    return isDone ? 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC : -1;
}
