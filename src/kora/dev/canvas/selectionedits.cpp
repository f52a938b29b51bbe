// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/selectionedits.h>

#include <QtCore/QJsonDocument>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>

#include <algorithm>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

namespace {

constexpr qint64 oneStepMs = 300;
constexpr int coarseStep = 10;

QPoint arrowDirection(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

/// The positions of the selected widgets on the page, bottom first.
QVector<int> stackingIndexes(const BenchDocument &document)
{
    QVector<int> indexes;
    for (int i = 0; i < document.widgets().size(); ++i) {
        if (document.selection().contains(document.widgets().at(i))) {
            indexes.append(i);
        }
    }
    return indexes;
}

} // namespace

SelectionEdits::SelectionEdits(BenchDocument *document, QObject *parent)
    : QObject(parent)
    , m_document(document)
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] { m_pasteCount = 0; });
}

bool SelectionEdits::keyPress(const QKeyEvent &event)
{
    static const struct
    {
        QKeySequence keys;
        void (SelectionEdits::*edit)();
    } shortcuts[] = {
        {QKeySequence(QStringLiteral("Ctrl+A")), &SelectionEdits::selectAll},
        {QKeySequence(QStringLiteral("Ctrl+D")), &SelectionEdits::duplicate},
        {QKeySequence(QStringLiteral("Ctrl+X")), &SelectionEdits::cut},
        {QKeySequence(QStringLiteral("Ctrl+C")), &SelectionEdits::copy},
        {QKeySequence(QStringLiteral("Ctrl+V")), &SelectionEdits::paste},
        {QKeySequence(QStringLiteral("Ctrl+PgUp")), &SelectionEdits::bringForward},
        {QKeySequence(QStringLiteral("Ctrl+PgDown")), &SelectionEdits::sendBackward},
        {QKeySequence(QStringLiteral("Del")), &SelectionEdits::remove},
    };
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const QKeySequence keys(event.key() | static_cast<int>(modifiers));
    for (const auto &shortcut : shortcuts) {
        if (shortcut.keys == keys) {
            (this->*shortcut.edit)();
            return true;
        }
    }
    return nudgeKeyPress(event);
}

bool SelectionEdits::nudgeKeyPress(const QKeyEvent &event)
{
    const QPoint direction = arrowDirection(event.key());
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isForSelection = !direction.isNull() && m_document->current();
    if (!isForSelection || modifiers & ~(Qt::ShiftModifier | Qt::ControlModifier)) {
        return false;
    }
    const QPoint by = direction * (modifiers.testFlag(Qt::ShiftModifier) ? coarseStep : 1);
    if (modifiers.testFlag(Qt::ControlModifier)) {
        resize(by);
    } else {
        move(by);
    }
    return true;
}

QVector<PlacedWidget *> SelectionEdits::movableWidgets()
{
    QVector<PlacedWidget *> widgets;
    for (PlacedWidget *widget : m_document->selection()) {
        if (!widget->isLocked()) {
            widgets.append(widget);
        }
    }
    if (widgets.isEmpty() && m_document->current()) {
        emit message(tr("%1 is locked").arg(m_document->current()->name()));
    }
    return widgets;
}

int SelectionEdits::gestureOf(Step step)
{
    const bool isContinued = m_lastStep == step && m_lastWidgets == m_document->selection()
                             && m_sinceLastStep.isValid() && m_sinceLastStep.elapsed() <= oneStepMs;
    if (!isContinued) {
        m_gesture = m_document->newGesture();
    }
    m_lastStep = step;
    m_lastWidgets = m_document->selection();
    m_sinceLastStep.start();
    return m_gesture;
}

void SelectionEdits::change(Step step, const QRect &difference)
{
    const QVector<PlacedWidget *> widgets = movableWidgets();
    if (widgets.isEmpty()) {
        return;
    }
    QVector<QRectF> geometries;
    for (const PlacedWidget *widget : widgets) {
        const QRectF old = widget->geometry();
        geometries.append({old.topLeft() + difference.topLeft(),
                           QSizeF(std::max(1.0, old.width() + difference.width()),
                                  std::max(1.0, old.height() + difference.height()))});
    }
    m_document->setGeometries(widgets, geometries, gestureOf(step));
}

