// SPDX-License-Identifier: Apache-2.0
#pragma once

class QFileInfo;
class QString;

namespace KORA {
namespace INTERNAL {

/// Logs at critical level under "RESOURCES_GENERATION"; the source is the plugin's id where there is one.
void logResourceError(const QString &pluginId, const QString &message);

/// Whether a file can have the path. Qt prints warnings for an empty one and for one that holds a NUL.
bool isUsablePath(const QString &path);

/// Whether anything stands there; a link that leads nowhere, too.
bool entryExists(const QFileInfo &entry);

/// Removes the entry @p name of the folder @p dirPath, a folder with all that it holds. True if it is gone or was
/// not there. Refuses names that do not denote an entry of that very folder, and removes a symbolic link instead
/// of what it leads to. Nothing else in these sources removes.
bool removeEntry(const QString &dirPath, const QString &name);

} // namespace INTERNAL
} // namespace KORA
