// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QUndoCommand>

#include <functional>
#include <utility>

namespace KORA {
namespace DEV {

/// One undoable step: how to do it and how to take it back. Steps of one gesture that follow each other and change the
/// same are one; gesture 0 is none.
class BenchEdit : public QUndoCommand
{
public:
    using Action = std::function<void()>;

    /// @p subject names what is changed.
    BenchEdit(const QString &text, int gesture, const QString &subject, Action redo, Action undo)
        : QUndoCommand(text)
        , m_gesture(gesture)
        , m_subject(subject)
        , m_redo(std::move(redo))
        , m_undo(std::move(undo))
    {}

    void redo() override { m_redo(); }
    void undo() override
    {
        m_undo();
        setObsolete(m_isCancelled); // the stack then deletes it
    }
    /// The next undo is the last: there is nothing to redo. Const as the stack's commands are.
    void cancel() const { m_isCancelled = true; }
    int gesture() const { return m_gesture; }
    int id() const override { return m_gesture == 0 ? -1 : 1; }
    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *later = static_cast<const BenchEdit *>(other); // only this class has an id
        if (later->m_gesture != m_gesture || later->m_subject != m_subject) {
            return false;
        }
        m_redo = later->m_redo;
        return true;
    }

private:
    int m_gesture;
    QString m_subject;
    mutable bool m_isCancelled = false;
    Action m_redo;
    Action m_undo;
};

} // namespace DEV
} // namespace KORA
