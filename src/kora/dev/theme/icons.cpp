// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/theme/icons.h>

#include <QtCore/QHash>
#include <QtGui/QGuiApplication>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPalette>

namespace KORA {
namespace DEV {

namespace {

// The drawings, on a square of 24 units: M move, L line, C curve, Z close, O circle (x y r), R rounded rectangle
// (x y width height radius), A arc (x y r start span, degrees). What follows an F is filled, not stroked.
struct Drawing
{
    const char *name;
    const char *path;
};

const Drawing drawings[] = {
    {"activity", "M 2.5 12.5 L 7 12.5 L 10 4.5 L 14 19.5 L 17 12.5 L 21.5 12.5"},
    {"actualSize", "M 5 8 L 7 6.5 L 7 17.5 M 17 8 L 19 6.5 L 19 17.5 F O 12 9.5 1.2 O 12 14.5 1.2"},
    {"add", "M 12 5 L 12 19 M 5 12 L 19 12"},
    {"alarm", "M 6 16.5 L 6 10.5 C 6 2.5 18 2.5 18 10.5 L 18 16.5 L 20 18 L 4 18 Z M 10 21 L 14 21"},
    {"background", "R 4 4 16 16 2 F R 4.5 4.5 7.5 7.5 1 R 12 12 7.5 7.5 1"},
    {"bold", "M 7 5 L 7 19 L 13.5 19 C 18.5 19 18.5 12 13.5 12 L 7 12 M 7 5 L 12.5 5 C 17 5 17 12 12.5 12"},
    {"burst", "M 13.5 3 L 6 13.5 L 11.5 13.5 L 10 21 L 18 10 L 12.5 10 Z"},
    {"camera", "R 3 7 18 13 2.5 M 8.5 7 L 10 4.5 L 14 4.5 L 15.5 7 O 12 13.5 3.5"},
    {"check", "M 5 12.5 L 10 17.5 L 19.5 7"},
    {"clear",
     "M 5 7 L 19 7 M 9.5 7 L 9.5 4 L 14.5 4 L 14.5 7 M 7 7 L 8 20 L 16 20 L 17 7 M 10.5 11 L 10.5 16 "
     "M 13.5 11 L 13.5 16"},
    {"close", "M 6 6 L 18 18 M 18 6 L 6 18"},
    {"color", "M 12 3.5 C 7 10 5.5 12 5.5 14.5 C 5.5 22.5 18.5 22.5 18.5 14.5 C 18.5 12 17 10 12 3.5 Z"},
    {"console", "R 3 4.5 18 15 2.5 M 7 9 L 10 12 L 7 15 M 12.5 15.5 L 17 15.5"},
    {"copy", "R 8.5 8.5 12 12 2 M 15.5 5.5 L 15.5 3.5 L 3.5 3.5 L 3.5 15.5 L 5.5 15.5"},
    {"debug",
     "R 7.5 8 9 12 4.5 M 8 8 C 8 3.5 16 3.5 16 8 M 3.5 9 L 7.5 11 M 20.5 9 L 16.5 11 M 3 15 L 7.5 14.5 "
     "M 21 15 L 16.5 14.5 M 12 11 L 12 17"},
    {"down", "M 6 9.5 L 12 15.5 L 18 9.5"},
    {"duplicate",
     "R 8.5 8.5 12 12 2 M 15.5 5.5 L 15.5 3.5 L 3.5 3.5 L 3.5 15.5 L 5.5 15.5 M 14.5 12 L 14.5 17 "
     "M 12 14.5 L 17 14.5"},
    {"edit", "M 4 20 L 5 15.5 L 16 4.5 L 19.5 8 L 8.5 19 Z M 13.5 7 L 17 10.5"},
    {"error", "O 12 12 9 M 8.8 8.8 L 15.2 15.2 M 15.2 8.8 L 8.8 15.2"},
    {"eye", "M 2.5 12 C 7 4.5 17 4.5 21.5 12 C 17 19.5 7 19.5 2.5 12 Z O 12 12 3"},
    {"eyeOff", "M 2.5 12 C 7 4.5 17 4.5 21.5 12 C 17 19.5 7 19.5 2.5 12 Z M 4.5 20 L 19.5 4"},
    {"fields", "M 3.5 7 L 12 7 M 17 7 L 20.5 7 O 14.5 7 2.5 M 3.5 17 L 7 17 M 12 17 L 20.5 17 O 9.5 17 2.5"},
    {"file", "M 6 3.5 L 14 3.5 L 18.5 8 L 18.5 20.5 L 6 20.5 Z M 14 3.5 L 14 8 L 18.5 8"},
    {"fit", "M 4 9 L 4 4 L 9 4 M 15 4 L 20 4 L 20 9 M 20 15 L 20 20 L 15 20 M 9 20 L 4 20 L 4 15"},
    {"follow", "M 12 4 L 12 15 M 7 10.5 L 12 15.5 L 17 10.5 M 5 20 L 19 20"},
    {"grid", "R 4 4 16 16 2 M 4 9.5 L 20 9.5 M 4 14.5 L 20 14.5 M 9.5 4 L 9.5 20 M 14.5 4 L 14.5 20"},
    {"help", "O 12 12 9 M 9.2 9.5 C 9.2 5.5 15 6 14.8 9.7 C 14.7 11.8 12 12 12 14.2 F O 12 17.2 1.2"},
    {"history", "A 12 12 8.5 200 -320 M 4 4.5 L 4 9.5 L 9 9.5 M 12 7.5 L 12 12.5 L 15.5 14.5"},
    {"info", "O 12 12 9 M 12 11 L 12 16.5 F O 12 7.6 1.2"},
    {"instances",
     "M 12 3.5 L 21 8.5 L 12 13.5 L 3 8.5 Z M 3 12.5 L 12 17.5 L 21 12.5 M 3 16.5 L 12 21.5 L 21 16.5"},
    {"italic", "M 14.5 5 L 9.5 19 M 11 5 L 18 5 M 6 19 L 13 19"},
    {"link",
     "M 10.5 13.5 L 14 10 M 9 10 L 5.5 13.5 C 1.5 17.5 6.5 22.5 10.5 18.5 L 13.5 15.5 M 15 14 L 18.5 10.5 "
     "C 22.5 6.5 17.5 1.5 13.5 5.5 L 10.5 8.5"},
    {"lock", "R 5.5 10.5 13 9.5 2 M 8.5 10.5 L 8.5 7.5 C 8.5 2.8 15.5 2.8 15.5 7.5 L 15.5 10.5"},
    {"mark", "M 6 21 L 6 4 L 18 4 L 15 8.5 L 18 13 L 6 13"},
    {"more", "F O 5.5 12 1.7 O 12 12 1.7 O 18.5 12 1.7"},
    {"open",
     "M 3.5 19 L 3.5 5 L 9.5 5 L 11.5 7.5 L 18.5 7.5 L 18.5 10.5 M 3.5 19 L 7 10.5 L 21.5 10.5 L 18.5 19 Z"},
    {"page", "R 3 6 18 12 1.5"},
    {"palette", "R 3 5 18 14 2.5 M 7 9.5 L 9.5 12 L 7 14.5 M 12 14.5 L 16.5 14.5"},
    {"pause", "M 8.5 5.5 L 8.5 18.5 M 15.5 5.5 L 15.5 18.5"},
    {"play", "M 7.5 4.5 L 19 12 L 7.5 19.5 Z"},
    {"redo", "M 15 4.5 L 19.5 9 L 15 13.5 M 19 9 L 9.5 9 C 3 9 3 19 9.5 19 L 14 19"},
    {"reload",
     "A 12 12 8 40 150 A 12 12 8 220 150 M 19.5 3.5 L 18.6 8.2 L 14 7.2 M 4.5 20.5 L 5.4 15.8 L 10 16.8"},
    {"remove", "M 5 12 L 19 12"},
    {"restart", "A 12 12.5 8 60 -300 M 16 2 L 16.4 6 L 12.4 6.8"},
    {"revert", "M 9 5.5 L 4.5 10 L 9 14.5 M 5 10 L 14.5 10 C 21 10 21 19 14.5 19 L 11 19"},
    {"rotate", "R 3.5 10 11 10.5 1.5 M 9 5 C 15 3 19.5 7 19 13 M 16 10.5 L 19 13.5 L 21.8 10.3"},
    {"save",
     "M 4 4 L 16.5 4 L 20 7.5 L 20 20 L 4 20 Z M 8 4 L 8 9 L 15 9 L 15 4 M 7.5 20 L 7.5 13.5 L 16.5 13.5 "
     "L 16.5 20"},
    {"search", "O 10.5 10.5 6.5 M 15.5 15.5 L 20.5 20.5"},
    {"step", "M 6 5 L 14 12 L 6 19 Z M 18 5 L 18 19"},
    {"stop", "R 6 6 12 12 1.5"},
    {"tag", "M 3.5 12.5 L 3.5 4 L 12 4 L 20.5 12.5 L 12.5 20.5 Z F O 8 8.5 1.5"},
    {"touch",
     "M 9 13 L 9 5.5 C 9 3 12 3 12 5.5 L 12 11 L 17 12 C 19.5 12.5 19.5 14 19 16 L 17.8 21 L 10.5 21 "
     "L 6 15.5 C 5 13.5 7.5 12 9 14"},
    {"trend", "M 4 4 L 4 20 L 20.5 20 M 7.5 15.5 L 11 10.5 L 14.5 13 L 20 6.5"},
    {"underline", "M 7 4.5 L 7 11 C 7 17.5 17 17.5 17 11 L 17 4.5 M 5.5 20 L 18.5 20"},
    {"undo", "M 9 4.5 L 4.5 9 L 9 13.5 M 5 9 L 14.5 9 C 21 9 21 19 14.5 19 L 10 19"},
    {"unlock", "R 5.5 10.5 13 9.5 2 M 8.5 10.5 L 8.5 7 C 8.5 2.8 14.5 2.5 15.5 6"},
    {"up", "M 6 14.5 L 12 8.5 L 18 14.5"},
    {"warning", "M 12 3.5 L 21.5 20 L 2.5 20 Z M 12 9.5 L 12 14 F O 12 17 1.1"},
    {"widgets", "R 4 4 6.5 6.5 1.5 R 13.5 4 6.5 6.5 1.5 R 4 13.5 6.5 6.5 1.5 R 13.5 13.5 6.5 6.5 1.5"},
    {"zoomIn", "O 10.5 10.5 6.5 M 15.5 15.5 L 20.5 20.5 M 10.5 7.5 L 10.5 13.5 M 7.5 10.5 L 13.5 10.5"},
    {"zoomOut", "O 10.5 10.5 6.5 M 15.5 15.5 L 20.5 20.5 M 7.5 10.5 L 13.5 10.5"},
};

const qreal drawingSide = 24;
const qreal strokeWidth = 1.7;

struct Paths
{
    QPainterPath stroked;
    QPainterPath filled;
};

/// Reads the words of a drawing.
class DrawingReader
{
public:
    explicit DrawingReader(const char *text)
        : m_words(QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts))
    {}

