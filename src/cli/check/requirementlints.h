// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QString>
#include <QtCore/QVector>

struct RequirementLint
{
    const char *rule;
    int fieldIndex; ///< of the field that has the requirements
    QString message;
    QString hint;
};

/// What the requirements of a widget's fields come to when they are evaluated, which is less than the parser's grammar
/// promises. @p repaired are the @p fields as the parser accepts them; where that changed what values a field can have,
/// nothing is said of them.
QVector<RequirementLint> lintRequirements(const QJsonArray &fields, const QJsonArray &repaired);
