// SPDX-License-Identifier: Apache-2.0
//
// makemetadata FILE ID WIDGETS FIELDS: writes the metadata of a benchmark's plugin.
// makemetadata FILE.csv ID WIDGETS FIELDS ENTRIES: writes translations of its texts.
#include "generator.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const LibraryShape shape{arguments.value(2), arguments.value(3).toInt(), arguments.value(4).toInt()};
    const QByteArray content = arguments.size() > 5
                                   ? translationFile(shape, arguments.at(5).toInt())
                                   : QJsonDocument(metaDataObject(shape)).toJson(QJsonDocument::Compact);
    QFile file(arguments.value(1));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() ? 0 : 1;
}