    Paths read()
    {
        while (m_next < m_words.size()) {
            readCommand(m_words.at(m_next++).at(0).toLatin1());
        }
        return m_paths;
    }

private:
    qreal number() { return m_next < m_words.size() ? m_words.at(m_next++).toDouble() : 0; }

    QPointF point()
    {
        const qreal x = number();
        return {x, number()};
    }

    void readCommand(char command)
    {
        switch (command) {
        case 'F':
            m_path = &m_paths.filled;
            break;
        case 'M':
            m_path->moveTo(point());
            break;
        case 'L':
            m_path->lineTo(point());
            break;
        case 'Z':
            m_path->closeSubpath();
            break;
        default:
            readShape(command);
        }
    }

    void readShape(char command)
    {
        const QPointF first = point();
        if (command == 'C') {
            const QPointF second = point();
            m_path->cubicTo(first, second, point());
        } else if (command == 'O') {
            const qreal radius = number();
            m_path->addEllipse(first, radius, radius);
        } else if (command == 'R') {
            const QPointF size = point();
            const qreal radius = number();
            m_path->addRoundedRect(QRectF(first, QSizeF(size.x(), size.y())), radius, radius);
        } else {
            const qreal radius = number();
            const QRectF circle(first.x() - radius, first.y() - radius, 2 * radius, 2 * radius);
            const qreal start = number();
            m_path->arcMoveTo(circle, start);
            m_path->arcTo(circle, start, number());
        }
    }

