// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QPointF>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QUndoStack>

#include <functional>
#include <memory>

#include <kora/dev/model/activitylog.h>
#include <kora/dev/model/placedwidget.h>
#include <kora/dev/model/scenario.h>
#include <kora/export.h>

namespace KORA {

namespace INTERNAL {
class WidgetLibraryPluginData;
} // namespace INTERNAL

namespace DEV {

class Providers;

/// What the bench has open: one plugin, the page with its placed widgets, and the simulated plant round them. The
/// window's panes show it and edit it here; nothing in it needs a window.
///
/// Edits can be undone, unless said otherwise. Edits with the same gesture number (newGesture(), not 0) are one
/// step. GUI thread.
class KORA_EXPORT BenchDocument : public QObject
{
    Q_OBJECT

public:
    /// @p plugin is not owned, must outlive the document, and is null if none could be loaded.
    explicit BenchDocument(INTERNAL::WidgetLibraryPluginData *plugin, QObject *parent = nullptr);
    ~BenchDocument() override;

    INTERNAL::WidgetLibraryPluginData *plugin() const { return m_plugin; }
    /// Holds the items of the placed widgets, in page coordinates.
    QGraphicsScene *scene() { return &m_scene; }
    Providers *providers() const { return m_providers.get(); }
    ActivityLog *activity() { return &m_activity; }
    QUndoStack *undoStack() { return &m_undoStack; }

    // Page ------------------------------------------------------------------------------------------------------

    BenchMode mode() const { return m_mode; }
    /// Makes all instances anew with their values; no edit.
    void setMode(BenchMode mode);
    QString language() const { return m_language; }
    /// The languages of the library's texts, the default one first.
    QStringList languages() const;
    /// Sets all multi-language texts; no edit.
    void setLanguage(const QString &language);
    const PageState &page() const { return m_page; }
    void setPage(const PageState &page);

    // Placed widgets --------------------------------------------------------------------------------------------

    /// Bottom first.
    const QVector<PlacedWidget *> &widgets() const { return m_widgets; }
    PlacedWidget *widgetById(int id) const;
    /// The widget whose item, or one of whose item's children, this is; null if none.
    PlacedWidget *widgetOfItem(const QGraphicsItem *item) const;
    /// In the order of selection.
    const QVector<PlacedWidget *> &selection() const { return m_selection; }
    /// The one selected last; its fields are shown. Null if none.
    PlacedWidget *current() const { return m_selection.isEmpty() ? nullptr : m_selection.last(); }
    /// No edit.
    void setSelection(const QVector<PlacedWidget *> &selection);

    int newGesture() { return ++m_lastGesture; }
    /// Takes the latest step back for good if it is one of that gesture.
    void cancelGesture(int gesture);

    /// The size that place() gives a widget, in pixels.
    QSizeF sizeOfNew(const QString &widgetId, const QString &version) const;

    /// Places a widget at its default size with its centre at @p centre, in whole pixels, and selects it. It is placed
    /// also if no instance can be made: PlacedWidget::problem() says why.
    PlacedWidget *place(const QString &widgetId, const QString &version, const QPointF &centre);
    /// Copies of them with new names, moved by @p offset, selected.
    void duplicate(const QVector<PlacedWidget *> &widgets, const QPointF &offset);
    /// The same of states, as of a clipboard.
    void paste(const QVector<PlacedWidgetState> &states, const QPointF &offset);
    void remove(const QVector<PlacedWidget *> &widgets);
    /// False with the reason in @p problem if the name is empty or taken.
    bool rename(PlacedWidget *widget, const QString &name, QString &problem);
    void setVisible(PlacedWidget *widget, bool isVisible);
    void setLocked(PlacedWidget *widget, bool isLocked);
    /// Geometries in the order of the widgets. Whole pixels, at least 1 x 1.
    void setGeometries(const QVector<PlacedWidget *> &widgets, const QVector<QRectF> &geometries,
                       int gesture = 0);
    /// Moves a widget to position @p index of widgets().
    void setStackingIndex(PlacedWidget *widget, int index);
    /// Starts or stops an instance; a widget without one is tried anew. No edit.
    void setRunning(PlacedWidget *widget, bool isRunning);
    /// Stops, deletes, makes and starts it, with its values. No edit.
    void restart(PlacedWidget *widget);

