// SPDX-License-Identifier: Apache-2.0
#include "requirementlints.h"

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

#include <kora/host.h>

using namespace KORA::INTERNAL;

namespace {

struct Condition
{
    QString text; ///< with the blanks round it
    QString fieldId;
    QString comparison;
    QString value;
};

// As the evaluation splits them, but without the empty parts between the two characters of "&&" and "||".
QVector<Condition> conditionsOf(const QString &requirements)
{
    static const QRegularExpression comparisonExpression(QStringLiteral("==|<|>"));
    const QChar separator = QLatin1Char(requirements.contains(QLatin1Char('&')) ? '&' : '|');
    QVector<Condition> conditions;
    const QStringList parts = requirements.split(separator, Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QRegularExpressionMatch match = comparisonExpression.match(part);
        Condition condition;
        condition.text = part;
        condition.fieldId = match.hasMatch() ? part.left(match.capturedStart()) : part;
        condition.comparison = match.captured();
        condition.value = match.hasMatch() ? part.mid(match.capturedEnd()) : QString();
        conditions.append(condition);
    }
    return conditions;
}

/// Judges the requirements of one field.
class RequirementLinter
{
public:
    RequirementLinter(const QHash<QString, FieldMetaInformation> &fields, int fieldIndex,
                      QVector<RequirementLint> &lints)
        : m_fields(fields)
        , m_fieldIndex(fieldIndex)
        , m_lints(lints)
    {}

    void run(const FieldMetaInformation &field);

private:
    bool blank(const Condition &condition);
    void condition(const Condition &condition, const FieldMetaInformation &field);
    void never(const Condition &condition, const FieldMetaInformation &named);
    void add(const char *rule, const QString &message, const QString &hint)
    {
        m_lints.append({rule, m_fieldIndex, message, hint});
    }

    const QHash<QString, FieldMetaInformation> &m_fields;
    int m_fieldIndex;
    QVector<RequirementLint> &m_lints;
};

void RequirementLinter::run(const FieldMetaInformation &field)
{
    const QString requirements = field.requirements();
    if (requirements.isEmpty()) {
        return;
    }
    if (requirements.contains(QLatin1Char('&')) && requirements.contains(QLatin1Char('|'))) {
        add("requirement-mixed",
            QStringLiteral("&& and || in one text are not told apart: \"%1\"").arg(requirements),
            QStringLiteral("keep the condition that matters"));
        return;
    }
    const QVector<Condition> conditions = conditionsOf(requirements);
    if (requirements.contains(QLatin1String("&&")) || requirements.contains(QLatin1String("||"))) {
        add("requirement-last-counts",
            QStringLiteral("of several conditions only the last one decides: \"%1\"")
                .arg(conditions.last().text.trimmed()),
            QStringLiteral("keep the condition that matters; for the others add a field that sums them up"));
    }
    for (const Condition &one : conditions) {
        if (!blank(one)) {
            condition(one, field);
        }
    }
}

bool RequirementLinter::blank(const Condition &condition)
{
    const bool isRoundId = condition.fieldId != condition.fieldId.trimmed();
    // Numbers are read past blanks, texts are compared with them.
    const bool isRoundValue =
        condition.comparison == QLatin1String("==") && condition.value != condition.value.trimmed();
    if (!isRoundId && !isRoundValue) {
        return false;
    }
    add("requirement-blank",
        QStringLiteral("\"%1\" never holds: the blank belongs to the %2")
            .arg(condition.text, isRoundId ? QStringLiteral("field id") : QStringLiteral("value")),
        QStringLiteral("write \"%1%2%3\" without blanks")
            .arg(condition.fieldId.trimmed(), condition.comparison, condition.value.trimmed()));
    return true;
}

void RequirementLinter::condition(const Condition &condition, const FieldMetaInformation &field)
{
    if (condition.fieldId == field.id()) {
        add("requirement-self", QStringLiteral("the field requires itself: \"%1\"").arg(condition.text),
            QStringLiteral("name another field"));
        return;
    }
    const FieldMetaInformation named = m_fields.value(condition.fieldId);
    if (condition.comparison.isEmpty()) {
        add("requirement-existence",
            QStringLiteral("\"%1\" holds for any value of the field, false and 0 included")
                .arg(condition.text),
            named.type() == FieldTypeBool ? QStringLiteral("write \"%1==true\"").arg(condition.fieldId)
                                          : QStringLiteral("compare it with a value"));
        return;
    }
    never(condition, named);
}

// The texts that values of the field can have.
bool canBe(const FieldMetaInformation &field, const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    const auto isInside = [&field, number] {
        return (!field.minimum().isValid() || number >= field.minimum().toDouble())
               && (!field.maximum().isValid() || number <= field.maximum().toDouble());
    };
    const auto options = field.options();
    switch (field.type()) {
    case FieldTypeBool:
        return text == QLatin1String("true") || text == QLatin1String("false");
    case FieldTypeInteger:
        return QString::number(text.toInt()) == text && isInside();
    case FieldTypeOption:
        return std::any_of(options.cbegin(), options.cend(), [&text](const OptionType &option) {
            return QString::number(option.index) == text;
        });
    case FieldTypeDouble:
        return isNumber && QVariant(number).toString() == text && isInside();
    default:
        return true;
    }
}

void RequirementLinter::never(const Condition &condition, const FieldMetaInformation &named)
{
    if (condition.comparison != QLatin1String("==") || canBe(named, condition.value)) {
        return;
    }
    add("requirement-never",
        QStringLiteral("\"%1\" never holds: a field of type %2 cannot be \"%3\" here")
            .arg(condition.text, WidgetLibraryPluginMetaInformation::fieldTypeToString(named.type()),
                 condition.value),
        QStringLiteral(
            "values are compared as text: true or false, a number as short as it can be written, within "
            "the field's bounds, one of the declared options"));
}

// Of a wrong type or wrong options nobody knows what values were meant.
bool hasKnownValues(const QJsonObject &field, const QJsonObject &repaired)
{
    const QLatin1String keys[] = {QLatin1String("type"), QLatin1String("options"), QLatin1String("minimum"),
                                  QLatin1String("maximum")};
    return std::all_of(std::begin(keys), std::end(keys),
                       [&](QLatin1String key) { return field.value(key) == repaired.value(key); });
}

} // namespace

QVector<RequirementLint> lintRequirements(const QJsonArray &fields, const QJsonArray &repaired)
{
    QVector<FieldMetaInformation> declared;
    QHash<QString, FieldMetaInformation> byId;
    for (int i = 0; i < repaired.size(); ++i) {
        FieldMetaInformation field;
        QList<TranslationStringType> texts;
        WidgetLibraryPluginUtils::infoFromMetaDataParseField(repaired.at(i), field, {},
                                                             QStringLiteral("en-US"), texts);
        declared.append(field);
        const bool isKnown = hasKnownValues(fields.at(i).toObject(), repaired.at(i).toObject());
        byId.insert(field.id(), isKnown ? field : FieldMetaInformation());
    }
    QVector<RequirementLint> lints;
    for (int i = 0; i < declared.size(); ++i) {
        RequirementLinter(byId, i, lints).run(declared.at(i));
    }
    return lints;
}
