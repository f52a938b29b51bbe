// SPDX-License-Identifier: Apache-2.0
#include "benchdocument.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/model/benchedit.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/providers/alarmtable.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/loader/plugindata.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

const QSizeF fallbackSize(120, 80); // of widgets without a default size

QRectF wholePixels(const QRectF &rect)
{
    return {std::round(rect.x()), std::round(rect.y()), std::max(1.0, std::round(rect.width())),
            std::max(1.0, std::round(rect.height()))};
}

} // namespace

BenchDocument::BenchDocument(WidgetLibraryPluginData *plugin, QObject *parent)
    : QObject(parent)
    , m_plugin(plugin)
    , m_providers(std::make_unique<Providers>())
    , m_language(plugin ? plugin->metaInformation()->defaultLanguage() : QStringLiteral("en-US"))
{
    applyPage(m_page);
    m_providers->addDefaults();
    m_providersBefore = m_providers->toJson(Providers::EditsOnly);
    connect(m_providers.get(), &Providers::edited, this, &BenchDocument::onProvidersEdited);
    connect(m_providers->tags(), &TagTable::tagRenamed, this, [this](const QString &from, const QString &to) {
        m_tagRenames.append({from, to});
    });
    connect(m_providers->tags(), &TagTable::valueChanged, this,
            [this](const QString &tag, const QVariant &value) {
                const auto widgets = m_widgets; // a handler may place or remove some
                for (PlacedWidget *widget : widgets) {
                    widget->onTagChanged(tag, value);
                }
            });
    connect(m_providers->alarms(), &AlarmTable::alarmChanged, this, [this](const AlarmInfo &alarm) {
        const auto widgets = m_widgets;
        for (PlacedWidget *widget : widgets) {
            if (widget->info().receiveAlarmsEvents()) {
                widget->deliverAlarm(alarm);
            }
        }
    });
}

BenchDocument::~BenchDocument()
{
    m_undoStack.clear();
    // While the scene and the providers are there.
    qDeleteAll(m_widgets);
    m_widgets.clear();
}

void BenchDocument::push(const QString &text, const Gesture &gesture, const std::function<void()> &redo,
                         const std::function<void()> &undo)
{
    m_undoStack.push(new BenchEdit(text, gesture.number, gesture.subject, redo, undo));
    emit changed();
}

void BenchDocument::cancelGesture(int gesture)
{
    const QUndoCommand *latest = m_undoStack.command(m_undoStack.index() - 1);
    const auto *edit = dynamic_cast<const BenchEdit *>(latest); // a group of steps is another class
    if (gesture == 0 || !edit || edit->gesture() != gesture) {
        return;
    }
    edit->cancel();
    m_undoStack.undo();
    emit changed();
}

// Page ----------------------------------------------------------------------------------------------------------

void BenchDocument::setMode(BenchMode mode)
{
    if (mode == m_mode) {
        return;
    }
    m_mode = mode;
    const auto widgets = m_widgets;
    for (PlacedWidget *widget : widgets) {
        widget->makeInstance(widget->problem().rule == QLatin1String("stopped"));
    }
    emit modeChanged();
    emit changed();
}

QStringList BenchDocument::languages() const
{
    if (!m_plugin) {
        return {m_language};
    }
    QStringList languages = m_plugin->metaInformation()->translation();
    languages.removeAll(m_plugin->metaInformation()->defaultLanguage());
    languages.prepend(m_plugin->metaInformation()->defaultLanguage());
    return languages;
}

void BenchDocument::setLanguage(const QString &language)
{
    if (language == m_language) {
        return;
    }
    m_language = language;
    for (PlacedWidget *widget : qAsConst(m_widgets)) {
        const auto fields = widget->info().fields();
        for (const FieldMetaInformation &field : fields) {
            if (field.isMultiLanguageText()) {
                widget->applyText(field.id());
            }
        }
    }
    emit languageChanged();
    emit changed();
}

void BenchDocument::setPage(const PageState &page)
{
    if (page == m_page) {
        return;
    }
    const PageState before = m_page;
    push(
        tr("Change the page"), {}, [this, page] { applyPage(page); }, [this, before] { applyPage(before); });
}

