// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>

/// How much two pictures of one size differ. Anti-aliased edges come out a little different on other processors: a
/// step of a colour that nobody sees is no difference, nor are a few pixels of a page.
struct PictureDifference
{
    static constexpr int toleratedStep = 2;          ///< of a colour channel, of 255
    static constexpr double toleratedShare = 0.0001; ///< of the pixels

    int pixels = 0; ///< that differ by more than the tolerated step
    int largestStep = 0;
    int total = 0;
    QImage picture; ///< the first picture, faded, with what differs in red

    bool isTolerated() const { return pixels <= toleratedShare * total; }
};

/// Both are to be of one size.
PictureDifference differenceOf(const QImage &golden, const QImage &picture);

/// Writes a PNG file at once; false with the reason in @p problem.
bool savePicture(const QImage &image, const QString &path, QString &problem);
