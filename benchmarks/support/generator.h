// SPDX-License-Identifier: Apache-2.0
//
// The one generator of what the benchmarks read.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// A library's metadata: so many widgets of so many fields of all types. 500 widgets of 10 fields are about 1 MB.
struct LibraryShape
{
    QString id;
    int widgets;
    int fieldsPerWidget;
    bool isTranslated = false; ///< lists the language of translationFile()
};

/// The object that an author writes, and that stands under "MetaData" in a library.
QJsonObject metaDataObject(const LibraryShape &shape);

/// As Qt's plugin loader gives it.
QJsonObject pluginMetaData(const LibraryShape &shape);

/// The lines of "it-IT.csv" for the first texts of the fields of such a library.
QByteArray translationFile(const LibraryShape &shape, int entries);

inline const QString untranslatedId = QStringLiteral("5b5e9c10-0000-4000-8000-00000000f00d");
inline const QString translatedId = QStringLiteral("5b5e9c10-0000-4000-8000-00000000f11d");
