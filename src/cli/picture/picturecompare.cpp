// SPDX-License-Identifier: Apache-2.0
#include "picturecompare.h"

#include <QtCore/QBuffer>

#include <kora/core/files_p.h>

namespace {

int stepBetween(QRgb a, QRgb b)
{
    return qMax(qMax(qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b))),
                qMax(qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))));
}

QRgb faded(QRgb color)
{
    const int grey = 191 + qGray(color) / 4;
    return qRgb(grey, grey, grey);
}

} // namespace

PictureDifference differenceOf(const QImage &golden, const QImage &picture)
{
    const QImage a = golden.convertToFormat(QImage::Format_ARGB32);
    const QImage b = picture.convertToFormat(QImage::Format_ARGB32);
    PictureDifference result;
    result.total = a.width() * a.height();
    result.picture = QImage(a.size(), QImage::Format_RGB32);
    for (int y = 0; y < a.height(); ++y) {
        const auto *lineA = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *lineB = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        auto *line = reinterpret_cast<QRgb *>(result.picture.scanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int step = stepBetween(lineA[x], lineB[x]);
            const bool differs = step > PictureDifference::toleratedStep;
            result.largestStep = qMax(result.largestStep, step);
            result.pixels += differs ? 1 : 0;
            line[x] = differs ? qRgb(0xd5, 0, 0) : faded(lineA[x]);
        }
    }
    return result;
}

bool savePicture(const QImage &image, const QString &path, QString &problem)
{
    QBuffer png;
    QString reason = QStringLiteral("it cannot be made a PNG");
    if (image.save(&png, "PNG") && KORA::INTERNAL::replaceFile(path, png.data(), reason)) {
        return true;
    }
    problem = QStringLiteral("%1 cannot be written: %2").arg(path, reason);
    return false;
}
