// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <kora/export.h>

class QKeyEvent;

namespace KORA {
namespace DEV {

class BenchDocument;
class PlacedWidget;

/// What is done to the selected widgets as a whole, from the keyboard or a menu. GUI thread.
///
/// | keys                     | edit                                     |
/// |--------------------------|------------------------------------------|
/// | arrows, with Shift       | move by 1 pixel, by 10                   |
/// | Ctrl+arrows, with Shift  | resize by 1 pixel, by 10                 |
/// | Ctrl+A                   | select all that can be seen              |
/// | Ctrl+D                   | duplicate, with the values               |
/// | Ctrl+X, Ctrl+C, Ctrl+V   | cut, copy, paste: a scenario as text     |
/// | Ctrl+PgUp, Ctrl+PgDown   | one step to the front, to the back       |
/// | Del                      | remove                                   |
class KORA_EXPORT SelectionEdits : public QObject
{
    Q_OBJECT

public:
    /// @p document is not owned and must outlive the object.
    explicit SelectionEdits(BenchDocument *document, QObject *parent = nullptr);

    /// Whether the key is one of the above and was done.
    bool keyPress(const QKeyEvent &event);

    /// Steps that follow each other within 300 ms are one undo step. Locked widgets stay.
    void move(const QPoint &by);
    /// Moves the right and bottom edges.
    void resize(const QPoint &by);

public Q_SLOTS:
    void selectAll();
    void duplicate();
    void cut();
    void copy();
    void paste();
    void bringForward();
    void sendBackward();
    void remove();

Q_SIGNALS:
    /// For the status bar.
    void message(const QString &text);

private:
    enum class Step { None, Move, Resize };

    bool nudgeKeyPress(const QKeyEvent &event);
    QVector<PlacedWidget *> movableWidgets();
    int gestureOf(Step step);
    void change(Step step, const QRect &difference);
    void restack(int direction);
    QPointF copyOffset() const;

    BenchDocument *m_document;
    Step m_lastStep = Step::None;
    QVector<PlacedWidget *> m_lastWidgets; // only compared
    QElapsedTimer m_sinceLastStep;
    int m_gesture = 0;
    int m_pasteCount = 0; // pastes of the same text, each a little further
};

} // namespace DEV
} // namespace KORA