void BenchDocument::applyPage(const PageState &page)
{
    m_page = page;
    m_scene.setSceneRect(QRectF(QPointF(), QSizeF(page.size)));
    emit pageChanged();
}

// Placed widgets ------------------------------------------------------------------------------------------------

PlacedWidget *BenchDocument::widgetById(int id) const
{
    const auto found = std::find_if(m_widgets.cbegin(), m_widgets.cend(),
                                    [id](const PlacedWidget *widget) { return widget->id() == id; });
    return found == m_widgets.cend() ? nullptr : *found;
}

PlacedWidget *BenchDocument::widgetOfItem(const QGraphicsItem *item) const
{
    for (; item; item = item->parentItem()) {
        const auto found =
            std::find_if(m_widgets.cbegin(), m_widgets.cend(),
                         [item](const PlacedWidget *widget) { return widget->item() == item; });
        if (found != m_widgets.cend()) {
            return *found;
        }
    }
    return nullptr;
}

void BenchDocument::setSelection(const QVector<PlacedWidget *> &selection)
{
    if (selection != m_selection) {
        m_selection = selection;
        emit selectionChanged();
    }
}

QString BenchDocument::uniqueName(const QString &widgetId, const QSet<QString> &taken) const
{
    QSet<QString> names = taken;
    for (const PlacedWidget *widget : m_widgets) {
        names.insert(widget->name());
    }
    int number = 1;
    while (names.contains(widgetId + QString::number(number))) {
        ++number;
    }
    return widgetId + QString::number(number);
}

PlacedWidget *BenchDocument::insert(const PlacedWidgetState &state, int index, bool isStopped)
{
    auto *widget = new PlacedWidget(this, state);
    m_lastId = std::max(m_lastId, state.id);
    connect(widget, &PlacedWidget::changed, this, &BenchDocument::changed);
    m_widgets.insert(index, widget);
    widget->makeInstance(isStopped);
    applyStacking();
    emit widgetAdded(widget);
    return widget;
}

void BenchDocument::take(int id)
{
    PlacedWidget *widget = widgetById(id);
    if (!widget) {
        return;
    }
    auto selection = m_selection;
    selection.removeAll(widget);
    setSelection(selection);
    emit widgetAboutToBeRemoved(widget);
    m_widgets.removeAll(widget);
    widget->destroyInstance();
    // The widget may have asked for its own removal.
    widget->deleteLater();
}

QSizeF BenchDocument::sizeOfNew(const QString &widgetId, const QString &version) const
{
    const QSizeF size =
        m_plugin ? m_plugin->metaInformation()->widgets().value({widgetId, version}).defaultSize() : QSizeF();
    return size.isEmpty() ? fallbackSize : size;
}

PlacedWidget *BenchDocument::place(const QString &widgetId, const QString &version, const QPointF &centre)
{
    PlacedWidgetState state;
    state.id = ++m_lastId;
    state.name = uniqueName(widgetId);
    state.widgetId = widgetId;
    state.version = version;
    state.geometry.setSize(sizeOfNew(widgetId, version));
    state.geometry.moveCenter(centre);
    state.geometry = wholePixels(state.geometry);
    pushInsertion(tr("Place %1").arg(widgetId), {state});
    return widgetById(state.id);
}

/// Puts new widgets on top and selects them.
void BenchDocument::pushInsertion(const QString &text, const QVector<PlacedWidgetState> &states)
{
    push(
        text, {},
        [this, states] {
            QVector<PlacedWidget *> inserted;
            for (const PlacedWidgetState &state : states) {
                inserted.append(insert(state, m_widgets.size()));
            }
            setSelection(inserted);
        },
        [this, states] {
            for (const PlacedWidgetState &state : states) {
                take(state.id);
            }
        });
}

void BenchDocument::duplicate(const QVector<PlacedWidget *> &widgets, const QPointF &offset)
{
    QVector<PlacedWidgetState> states;
    for (const PlacedWidget *widget : qAsConst(m_widgets)) { // in their order on the page
        if (widgets.contains(const_cast<PlacedWidget *>(widget))) {
            states.append(widget->state());
        }
    }
    paste(states, offset);
}

