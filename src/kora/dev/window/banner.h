// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <functional>

namespace KORA {
namespace DEV {

enum class BannerKind : int { Info, Success, Warning, Error };

/// A button of a message above the page.
struct BannerAction
{
    QString text;
    std::function<void()> run; ///< the message closes before
};

} // namespace DEV
} // namespace KORA