void SelectionEdits::move(const QPoint &by)
{
    change(Step::Move, QRect(by, QSize(0, 0)));
}

void SelectionEdits::resize(const QPoint &by)
{
    change(Step::Resize, QRect(QPoint(0, 0), QSize(by.x(), by.y())));
}

void SelectionEdits::selectAll()
{
    QVector<PlacedWidget *> visible;
    for (PlacedWidget *widget : m_document->widgets()) {
        if (widget->isVisible()) {
            visible.append(widget);
        }
    }
    m_document->setSelection(visible);
}

QPointF SelectionEdits::copyOffset() const
{
    constexpr int least = 8;
    constexpr int most = 32;
    const int offset = qBound(least, m_document->page().gridStep, most);
    return {qreal(offset), qreal(offset)};
}

void SelectionEdits::duplicate()
{
    if (!m_document->selection().isEmpty()) {
        m_document->duplicate(m_document->selection(), copyOffset());
    }
}

void SelectionEdits::cut()
{
    copy();
    remove();
}

void SelectionEdits::copy()
{
    if (m_document->selection().isEmpty()) {
        return;
    }
    Scenario scenario;
    scenario.pluginId = m_document->toScenario().pluginId;
    scenario.language = m_document->language();
    scenario.page = m_document->page();
    const QVector<int> indexes = stackingIndexes(*m_document);
    for (const int index : indexes) {
        scenario.widgets.append(m_document->widgets().at(index)->state());
    }
    QGuiApplication::clipboard()->setText(
        QString::fromUtf8(QJsonDocument(scenario.toJson()).toJson(QJsonDocument::Indented)));
    emit message(tr("%n widget(s) copied", nullptr, scenario.widgets.size()));
}

void SelectionEdits::paste()
{
    const QByteArray text = QGuiApplication::clipboard()->text().toUtf8();
    const QJsonDocument document = QJsonDocument::fromJson(text);
    Scenario scenario;
    QStringList problems;
    if (!document.isObject() || !Scenario::fromJson(document.object(), scenario, problems)
        || scenario.widgets.isEmpty()) {
        const QString reason = problems.isEmpty() ? QString() : QStringLiteral(": ") + problems.constFirst();
        emit message(tr("The clipboard holds no widgets") + reason);
        return;
    }
    if (scenario.pluginId != m_document->toScenario().pluginId) {
        emit message(tr("The widgets in the clipboard are of another library: %1").arg(scenario.pluginId));
        return;
    }
    ++m_pasteCount;
    m_document->paste(scenario.widgets, copyOffset() * m_pasteCount);
}

void SelectionEdits::restack(int direction)
{
    QVector<int> indexes = stackingIndexes(*m_document);
    if (direction > 0) {
        std::reverse(indexes.begin(), indexes.end());
    }
    const int last = direction > 0 ? m_document->widgets().size() - 1 : 0;
    if (indexes.isEmpty() || indexes.constFirst() == last) {
        return; // the outermost stands at the end: the others keep their distance from it
    }
    m_document->undoStack()->beginMacro(direction > 0 ? tr("Bring forward") : tr("Send backward"));
    for (const int index : qAsConst(indexes)) {
        m_document->setStackingIndex(m_document->widgets().at(index), index + direction);
    }
    m_document->undoStack()->endMacro();
}

void SelectionEdits::bringForward()
{
    restack(1);
}

void SelectionEdits::sendBackward()
{
    restack(-1);
}

void SelectionEdits::remove()
{
    const QVector<PlacedWidget *> widgets = m_document->selection();
    if (!widgets.isEmpty()) {
        m_document->remove(widgets);
    }
}

} // namespace DEV
} // namespace KORA