void BenchDocument::paste(const QVector<PlacedWidgetState> &states, const QPointF &offset)
{
    QVector<PlacedWidgetState> copies = states;
    QSet<QString> names;
    for (PlacedWidgetState &copy : copies) {
        copy.id = ++m_lastId;
        copy.name = uniqueName(copy.widgetId, names);
        copy.geometry = wholePixels(copy.geometry.translated(offset));
        names.insert(copy.name);
    }
    if (!copies.isEmpty()) {
        pushInsertion(tr("Insert %n widget(s)", nullptr, copies.size()), copies);
    }
}

void BenchDocument::remove(const QVector<PlacedWidget *> &widgets)
{
    QVector<int> indexes; // ascending, so that each is right when the widgets below it are back
    QVector<PlacedWidgetState> states;
    for (int i = 0; i < m_widgets.size(); ++i) {
        if (widgets.contains(m_widgets.at(i))) {
            indexes.append(i);
            states.append(m_widgets.at(i)->state());
        }
    }
    if (states.isEmpty()) {
        return;
    }
    push(
        tr("Delete %n widget(s)", nullptr, states.size()), {},
        [this, states] {
            for (const PlacedWidgetState &state : states) {
                take(state.id);
            }
        },
        [this, indexes, states] {
            QVector<PlacedWidget *> restored;
            for (int i = 0; i < states.size(); ++i) {
                restored.append(insert(states.at(i), std::min(indexes.at(i), m_widgets.size())));
            }
            setSelection(restored);
        });
}

/// Changes what the widget's state holds, once and on every redo; undo sets the state's part back.
void BenchDocument::pushStateEdit(PlacedWidget *widget, const QString &text,
                                  const std::function<void(PlacedWidgetState &)> &edit)
{
    const PlacedWidgetState before = widget->m_state;
    PlacedWidgetState after = before;
    edit(after);
    const auto apply = [this, id = widget->id()](const PlacedWidgetState &state) {
        if (PlacedWidget *target = widgetById(id)) {
            target->m_state.name = state.name;
            target->m_state.isVisible = state.isVisible;
            target->m_state.isLocked = state.isLocked;
            target->m_state.geometry = state.geometry;
            target->m_services.setInstanceName(state.name);
            target->applyGeometry();
            emit target->changed();
        }
    };
    push(
        text, {}, [apply, after] { apply(after); }, [apply, before] { apply(before); });
}

bool BenchDocument::rename(PlacedWidget *widget, const QString &name, QString &problem)
{
    if (name == widget->name()) {
        return true;
    }
    if (name.trimmed().isEmpty()) {
        problem = tr("a widget needs a name");
        return false;
    }
    for (const PlacedWidget *other : qAsConst(m_widgets)) {
        if (other->name() == name) {
            problem = tr("another widget is named %1").arg(name);
            return false;
        }
    }
    pushStateEdit(widget, tr("Rename %1").arg(widget->name()),
                  [name](PlacedWidgetState &state) { state.name = name; });
    return true;
}

void BenchDocument::setVisible(PlacedWidget *widget, bool isVisible)
{
    if (isVisible != widget->isVisible()) {
        pushStateEdit(widget,
                      isVisible ? tr("Show %1").arg(widget->name()) : tr("Hide %1").arg(widget->name()),
                      [isVisible](PlacedWidgetState &state) { state.isVisible = isVisible; });
    }
}

void BenchDocument::setLocked(PlacedWidget *widget, bool isLocked)
{
    if (isLocked != widget->isLocked()) {
        pushStateEdit(widget,
                      isLocked ? tr("Lock %1").arg(widget->name()) : tr("Unlock %1").arg(widget->name()),
                      [isLocked](PlacedWidgetState &state) { state.isLocked = isLocked; });
    }
}

