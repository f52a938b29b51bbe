// SPDX-License-Identifier: Apache-2.0
#include <kora/core/files_p.h>

#include <QtCore/QSaveFile>

namespace KORA {
namespace INTERNAL {

bool writeThrough(QFileDevice &file, const QByteArray &data)
{
    // A disk that fills up takes a part and gives no reason. It gives one when it is asked to take the rest.
    qint64 done = 0;
    qint64 written = 0;
    do {
        written = file.write(data.constData() + done, data.size() - done);
        done += qMax(written, qint64(0));
    } while (written > 0 && done < data.size());
    if (done < data.size()) {
        return false;
    }
    if (!file.flush()) {
        file.flush(); // for the reason, as above
        return false;
    }
    return file.error() == QFileDevice::NoError;
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
