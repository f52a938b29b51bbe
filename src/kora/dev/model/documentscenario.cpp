// SPDX-License-Identifier: Apache-2.0
#include "benchdocument.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/providers/providers.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

Scenario BenchDocument::toScenario() const
{
    Scenario scenario;
    scenario.pluginId = m_plugin ? m_plugin->metaInformation()->id() : QString();
    scenario.language = m_language;
    scenario.mode = m_mode;
    scenario.page = m_page;
    for (const PlacedWidget *widget : m_widgets) {
        scenario.widgets.append(widget->state());
    }
    scenario.providers = m_providers->toJson();
    return scenario;
}

namespace {

/// Removes from @p values what the widget has no field for, or no such value. The number of what is left.
int dropUnfit(const WidgetMetaInformation &info, const QString &name, QJsonObject &values, bool areTexts,
              QStringList &dropped)
{
    const QStringList ids = values.keys();
    for (const QString &id : ids) {
        const FieldType type = fieldTypeOf(info, id);
        const QString was =
            QString::fromUtf8(QJsonDocument(QJsonArray{values.value(id)}).toJson(QJsonDocument::Compact));
        QString problem;
        const QJsonObject inLanguages =
            areTexts ? values.value(id).toObject() : QJsonObject{{id, values.value(id)}};
        for (const QJsonValue &value : inLanguages) {
            QVariant read;
            if (problem.isEmpty() && !fieldValueFromJson(type, value, read, problem)) {
                problem = BenchDocument::tr("%1: %2").arg(id, problem);
            }
        }
        if (type == FieldTypeUndefined) {
            problem = BenchDocument::tr("%1 is gone").arg(id);
        }
        if (!problem.isEmpty()) {
            values.remove(id);
            dropped.append(
                BenchDocument::tr("%1: %2 (was %3)").arg(name, problem, was.mid(1, was.size() - 2)));
        }
    }
    return values.size();
}

int dropUnfitBindings(const WidgetMetaInformation &info, const QString &name,
                      QMap<QString, QString> &bindings, QStringList &dropped)
{
    const QStringList ids = bindings.keys();
    for (const QString &id : ids) {
        if (fieldTypeOf(info, id) == FieldTypeUndefined) {
            dropped.append(
                BenchDocument::tr("%1: %2 is gone (followed %3)").arg(name, id, bindings.take(id)));
        }
    }
    return bindings.size();
}

} // namespace

int BenchDocument::load(const Scenario &scenario, QStringList &dropped, bool isStopped)
{
    clear();
    m_mode = scenario.mode;
    m_language = languages().contains(scenario.language) ? scenario.language : languages().constFirst();
    if (m_language != scenario.language) {
        dropped.append(tr("the library has no texts in %1").arg(scenario.language));
    }
    applyPage(scenario.page);
    if (!scenario.providers.isEmpty()) {
        m_providersAreRestored = true;
        m_providers->fromJson(scenario.providers, dropped);
        m_providersAreRestored = false;
    }
    int valueCount = 0;
    for (PlacedWidgetState state : scenario.widgets) {
        state.id = ++m_lastId;
        const auto info = m_plugin
                              ? m_plugin->metaInformation()->widgets().value({state.widgetId, state.version})
                              : WidgetMetaInformation();
        if (info.isValid()) {
            valueCount += dropUnfit(info, state.name, state.values, false, dropped);
            valueCount += dropUnfit(info, state.name, state.texts, true, dropped);
            valueCount += dropUnfitBindings(info, state.name, state.bindings, dropped);
        }
        insert(state, m_widgets.size(), isStopped);
    }
    m_tagRenames.clear();
    m_providersBefore = m_providers->toJson(Providers::EditsOnly);
    emit loaded();
    emit changed();
    return valueCount;
}

void BenchDocument::clear()
{
    m_undoStack.clear();
    const auto widgets = m_widgets;
    for (PlacedWidget *widget : widgets) {
        take(widget->id());
    }
}

} // namespace DEV
} // namespace KORA
