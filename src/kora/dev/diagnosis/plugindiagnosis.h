// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <kora/dev/diagnosis/finding.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

// Why a widget library is not loaded, one rule per cause. Qt and the plugin loader tell several causes in the same
// words, some of them misleading: a library for another processor is "No such file or directory".

/// The platform of this build as plugin folders name it, such as "linux/arm64".
KORA_EXPORT QString thisPlatform();

/// The platform that the folders above a library name, "linux/arm64" of ".../linux/arm64/lib<id>.so"; empty for
/// folders that are no platform's.
KORA_EXPORT QString platformOfLibrary(const QString &path);

/// Where the library for @p platform lies in a plugin folder.
KORA_EXPORT QString libraryPathInFolder(const QString &folder, const QString &platform);

/// All that keeps the loader of this build from loading a plugin folder, as far as it can be seen without running
/// code of the plugin; empty if nothing does. The first code of the metadata's parser is among it.
KORA_EXPORT Findings diagnosePluginFolder(const QString &folder);

/// The same for a library file alone, but without its metadata's widgets: the file, its ELF headers, Qt's section in
/// it, the interface identifier and the id. @p expectedId is the folder's name, or empty for any id. @p platform is
/// the one that the library is to run on; empty for any.
KORA_EXPORT Findings diagnoseLibrary(const QString &path, const QString &expectedId = {},
                                     const QString &platform = thisPlatform());

/// The cause of a load that failed: what diagnoseLibrary() finds, or else what the dynamic loader says, with C++ names
/// of missing symbols in readable form and missing libraries by name. @p errorText is what QPluginLoader said; without
/// it the library is loaded once more, which runs its code. Empty if that succeeds.
KORA_EXPORT Findings diagnoseLoadFailure(const QString &path, const QString &errorText = {});

/// What Qt put into a library beside its code.
struct LibraryMetaData
{
    bool isValid = false;
    QJsonObject object; ///< as QPluginLoader::metaData() gives it: "IID", "className", "MetaData"
    int qtMajor = 0;
    int qtMinor = 0;
    bool isDebug = false;
};

/// Reads it without Qt's loader, so for libraries of any processor. Invalid if the file has none.
KORA_EXPORT LibraryMetaData readLibraryMetaData(const QString &path);

} // namespace DEV
} // namespace KORA
