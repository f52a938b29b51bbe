// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>

/// One refusal of the library's metadata parser.
struct MetadataFault
{
    QString pointer; ///< within the object "MetaData"; of a missing key where it would stand
    int code = 0;
};

/// All refusals of the library's parser at once. The parser stops at the first: it is asked again with that key put
/// right, library, widgets and fields each for themselves, until it accepts what is left. No rule of the format
/// stands here, only which key a code speaks of.
struct MetadataFaults
{
    QVector<MetadataFault> faults;
    /// The metadata with every fault put right: the parser accepts it. Widgets and fields keep their indexes.
    QJsonObject repaired;
};

MetadataFaults findMetadataFaults(const QJsonObject &metaData);
