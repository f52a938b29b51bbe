// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/dev/diagnosis/finding.h>

struct MetadataCheckOptions
{
    /// The folder's name; empty for any id.
    QString expectedId;
    /// Whether the translation files beside the metadata file are checked too.
    bool withTranslations = true;
    /// The translation files; empty: those beside the metadata file.
    QStringList translationFiles;
};

/// All faults and oddities of a metadata file (what stands inside "MetaData") in the order of its lines. Needs no
/// library and runs no code of one. The errors among them are none exactly if the library's parser accepts the
/// metadata and the translation files.
KORA::DEV::Findings checkMetadata(const QByteArray &json, const QString &fileName,
                                  const MetadataCheckOptions &options = {});

/// The same for the metadata inside a library: without places, and without translation files.
KORA::DEV::Findings checkLibraryMetadata(const QJsonObject &metaData, const QString &libraryPath);