void BenchDocument::setGeometries(const QVector<PlacedWidget *> &widgets, const QVector<QRectF> &geometries,
                                  int gesture)
{
    struct Change
    {
        int id;
        QRectF before;
        QRectF after;
    };
    QVector<Change> changes;
    bool isChange = false;
    for (int i = 0; i < std::min(widgets.size(), geometries.size()); ++i) {
        changes.append({widgets.at(i)->id(), widgets.at(i)->geometry(), wholePixels(geometries.at(i))});
        isChange = isChange || changes.last().before != changes.last().after;
    }
    if (!isChange) {
        return;
    }
    const auto apply = [this](const QVector<Change> &changes, QRectF Change::*rect) {
        for (const Change &change : changes) {
            if (PlacedWidget *widget = widgetById(change.id)) {
                widget->m_state.geometry = change.*rect;
                widget->applyGeometry();
                emit widget->changed();
            }
        }
    };
    push(
        tr("Move or resize"), {gesture, QStringLiteral("geometry")},
        [apply, changes] { apply(changes, &Change::after); },
        [apply, changes] { apply(changes, &Change::before); });
}

void BenchDocument::setStackingIndex(PlacedWidget *widget, int index)
{
    const int before = m_widgets.indexOf(widget);
    const int after = qBound(0, index, m_widgets.size() - 1);
    if (before < 0 || before == after) {
        return;
    }
    const auto move = [this, id = widget->id()](int to) {
        const int from = m_widgets.indexOf(widgetById(id));
        if (from >= 0) {
            m_widgets.move(from, std::min(to, m_widgets.size() - 1));
            applyStacking();
            emit stackingChanged();
        }
    };
    push(
        tr("Reorder %1").arg(widget->name()), {}, [move, after] { move(after); },
        [move, before] { move(before); });
}

void BenchDocument::applyStacking()
{
    for (int i = 0; i < m_widgets.size(); ++i) {
        if (m_widgets.at(i)->item()) {
            m_widgets.at(i)->item()->setZValue(i);
        }
    }
}

void BenchDocument::setRunning(PlacedWidget *widget, bool isRunning)
{
    widget->m_state.isRunning = isRunning;
    if (isRunning && !widget->widget()) {
        widget->makeInstance(false);
    } else {
        widget->setRunning(isRunning);
        emit widget->instanceChanged();
    }
    emit changed();
}

void BenchDocument::restart(PlacedWidget *widget)
{
    widget->m_state.isRunning = true;
    widget->makeInstance(false);
    emit changed();
}

// Simulated plant -----------------------------------------------------------------------------------------------

/// The tables have been changed already: the step starts without them. Fields follow a tag that gets another name.
void BenchDocument::onProvidersEdited()
{
    if (m_providersAreRestored) {
        return;
    }
    const QJsonObject before = m_providersBefore;
    m_providersBefore = m_providers->toJson(Providers::EditsOnly);
    const QVector<QPair<QString, QString>> renames = std::exchange(m_tagRenames, {});
    push(
        tr("Change the simulated plant"), {},
        [this, renames, after = m_providersBefore, isFirst = true]() mutable {
            if (!isFirst) {
                restoreProviders(after);
            }
            isFirst = false;
            for (const auto &rename : renames) {
                renameBindings(rename.first, rename.second);
            }
        },
        [this, renames, before] {
            for (const auto &rename : renames) {
                renameBindings(rename.second, rename.first);
            }
            restoreProviders(before);
        });
}

void BenchDocument::renameBindings(const QString &from, const QString &to)
{
    for (PlacedWidget *widget : qAsConst(m_widgets)) {
        const QStringList ids = widget->m_state.bindings.keys(from);
        for (const QString &id : ids) {
            if (fieldTypeOf(widget->info(), id) != FieldTypeTrend) {
                widget->m_state.bindings.insert(id, to);
                emit widget->bindingChanged(id);
            }
        }
    }
}

void BenchDocument::restoreProviders(const QJsonObject &json)
{
    m_providersAreRestored = true;
    QStringList problems; // none: the tables wrote it themselves
    m_providers->fromJson(json, problems);
    m_providersAreRestored = false;
    m_tagRenames.clear();
    m_providersBefore = m_providers->toJson(Providers::EditsOnly);
}

} // namespace DEV
} // namespace KORA
