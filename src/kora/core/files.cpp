// SPDX-License-Identifier: Apache-2.0
#include <kora/core/files_p.h>

#include <QtCore/QSaveFile>

namespace KORA {
namespace INTERNAL {

bool writeThrough(QFileDevice &file, const QByteArray &data)
{
    return file.write(data) == data.size() && file.flush() && file.error() == QFileDevice::NoError;
}

bool replaceFile(const QString &path, const QByteArray &data, QString &problem)
{
    QSaveFile file(path);
    // commit() alone returns true for a file that a full disk cut off.
    if (file.open(QIODevice::WriteOnly) && writeThrough(file, data) && file.commit()) {
        return true;
    }
    problem = file.errorString();
    return false;
}

} // namespace INTERNAL
} // namespace KORA
