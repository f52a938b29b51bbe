// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/requirements.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QTreeWidget>

#include <kora/core/pluginmetainformation.h>
#include <kora/dev/fields/fieldmanager.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/widgetlibraryplugintestwidget_p.h>
#include <kora/loader/plugindata.h>
#include <kora/log/logging.h>

namespace KORA {
namespace DEV {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("KORA::DEV::Requirements", text);
}

// Nothing is trimmed: blanks belong to the names and values. Empty parts stay, so "a==1&&b==2" has three.
QStringList partsOf(const QString &requirements)
{
    for (const QLatin1Char separator : {QLatin1Char('&'), QLatin1Char('|')}) {
        if (requirements.contains(separator)) {
            return requirements.split(separator);
        }
    }
    return {requirements};
}

// The first operator of the list that occurs anywhere decides: in "a<b==c" it is "==".
bool parseCondition(const QString &part, RequirementInfo &condition)
{
    condition.fieldId = part;
    for (const char *op : {"==", "<", ">"}) {
        const QLatin1String text(op);
        if (!part.contains(text)) {
            continue;
        }
        const QStringList pieces = part.split(text);
        condition.op = text;
        condition.fieldId = pieces.first();
        condition.value = pieces.last();
        return pieces.size() == 2;
    }
    return true;
}

bool holds(const RequirementInfo &condition, const QVariant &present)
{
    if (condition.op == QLatin1String("==")) {
        return QVariant(condition.value).toString() == present.toString();
    }
    // What is no number counts as 0 on either side.
    if (condition.op == QLatin1String(">")) {
        return present.toDouble() > condition.value.toDouble();
    }
    if (condition.op == QLatin1String("<")) {
        return present.toDouble() < condition.value.toDouble();
    }
    return present.isValid();
}

// Reasons ---------------------------------------------------------------------------------------------------

QString textOf(const RequirementInfo &condition)
{
    return condition.fieldId + condition.op + condition.value;
}

bool hasOuterBlank(const QString &text)
{
    return text != text.trimmed();
}

QString presentText(const RequirementResult &result)
{
    const QVariant &value = result.present;
    if (!value.isValid()) {
        return tr("%1 has no value").arg(result.condition.fieldId);
    }
    const bool isText = value.userType() == QMetaType::QString;
    const QString text = isText ? QLatin1Char('"') + value.toString() + QLatin1Char('"') : value.toString();
    return tr("%1 is %2").arg(result.condition.fieldId, text);
}

QString failureOf(const RequirementsOutcome &outcome, const QStringList &fieldIds)
{
    const RequirementResult &last = outcome.results.last();
    const RequirementInfo &condition = last.condition;
    if (condition.fieldId.isEmpty()) {
        return tr("never matches: the last condition is the empty part of \"%1\", and no field has an empty "
                  "name")
            .arg(outcome.requirements);
    }
    if (hasOuterBlank(condition.fieldId)) {
        return tr("never matches: blanks belong to the name \"%1\"").arg(condition.fieldId);
    }
    if (hasOuterBlank(condition.value) && condition.op == QLatin1String("==")) {
        return tr("never matches: blanks belong to the value \"%1\"").arg(condition.value);
    }
    if (!fieldIds.contains(condition.fieldId)) {
        return tr("never matches: there is no field \"%1\"").arg(condition.fieldId);
    }
    const QString condition_ = textOf(condition);
    return outcome.results.size() > 1
               ? tr("last condition %1 is false (%2)").arg(condition_, presentText(last))
               : tr("condition %1 is false (%2)").arg(condition_, presentText(last));
}

// The last condition holds, an earlier one does not: what an author who reads "&&" does not expect.
QString surpriseOf(const RequirementsOutcome &outcome)
{
    for (const RequirementResult &result : outcome.results) {
        if (!result.holds && result.condition.conjunctive && !result.condition.fieldId.isEmpty()) {
            return tr("shown although %1 is false: only the last condition counts, and %2 holds")
                .arg(textOf(result.condition), textOf(outcome.results.last().condition));
        }
    }
    return {};
}

} // namespace

