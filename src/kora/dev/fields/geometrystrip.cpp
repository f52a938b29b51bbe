// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/geometrystrip.h>

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

#include <kora/dev/fields/numberbox.h>

namespace KORA {
namespace DEV {

namespace {

const int farthest = 100000; // pixels

struct Side
{
    const char *letter;
    const char *name;
    const char *label;
    int minimum;
    qreal (QRectF::*get)() const;
};

const Side sides[] = {
    {QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "x"), "fieldsX",
     QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "Left edge on the page, in pixels"), -farthest,
     &QRectF::x},
    {QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "y"), "fieldsY",
     QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "Top edge on the page, in pixels"), -farthest, &QRectF::y},
    {QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "w"), "fieldsWidth",
     QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "Width in pixels"), 1, &QRectF::width},
    {QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "h"), "fieldsHeight",
     QT_TRANSLATE_NOOP("KORA::DEV::GeometryStrip", "Height in pixels"), 1, &QRectF::height},
};

} // namespace

GeometryStrip::GeometryStrip(BenchDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (int side = 0; side < sideCount; ++side) {
        auto *box = new NumberBox(true);
        m_boxes[side] = box;
        box->setBounds(sides[side].minimum, farthest);
        box->setEmptyText(QString());
        box->setObjectName(QLatin1String(sides[side].name));
        box->setAccessibleName(tr(sides[side].label));
        box->setToolTip(tr(sides[side].label));
        box->setFocusPolicy(Qt::StrongFocus);
        box->installEventFilter(this);
        // Room for four digits and the arrows: the pane may be narrow.
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 26);
        auto *letter = new QLabel(tr(sides[side].letter));
        letter->setBuddy(box);
        layout->addWidget(letter);
        layout->addWidget(box, 1);
        connect(box, &NumberBox::numberEdited, this,
                [this, side](const QVariant &number) { onEdited(side, number); });
        connect(box, &NumberBox::editingFinished, this, [this] {
            m_gesture = 0;
            refresh();
        });
    }
    setWidget(nullptr);
}

void GeometryStrip::setWidget(PlacedWidget *widget)
{
    if (m_widget) {
        m_widget->disconnect(this);
    }
    m_widget = widget;
    m_gesture = 0;
    if (widget) {
        connect(widget, &PlacedWidget::changed, this, &GeometryStrip::refresh);
    }
    refresh();
}

void GeometryStrip::refresh()
{
    setEnabled(m_widget && !m_widget->isLocked());
    for (int side = 0; side < sideCount; ++side) {
        NumberBox *box = m_boxes[side];
        if (m_gesture != 0 && box->hasFocus()) {
            continue; // what is being typed is not written over
        }
        const QRectF geometry = m_widget ? m_widget->geometry() : QRectF();
        box->setNumber(m_widget ? QVariant(qRound((geometry.*sides[side].get)())) : QVariant());
    }
}

void GeometryStrip::onEdited(int side, const QVariant &number)
{
    if (!m_widget) {
        return;
    }
    QRectF geometry = m_widget->geometry();
    if (m_gesture == 0) {
        m_gesture = m_document->newGesture();
    }
    const int value = qBound(sides[side].minimum, number.toInt(), farthest);
    const QPointF position(side == 0 ? value : geometry.x(), side == 1 ? value : geometry.y());
    const QSizeF size(side == 2 ? value : geometry.width(), side == 3 ? value : geometry.height());
    m_document->setGeometries({m_widget.data()}, {QRectF(position, size)}, m_gesture);
}

void GeometryStrip::restore()
{
    m_document->cancelGesture(m_gesture);
    m_gesture = 0;
    refresh();
}

bool GeometryStrip::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && !static_cast<QWidget *>(watched)->hasFocus()) {
        event->ignore();
        return true;
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && m_gesture != 0 && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        if (event->type() == QEvent::KeyPress) {
            restore();
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace DEV
} // namespace KORA
