// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>

/// Something that the parser takes and the author hardly meant.
struct MetadataLint
{
    const char *rule;
    QString pointer;    ///< within the object "MetaData"
    bool atKey = false; ///< the key is meant, not its value
    QString message;
    QString hint;
};

/// @p repaired is what findMetadataFaults() made of @p metaData: nothing is said twice.
QVector<MetadataLint> lintMetadata(const QJsonObject &metaData, const QJsonObject &repaired);

/// The one of @p candidates that was probably meant by @p text; empty if none is near.
QString nearestOf(const QString &text, const QStringList &candidates);
