// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <kora/core/widgetmetainformation.h>
#include <kora/export.h>

class QMenu;
class QToolButton;

namespace KORA {
namespace DEV {

class Providers;

/// What an editor must know of the value it edits: a field, a text in one language, or a part of a font.
struct FieldEditorContext
{
    INTERNAL::FieldType type = INTERNAL::FieldTypeUndefined;
    QString objectName; ///< of the editor's first control; the others add to it
    QString label;      ///< accessible name of the first control
    QVariant minimum;
    QVariant maximum;
    QVector<QPair<QVariant, QString>> choices;
    QString language;                     ///< of a text that is kept per language; else empty
    INTERNAL::FieldMetaInformation field; ///< for the tags and trends that it accepts
    Providers *providers = nullptr;       ///< of tags and trends; may be null
};

/// Edits one value in one row. It sends what the user enters and shows what it is told; it stores nothing.
///
/// What is entered is live: edited() with @p finished false comes while the user types or drags, and all up to and
/// including the one with true is one step to undo.
class KORA_EXPORT FieldEditor : public QObject
{
    Q_OBJECT

public:
    ~FieldEditor() override;

    /// Owns the editor: what deletes the widget deletes the editor too.
    QWidget *widget() const { return m_widget; }

    /// Shows a value; an invalid one is shown as no value.
    virtual void setValue(const QVariant &value) = 0;
    /// Shows the tag or trend that the field follows; empty if none.
    virtual void setBinding(const QString &source);
    virtual void setReadOnly(bool isReadOnly);

    /// Whether something was entered that is not finished yet.
    bool isEditing() const { return m_isEditing; }
    /// Ends the entry, as Enter does; what is no value stays and stays refused.
    void finish();
    /// Ends the entry, as leaving the control does; what is no value is given up.
    void leave();
    /// The controls that take the focus, in the order of the tab key.
    const QVector<QWidget *> &controls() const { return m_controls; }

Q_SIGNALS:
    void edited(const QVariant &value, bool finished);
    /// What stands in the control is no value and was not sent; an empty reason: it is one again.
    void rejected(const QString &reason);
    /// Something to know about a valid value; empty if nothing.
    void noted(const QString &text);
    /// Esc: the value from before the entry is wanted back.
    void restoreRequested();
    void focusEntered();
    /// A tag or trend was chosen; empty to follow none.
    void bindingChosen(const QString &source);

protected:
    explicit FieldEditor(const FieldEditorContext &context);

    const FieldEditorContext &context() const { return m_context; }
    /// The root widget; takes its controls side by side.
    void addControl(QWidget *control, int stretch = 0);
    void addPassive(QWidget *widget, int stretch = 0);
    /// A flat button with one of the bench's icons.
    QToolButton *addButton(const char *icon, const QString &label, const QString &part);
    /// The same, with a menu that it owns from now on.
    void addMenuButton(const char *icon, const QString &label, const QString &part, QMenu *menu);
    /// Gives a control its names, and guards its wheel, its Esc key and its focus. addControl() does it too.
    void watch(QWidget *control, const QString &part = {}, const QString &label = {});
    void send(const QVariant &value, bool finished);
    void reject(const QString &reason);
    /// Something was entered that will be sent by flush().
    void beginEntry() { m_isEditing = true; }
    /// Sends what waits to be sent.
    virtual void flush();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool filterKey(QEvent *event);
    void endRejection();

    FieldEditorContext m_context;
    QWidget *m_widget;
    QVector<QWidget *> m_controls;
    QVariant m_lastSent;
    bool m_isEditing = false;
    bool m_hasSent = false; // in this entry
    bool m_isRejected = false;
};

/// The editor of a type. The caller owns its widget().
KORA_EXPORT FieldEditor *makeFieldEditor(const FieldEditorContext &context);

} // namespace DEV
} // namespace KORA
