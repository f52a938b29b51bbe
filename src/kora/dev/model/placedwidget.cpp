// SPDX-License-Identifier: Apache-2.0
#include "placedwidget.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/model/plugincall.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/loader/plugindata.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

QString sizeText(const QSizeF &size)
{
    return QStringLiteral("%1 x %2").arg(QString::number(size.width()), QString::number(size.height()));
}

Finding noInstance(const char *rule, const QString &message, const QString &hint)
{
    Finding problem;
    problem.rule = QLatin1String(rule);
    problem.message = message;
    problem.hint = hint;
    return problem;
}

QString declaredWidgets(const WidgetLibraryPluginMetaInformation &meta)
{
    QStringList names;
    const auto &widgets = meta.widgets();
    for (const WidgetMetaInformation &widget : widgets) {
        names.append(widget.id() + QLatin1Char(' ') + widget.version().version());
    }
    return names.isEmpty() ? QStringLiteral("nothing") : names.join(QLatin1String(", "));
}

} // namespace

PlacedWidget::PlacedWidget(BenchDocument *document, const PlacedWidgetState &state)
    : QObject(document)
    , m_document(document)
    , m_state(state)
    , m_services(document->providers(), document->activity())
{
    if (document->plugin()) {
        m_info = document->plugin()->metaInformation()->widgets().value({state.widgetId, state.version});
    }
}

PlacedWidget::~PlacedWidget()
{
    destroyInstance();
}

bool PlacedWidget::isRunning() const
{
    return m_live.priv() && m_live.priv()->initialised;
}

// Instance ------------------------------------------------------------------------------------------------------

void PlacedWidget::makeInstance(bool isStopped)
{
    destroyInstance();
    m_problem = checkInstance(isStopped);
    if (m_problem.rule.isEmpty()) {
        m_services.setInstanceName(name());
        m_services.setMode(m_document->mode());
        PluginCall call(m_document->activity(), ActivityEntry::Event, name(), QStringLiteral("construct"));
        m_live.create(*m_document->plugin(), m_info, &m_services, m_problem);
    }
    if (m_live.widget()) {
        connect(m_live.priv(), &WidgetPrivate::fieldIsChanged, this, &PlacedWidget::onPluginWrite);
        applyValues();
    }
    if (item()) {
        watchParts();
        m_document->scene()->addItem(item());
        applyGeometry();
        m_document->applyStacking();
    }
    if (m_state.isRunning) {
        setRunning(true);
    }
    emit instanceChanged();
}

/// What keeps the bench from making an instance, before the plugin is asked.
Finding PlacedWidget::checkInstance(bool isStopped) const
{
    if (!m_document->plugin()) {
        return noInstance("plugin-not-loaded", tr("the widget library is not loaded"), QString());
    }
    if (!m_info.isValid()) {
        return noInstance(
            "widget-unknown",
            tr("the library declares no widget %1 in version %2").arg(widgetId(), version()),
            tr("it declares %1").arg(declaredWidgets(*m_document->plugin()->metaInformation())));
    }
    if (isStopped) {
        return noInstance("stopped", tr("stopped: the plugin ended the bench before"), tr("start it again"));
    }
    return {};
}

/// The plugin may delete what it made; the card then says so.
void PlacedWidget::watchParts()
{
    const auto tellLoss = [this] {
        if (m_problem.rule.isEmpty() && (!item() || !widget())) {
            m_problem = noInstance("widget-deleted", tr("the plugin deleted its own widget or item"),
                                   tr("the host owns both: let deinitEvent() stop what it started, no more"));
            emit instanceChanged();
        }
    };
    connect(m_live.widget(), &QObject::destroyed, this, tellLoss, Qt::QueuedConnection);
    connect(m_live.item(), &QObject::destroyed, this, tellLoss, Qt::QueuedConnection);
}

void PlacedWidget::destroyInstance()
{
    if (!widget() && !item()) {
        return;
    }
    m_state = state();
    if (widget()) {
        m_live.priv()->disconnect(this);
        widget()->disconnect(this);
    }
    if (isRunning()) {
        PluginCall call(m_document->activity(), ActivityEntry::Event, name(), QStringLiteral("deinitEvent"));
        m_live.priv()->deinit();
    }
    if (item()) {
        item()->disconnect(this);
        if (item()->scene()) {
            item()->scene()->removeItem(item());
        }
    }
    PluginCall call(m_document->activity(), ActivityEntry::Event, name(), QStringLiteral("destroy"));
    m_live.destroy();
}

void PlacedWidget::setRunning(bool isRunning)
{
    m_state.isRunning = isRunning;
    if (!widget() || isRunning == this->isRunning()) {
        return;
    }
    PluginCall call(m_document->activity(), ActivityEntry::Event, name(),
                    isRunning ? QStringLiteral("initEvent") : QStringLiteral("deinitEvent"));
    if (isRunning) {
        m_live.priv()->init();
    } else {
        m_live.priv()->deinit();
    }
}

void PlacedWidget::applyGeometry()
{
    if (!item()) {
        return;
    }
    item()->setPos(geometry().topLeft());
    item()->setVisible(m_state.isVisible);
    if (item()->size() != geometry().size()) {
        PluginCall call(m_document->activity(), ActivityEntry::Event, name(), QStringLiteral("resizeEvent"),
                        sizeText(geometry().size()));
        GraphicsObjectPrivateAccessor::priv(item())->resize(geometry().size());
    }
}