RequirementsOutcome evaluateRequirements(const QString &requirements, const FieldValueReader &getFieldValue)
{
    RequirementsOutcome outcome;
    outcome.requirements = requirements;
    if (requirements.isEmpty()) {
        return outcome;
    }
    QVector<RequirementInfo> conditions;
    const QStringList parts = partsOf(requirements);
    for (const QString &part : parts) {
        RequirementInfo condition;
        condition.conjunctive = requirements.contains(QLatin1Char('&'));
        if (!parseCondition(part, condition)) {
            outcome.isInvalid = true;
            outcome.invalidPart = part;
            return outcome;
        }
        conditions.append(condition);
    }
    for (const RequirementInfo &condition : qAsConst(conditions)) {
        const QVariant present = getFieldValue(condition.fieldId);
        outcome.results.append({condition, present, holds(condition, present)});
    }
    return outcome;
}

QString requirementsReason(const RequirementsOutcome &outcome, const QStringList &fieldIds)
{
    if (outcome.isInvalid) {
        return tr("ignored: \"%1\" has more than one operator").arg(outcome.invalidPart);
    }
    if (!outcome.decides()) {
        return {};
    }
    return outcome.isShown() ? surpriseOf(outcome) : failureOf(outcome, fieldIds);
}

void updateGroupRows(const QMap<QString, QTreeWidgetItem *> &groupRows)
{
    for (QTreeWidgetItem *group : groupRows) {
        bool isEmpty = true;
        for (int i = 0; i < group->childCount() && isEmpty; ++i) {
            isEmpty = group->child(i)->isHidden();
        }
        if (group->isHidden() != isEmpty) {
            group->setHidden(isEmpty);
        }
    }
}

void updateFieldsRequirements(FieldsPane *pane)
{
    const auto reader = [pane](const QString &fieldId) { return pane->fieldValue(fieldId); };
    for (FieldManager *manager : pane->fieldManagers()) {
        const RequirementsOutcome outcome = evaluateRequirements(manager->requirements(), reader);
        if (outcome.isInvalid) {
            // The row stays as it is, shown or hidden.
            LogHandler(pane->pluginId(), nullptr, 0, nullptr, "TESTAPP").critical().debug()
                << "The requirements" << outcome.requirements << "of the field" << manager->id()
                << "is invalid:" << outcome.invalidPart;
        }
        // Each condition is applied in turn and none is combined with another: the last one wins, and "&" and "|"
        // mean the same.
        for (const RequirementResult &result : outcome.results) {
            manager->setVisible(result.holds);
        }
        manager->setRequirementsOutcome(outcome);
    }
    updateGroupRows(pane->groupRows());
    pane->onRequirementsEvaluated();
}

// The window's part -------------------------------------------------------------------------------------------

void WidgetLibraryPluginTestWidgetPrivate::setFieldsPane(FieldsPane *pane)
{
    fieldsPane = pane;
    const auto update = [this] { updateFieldsRequirements(); };
    QObject::connect(pane, &FieldsPane::treeRebuilt, pane, update);
    QObject::connect(pane, &FieldsPane::fieldEdited, pane, update);
    QObject::connect(pane, &FieldsPane::valuesChanged, pane, update);
    updateFieldsRequirements();
}

QVariant WidgetLibraryPluginTestWidgetPrivate::getFieldValue(const QString &fieldId) const
{
    return fieldsPane->fieldValue(fieldId);
}

void WidgetLibraryPluginTestWidgetPrivate::setFieldValue(const QString &fieldId, const QVariant &value)
{
    fieldsPane->setFieldValue(fieldId, value);
}

const QMap<QString, FieldManager *> &WidgetLibraryPluginTestWidgetPrivate::fieldManagers() const
{
    return fieldsPane->fieldManagers();
}

const QMap<QString, QTreeWidgetItem *> &WidgetLibraryPluginTestWidgetPrivate::groupRows() const
{
    return fieldsPane->groupRows();
}

void WidgetLibraryPluginTestWidgetPrivate::updateFieldsRequirements()
{
    DEV::updateFieldsRequirements(fieldsPane);
}

} // namespace DEV
} // namespace KORA
