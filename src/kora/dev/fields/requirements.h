// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>

#include <kora/export.h>

class QTreeWidgetItem;

namespace KORA {
namespace DEV {

class FieldsPane;

/// One condition of a field's requirements.
struct RequirementInfo
{
    QString op; ///< "==", "<", ">", or empty: the field has a value
    QString fieldId;
    QString value;
    bool conjunctive = false; ///< the requirements hold an "&"; without effect on the result
};

/// A condition with what it came to.
struct RequirementResult
{
    RequirementInfo condition;
    QVariant present; ///< the field's value
    bool holds = false;
};

/// What a field's requirements came to. All that the bench does with requirements goes through this: what the rows
/// do, and what their author is told.
struct RequirementsOutcome
{
    QString requirements;
    /// In the order of the text; empty if the text is empty or invalid. The last one decides.
    QVector<RequirementResult> results;
    /// The part that is no condition; the text is then invalid.
    QString invalidPart;
    bool isInvalid = false;

    bool decides() const { return !results.isEmpty(); }
    bool isShown() const { return results.isEmpty() || results.last().holds; }
};

using FieldValueReader = std::function<QVariant(const QString &fieldId)>;

KORA_EXPORT RequirementsOutcome evaluateRequirements(const QString &requirements,
                                                     const FieldValueReader &getFieldValue);

/// Why the requirements hide a row, or show it against what they seem to say; empty if there is nothing to tell.
/// @p fieldIds are the fields that the widget has.
KORA_EXPORT QString requirementsReason(const RequirementsOutcome &outcome, const QStringList &fieldIds);

/// Shows and hides the rows of each field of the pane by its requirements, then the group rows.
KORA_EXPORT void updateFieldsRequirements(FieldsPane *pane);

/// Hides each group row that has no child row to show, and shows the others.
KORA_EXPORT void updateGroupRows(const QMap<QString, QTreeWidgetItem *> &groupRows);

} // namespace DEV
} // namespace KORA
