// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <kora/dev/diagnosis/finding.h>

// A packed plugin is a tar archive of its plugin folder, without compression: "<id>/SHA256SUMS", in the form of
// sha256sum, then all other files by name. Owners, times and permissions are fixed, so that equal folders give equal
// archives, on every machine.

/// The archive of the plugin folder @p folder, which must be one that hosts can load. Empty, with the reason in
/// @p problem, if it is not.
QByteArray packPluginFolder(const QString &folder, QString &problem);

/// All that is wrong with the archive @p path; empty if it is, byte by byte, what packPluginFolder() has written.
KORA::DEV::Findings verifyArchive(const QString &path);

/// Whether the file is a tar archive, by its content.
bool isArchive(const QString &path);
