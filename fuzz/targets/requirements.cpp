// SPDX-License-Identifier: Apache-2.0
//
// A field's requirements: the scanner against the language's definition, a regular expression, and the test bench's
// evaluation against a second, plain one.
#include "../fuzztarget.h"

#include <QtCore/QRegularExpression>

#include <kora/core/requirementsscanner_p.h>
#include <kora/dev/fields/requirements.h>

namespace {

// It backtracks: with longer texts the engine gives up.
constexpr int longestForExpression = 18;

const char definition[] =
    "^(?:(?:[a-zA-Z\\d_]+)+(?:(?: ){0,1}(?:==|<|>){1}(?: "
    "){0,1}(?:[\\+-]{0,1}[\\d]+|[\\d]+\\.[\\d]+|true|false){1})"
    "{0,1}(?: ){0,1}(?:&&|\\|\\|){1}(?: ){0,1})*(?:(?:[a-zA-Z\\d_]+)+(?: ){0,1}(?:(?:==|<|>){1}(?: ){0,1}"
    "(?:[\\+-]{0,1}[\\d]+|[\\d]+\\.[\\d]+|true|false){1}){0,1}){1}$";

void compareWithDefinition(const QString &text)
{
    static const QRegularExpression expression{QLatin1String(definition)};
    expect(expression.isValid(), "the definition is no expression");
    QStringList ids;
    const bool isAccepted = KORA::INTERNAL::scanRequirements(text, ids);
    // "$" also matches in front of a line feed at the end.
    if (text.size() <= longestForExpression && !text.endsWith(QLatin1Char('\n'))) {
        expect(isAccepted == expression.match(text).hasMatch(), "the scanner and its definition differ");
    }
    for (const QString &id : qAsConst(ids)) {
        expect(!isAccepted || (text.contains(id) && KORA::INTERNAL::isIdentifierText(id) && !id.isEmpty()),
               "an id that the text does not hold");
    }
}

QVariant valueOf(const QString &id)
{
    static const QVariantList values{{}, true, 2, 5.5, QStringLiteral("2"), QStringLiteral("x"), -1, false};
    return id.isEmpty() ? QVariant() : values.at(id.at(0).unicode() % values.size());
}

// 1 or 0 for a part that holds or does not, -1 for none.
int evaluatePart(const QString &part)
{
    for (const QString &op : {QStringLiteral("=="), QStringLiteral("<"), QStringLiteral(">")}) {
        const int at = part.indexOf(op);
        if (at < 0) {
            continue;
        }
        const QVariant present = valueOf(part.left(at));
        const QString value = part.mid(at + op.size());
        if (value.contains(op)) {
            return -1;
        }
        if (op == QLatin1String("==")) {
            return present.toString() == value ? 1 : 0;
        }
        const double difference = present.toDouble() - value.toDouble();
        return (op == QLatin1String("<") ? difference < 0 : difference > 0) ? 1 : 0;
    }
    return valueOf(part).isValid() ? 1 : 0;
}

} // namespace

KORA_FUZZ_TARGET(requirements)
{
    const QString text = QString::fromUtf8(input);
    compareWithDefinition(text);

    const auto outcome = KORA::DEV::evaluateRequirements(text, valueOf);
    KORA::DEV::requirementsReason(outcome, {QStringLiteral("mode"), QStringLiteral("a")});
    if (text.isEmpty()) {
        expect(!outcome.decides() && outcome.isShown(), "an empty text decides");
        return;
    }
    const QChar separator = text.contains(QLatin1Char('&')) ? QLatin1Char('&') : QLatin1Char('|');
    bool isInvalid = false;
    int last = 0;
    const QStringList parts = text.split(separator);
    for (const QString &part : parts) {
        last = evaluatePart(part);
        isInvalid = isInvalid || last < 0;
    }
    expect(outcome.isInvalid == isInvalid, "invalid for one, not for the other");
    expect(isInvalid || outcome.isShown() == (last == 1), "shown by one, hidden by the other");
}
