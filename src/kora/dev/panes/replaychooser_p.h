// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <functional>

class QWidget;

namespace KORA {
namespace DEV {

/// Lets the user choose a file of recorded values, without blocking the window. @p take gets its path, relative to
/// @p folder if it lies in there.
void chooseReplayFile(QWidget *parent, const QString &folder,
                      const std::function<void(const QString &)> &take);

} // namespace DEV
} // namespace KORA