void PlacedWidget::deliverAlarm(const AlarmInfo &alarm)
{
    if (!widget()) {
        return;
    }
    PluginCall call(m_document->activity(), ActivityEntry::Event, name(),
                    QStringLiteral("alarmStatusIsChangedEvent"), alarm.name());
    m_live.priv()->alarmEvent(alarm);
}

// Fields --------------------------------------------------------------------------------------------------------

QVariant PlacedWidget::fieldValue(const QString &fieldId) const
{
    return widget() ? m_live.priv()->getFieldValue(fieldId, true) : QVariant();
}

QVariant PlacedWidget::fieldText(const QString &fieldId, const QString &language) const
{
    const QJsonValue json = m_state.texts.value(fieldId).toObject().value(language);
    QVariant text;
    QString problem;
    if (!json.isUndefined() && fieldValueFromJson(fieldTypeOf(m_info, fieldId), json, text, problem)) {
        return text;
    }
    return fieldDefault(m_info, fieldId, language);
}

QVariant PlacedWidget::defaultValue(const QString &fieldId) const
{
    return fieldDefault(m_info, fieldId, m_document->language());
}

bool PlacedWidget::isModified(const QString &fieldId) const
{
    if (m_info.fields().value(fieldId).isMultiLanguageText()) {
        return m_state.texts.contains(fieldId);
    }
    // Through JSON: variants of own types compare by address.
    const FieldType type = fieldTypeOf(m_info, fieldId);
    const QVariant value = fieldValue(fieldId);
    const QVariant standard = defaultValue(fieldId);
    if (!value.isValid() && !standard.isValid()) {
        return false;
    }
    return fieldValueToJson(type, value)
           != fieldValueToJson(type, standard.isValid() ? standard : emptyFieldValue(type));
}

PlacedWidgetState PlacedWidget::state() const
{
    PlacedWidgetState state = m_state;
    if (!widget()) {
        return state;
    }
    const auto fields = m_info.fields();
    const QStringList ids = fieldIds(m_info);
    for (const QString &id : ids) {
        state.values.remove(id);
        const FieldType type = fieldTypeOf(m_info, id);
        const bool isHeldElsewhere = state.bindings.contains(id) || fields.value(id).isMultiLanguageText();
        if (!isHeldElsewhere && isModified(id)) {
            state.values.insert(id, fieldValueToJson(type, fieldValue(id)));
        }
    }
    return state;
}

/// Gives a new instance its values, before it is started.
void PlacedWidget::applyValues()
{
    const auto fields = m_info.fields();
    const QStringList ids = fieldIds(m_info);
    for (const QString &id : ids) {
        if (!widget()) {
            return;
        }
        if (fields.value(id).isMultiLanguageText()) {
            applyText(id);
            continue;
        }
        QVariant value = defaultValue(id);
        QString problem;
        const QJsonValue json = m_state.values.value(id);
        const bool isGiven =
            !json.isUndefined() && fieldValueFromJson(fieldTypeOf(m_info, id), json, value, problem);
        if (m_state.bindings.contains(id)) {
            value = boundValue(id);
        }
        if (value.isValid() || isGiven) {
            writeField(id, value, Host);
        }
    }
}

/// The value of what the field follows.
QVariant PlacedWidget::boundValue(const QString &fieldId) const
{
    const QString source = binding(fieldId);
    return fieldTypeOf(m_info, fieldId) == FieldTypeTrend ? QVariant(source)
                                                          : m_document->providers()->tags()->value(source);
}

void PlacedWidget::applyText(const QString &fieldId)
{
    const QVariant text = fieldText(fieldId, m_document->language());
    if (text.isValid()) {
        writeField(fieldId, text, Host);
    }
}

void PlacedWidget::writeField(const QString &fieldId, const QVariant &value, Origin origin)
{
    if (!widget()) {
        return;
    }
    {
        PluginCall call(m_document->activity(), ActivityEntry::HostWrite, name(),
                        QStringLiteral("setFieldValue"),
                        QStringLiteral("%1, %2").arg(fieldId, variantText(value)));
        m_live.priv()->setFieldValue(fieldId, value, true, true);
    }
    emit fieldValueChanged(fieldId, fieldValue(fieldId), origin);
}

void PlacedWidget::onPluginWrite(const QString &fieldId, const QVariant &value)
{
    ActivityEntry entry;
    entry.kind = ActivityEntry::PluginWrite;
    entry.instance = name();
    entry.what = QStringLiteral("fieldIsChanged");
    entry.arguments = QStringLiteral("%1, %2").arg(fieldId, variantText(value));
    entry.time = QDateTime::currentDateTimeUtc();
    m_document->activity()->record(entry);

    emit fieldValueChanged(fieldId, value, Plugin);
    if (m_state.bindings.contains(fieldId) && fieldTypeOf(m_info, fieldId) != FieldTypeTrend) {
        m_document->providers()->tags()->setValue(binding(fieldId), value);
    }
    emit m_document->changed();
}

void PlacedWidget::onTagChanged(const QString &tag, const QVariant &value)
{
    const auto bindings = m_state.bindings; // a handler may change them
    for (auto it = bindings.cbegin(); it != bindings.cend(); ++it) {
        if (it.value() == tag && fieldTypeOf(m_info, it.key()) != FieldTypeTrend) {
            writeField(it.key(), value, Tag);
        }
    }
}

} // namespace DEV
} // namespace KORA
