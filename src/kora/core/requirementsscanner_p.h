// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace KORA {
namespace INTERNAL {

/// Checks the text of a field's requirements.
///
///     requirements = condition { [" "] ("&&" | "||") [" "] condition }
///     condition    = id [ [" "] ("==" | "<" | ">") [" "] value ]
///     value        = ["+" | "-"] digits | digits "." digits | "true" | "false"
///
/// with ids of ASCII letters, digits and "_"; a blank may also follow an id at the very end. It takes time
/// linear in the length: as a regular expression the language backtracks until the engine gives up, and ids of
/// 21 letters are then refused.
bool isRequirementsText(const QString &requirements);

/// Checks the same and collects the field ids that the text names.
bool scanRequirements(const QString &requirements, QStringList &fieldIds);

/// Whether the text is made of ASCII letters, digits and "_" alone; an empty one is.
bool isIdentifierText(const QString &text);

} // namespace INTERNAL
} // namespace KORA