    // Fields ----------------------------------------------------------------------------------------------------

    /// Sets a field, or the font of a text under "<id>.font", and returns what was set: the value within the field's
    /// bounds. A multi-language text is set in the present language. A field that follows a tag writes the tag.
    QVariant setFieldValue(PlacedWidget *widget, const QString &fieldId, const QVariant &value,
                           int gesture = 0);
    void setFieldText(PlacedWidget *widget, const QString &fieldId, const QString &language,
                      const QVariant &text, int gesture = 0);
    /// Sets the defaults and unbinds the fields.
    void resetFields(PlacedWidget *widget, const QStringList &fieldIds);
    /// Lets the field follow a tag, or a trend field a trend; an empty name unbinds it.
    void setBinding(PlacedWidget *widget, const QString &fieldId, const QString &source);

    // Scenarios -------------------------------------------------------------------------------------------------

    Scenario toScenario() const;
    /// Replaces all that is open and forgets the undo steps. What does not fit the library is left out and named in
    /// @p dropped: "tank1: speedLimit is gone (was 7)". With @p isStopped no instances are made: problem() has the
    /// rule "stopped". The number of values that were set is returned.
    int load(const Scenario &scenario, QStringList &dropped, bool isStopped = false);

Q_SIGNALS:
    void widgetAdded(KORA::DEV::PlacedWidget *widget);
    void widgetAboutToBeRemoved(KORA::DEV::PlacedWidget *widget);
    void stackingChanged();
    void selectionChanged();
    void modeChanged();
    void languageChanged();
    void pageChanged();
    /// Everything is another: load() was called.
    void loaded();
    /// Something that a scenario holds has changed.
    void changed();

private:
    friend class PlacedWidget;

    struct Gesture
    {
        int number = 0;
        QString subject;
    };

    void push(const QString &text, const Gesture &gesture, const std::function<void()> &redo,
              const std::function<void()> &undo);
    void pushInsertion(const QString &text, const QVector<PlacedWidgetState> &states);
    void pushStateEdit(PlacedWidget *widget, const QString &text,
                       const std::function<void(PlacedWidgetState &)> &edit);
    PlacedWidget *insert(const PlacedWidgetState &state, int index, bool isStopped = false);
    void take(int id);
    void clear();
    void applyPage(const PageState &page);
    void applyStacking();
    void applyFieldValue(int id, const QString &fieldId, const QVariant &value);
    void applyFieldTexts(int id, const QString &fieldId, const QJsonValue &texts);
    void onProvidersEdited();
    void restoreProviders(const QJsonObject &json);
    void renameBindings(const QString &from, const QString &to);
    QString uniqueName(const QString &widgetId, const QSet<QString> &taken = {}) const;

    INTERNAL::WidgetLibraryPluginData *m_plugin;
    std::unique_ptr<Providers> m_providers;
    ActivityLog m_activity;
    QGraphicsScene m_scene;
    QUndoStack m_undoStack;
    QVector<PlacedWidget *> m_widgets;
    QVector<PlacedWidget *> m_selection;
    PageState m_page;
    BenchMode m_mode = BenchMode::Studio;
    QString m_language;
    QJsonObject m_providersBefore;                 // as of the last undo step
    QVector<QPair<QString, QString>> m_tagRenames; // from and to, of the edit that is going on
    bool m_providersAreRestored = false;
    int m_lastId = 0;
    int m_lastGesture = 0;
};

} // namespace DEV
} // namespace KORA
