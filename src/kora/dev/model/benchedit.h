// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QUndoCommand>

#include <functional>
#include <utility>

namespace KORA {
namespace DEV {

/// One undoable step: how to do it and how to take it back. Steps with the same key that follow each other are one,
/// unless the key is empty.
class BenchEdit : public QUndoCommand
{
public:
    using Action = std::function<void()>;

    BenchEdit(const QString &text, const QString &mergeKey, Action redo, Action undo)
        : QUndoCommand(text)
        , m_mergeKey(mergeKey)
        , m_redo(std::move(redo))
        , m_undo(std::move(undo))
    {}

    void redo() override { m_redo(); }
    void undo() override { m_undo(); }
    int id() const override { return m_mergeKey.isEmpty() ? -1 : 1; }
    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *later = static_cast<const BenchEdit *>(other); // the only class of the stack
        if (later->m_mergeKey != m_mergeKey) {
            return false;
        }
        m_redo = later->m_redo;
        return true;
    }

private:
    QString m_mergeKey;
    Action m_redo;
    Action m_undo;
};

} // namespace DEV
} // namespace KORA
