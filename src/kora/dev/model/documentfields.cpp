// SPDX-License-Identifier: Apache-2.0
#include "benchdocument.h"

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

QVariant BenchDocument::setFieldValue(PlacedWidget *widget, const QString &fieldId, const QVariant &value,
                                      int gesture)
{
    const FieldMetaInformation field = widget->info().fields().value(fieldId);
    if (field.isMultiLanguageText()) {
        setFieldText(widget, fieldId, m_language, value, gesture);
        return value;
    }
    const QVariant before = widget->fieldValue(fieldId);
    const QVariant after =
        WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(field.type(), value, fieldId, widget->info());
    const int id = widget->id();
    push(
        tr("Set %1 of %2").arg(fieldId, widget->name()),
        {gesture, QStringLiteral("%1 %2").arg(QString::number(id), fieldId)},
        [this, id, fieldId, after] { applyFieldValue(id, fieldId, after); },
        [this, id, fieldId, before] { applyFieldValue(id, fieldId, before); });
    return after;
}

void BenchDocument::applyFieldValue(int id, const QString &fieldId, const QVariant &value)
{
    PlacedWidget *widget = widgetById(id);
    if (!widget) {
        return;
    }
    const FieldType type = fieldTypeOf(widget->info(), fieldId);
    const bool isBoundToTag = !widget->binding(fieldId).isEmpty() && type != FieldTypeTrend;
    if (isBoundToTag) {
        m_providers->tags()->setValue(widget->binding(fieldId), value);
    } else {
        // A field that was never set cannot become so again.
        widget->writeField(fieldId, value.isValid() ? value : emptyFieldValue(type), PlacedWidget::Host);
    }
}

void BenchDocument::setFieldText(PlacedWidget *widget, const QString &fieldId, const QString &language,
                                 const QVariant &text, int gesture)
{
    const QJsonValue before = widget->m_state.texts.value(fieldId);
    QJsonObject texts = before.toObject();
    texts.insert(language, fieldValueToJson(fieldTypeOf(widget->info(), fieldId), text));
    const auto apply = [this, id = widget->id(), fieldId](const QJsonValue &json) {
        applyFieldTexts(id, fieldId, json);
    };
    push(
        tr("Set %1 of %2").arg(fieldId, widget->name()),
        {gesture, QStringLiteral("%1 %2 %3").arg(QString::number(widget->id()), fieldId, language)},
        [apply, texts] { apply(texts); }, [apply, before] { apply(before); });
}

void BenchDocument::applyFieldTexts(int id, const QString &fieldId, const QJsonValue &texts)
{
    PlacedWidget *widget = widgetById(id);
    if (!widget) {
        return;
    }
    if (texts.isUndefined()) {
        widget->m_state.texts.remove(fieldId);
    } else {
        widget->m_state.texts.insert(fieldId, texts);
    }
    widget->applyText(fieldId);
}

void BenchDocument::resetFields(PlacedWidget *widget, const QStringList &fieldIds)
{
    if (fieldIds.isEmpty()) {
        return;
    }
    m_undoStack.beginMacro(tr("Reset %n field(s)", nullptr, fieldIds.size()));
    for (const QString &id : fieldIds) {
        setBinding(widget, id, QString());
        if (widget->info().fields().value(id).isMultiLanguageText()) {
            const QJsonValue before = widget->m_state.texts.value(id);
            const auto apply = [this, number = widget->id(), id](const QJsonValue &texts) {
                applyFieldTexts(number, id, texts);
            };
            push(
                QString(), {}, [apply] { apply(QJsonValue::Undefined); }, [apply, before] { apply(before); });
        } else {
            setFieldValue(widget, id, widget->defaultValue(id));
        }
    }
    m_undoStack.endMacro();
}

void BenchDocument::setBinding(PlacedWidget *widget, const QString &fieldId, const QString &source)
{
    const QString before = widget->binding(fieldId);
    if (source == before) {
        return;
    }
    const QVariant valueBefore = widget->fieldValue(fieldId);
    const auto apply = [this, id = widget->id(), fieldId](const QString &source, const QVariant &value) {
        PlacedWidget *widget = widgetById(id);
        if (!widget) {
            return;
        }
        if (source.isEmpty()) {
            widget->m_state.bindings.remove(fieldId);
            widget->writeField(fieldId, value, PlacedWidget::Host);
        } else {
            widget->m_state.bindings.insert(fieldId, source);
            widget->writeField(fieldId, widget->boundValue(fieldId), PlacedWidget::Tag);
        }
        emit widget->bindingChanged(fieldId);
    };
    // Without a source the field keeps what it has.
    push(
        source.isEmpty() ? tr("Unbind %1 of %2").arg(fieldId, widget->name())
                         : tr("Bind %1 of %2").arg(fieldId, widget->name()),
        {}, [apply, source, valueBefore] { apply(source, valueBefore); },
        [apply, before, valueBefore] { apply(before, valueBefore); });
}

} // namespace DEV
} // namespace KORA