    QStringList m_words;
    int m_next = 0;
    Paths m_paths;
    QPainterPath *m_path = &m_paths.stroked;
};

/// Draws at whatever size is asked for, in the colours that the palette has at that moment.
class BenchIconEngine : public QIconEngine
{
public:
    explicit BenchIconEngine(const Paths &paths)
        : m_paths(paths)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal side = qMin(rect.width(), rect.height());
        const QColor color = colorOf(mode);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / drawingSide, side / drawingSide);
        painter->setPen(QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(m_paths.stroked);
        painter->fillPath(m_paths.filled, color);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect({0, 0}, size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new BenchIconEngine(m_paths); }

private:
    static QColor colorOf(QIcon::Mode mode)
    {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Disabled) {
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        }
        return palette.color(QPalette::Active,
                             mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText);
    }

    Paths m_paths;
};

QHash<QByteArray, Paths> readDrawings()
{
    QHash<QByteArray, Paths> paths;
    for (const Drawing &drawing : drawings) {
        paths.insert(drawing.name, DrawingReader(drawing.path).read());
    }
    return paths;
}

} // namespace

QIcon benchIcon(const char *name)
{
    static const QHash<QByteArray, Paths> paths = readDrawings();
    const auto found = paths.find(name);
    return found == paths.end() ? QIcon() : QIcon(new BenchIconEngine(*found));
}

} // namespace DEV
} // namespace KORA
