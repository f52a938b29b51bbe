// SPDX-License-Identifier: Apache-2.0
//
// comparepictures DIR OTHER_DIR: fails if the folders hold different pictures. Qt blends anti-aliased edges with other
// processor instructions on other machines, which round differently: one step of a colour, in few pixels, is the same.
#include <QtCore/QDir>
#include <QtCore/QTextStream>
#include <QtGui/QImage>

namespace {

const int toleratedStep = 1;
const int toleratedPermille = 20;

struct Difference
{
    int pixels = 0;
    int step = 0; ///< greatest of a colour channel, of 255
};

int step(QRgb a, QRgb b)
{
    return qMax(qMax(qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b))),
                qMax(qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))));
}

Difference difference(const QImage &a, const QImage &b)
{
    Difference result;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int here = step(a.pixel(x, y), b.pixel(x, y));
            result.pixels += here > 0 ? 1 : 0;
            result.step = qMax(result.step, here);
        }
    }
    return result;
}

bool isSame(const QString &path, const QString &otherPath)
{
    QTextStream out(stdout);
    const QImage picture(path);
    const QImage other(otherPath);
    if (picture.isNull() || picture.size() != other.size()) {
        out << "  " << otherPath << ": not a picture of the size of " << path << '\n';
        return false;
    }
    const Difference found = difference(picture, other);
    if (found.pixels == 0) {
        return true;
    }
    const int pixels = picture.width() * picture.height();
    const bool tolerated = found.step <= toleratedStep && found.pixels * 1000 <= pixels * toleratedPermille;
    out << "  " << otherPath << ": " << found.pixels << " of " << pixels << " pixels differ, by "
        << found.step << " of 255 at most" << (tolerated ? " (tolerated)" : "") << '\n';
    return tolerated;
}

} // namespace

int main(int argc, char **argv)
{
    QTextStream out(stdout);
    if (argc != 3) {
        out << "usage: comparepictures DIR OTHER_DIR\n";
        return 2;
    }
    const QDir dir(QString::fromLocal8Bit(argv[1]));
    const QDir otherDir(QString::fromLocal8Bit(argv[2]));
    const QStringList names = dir.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    if (names.isEmpty() || names != otherDir.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name)) {
        out << "  " << dir.path() << " and " << otherDir.path()
            << " do not hold pictures of the same names\n";
        return 1;
    }
    int different = 0;
    for (const QString &name : names) {
        different += isSame(dir.filePath(name), otherDir.filePath(name)) ? 0 : 1;
    }
    out << otherDir.path() << ": " << names.size() << " pictures compared, " << different << " different\n";
    return different == 0 ? 0 : 1;
}
