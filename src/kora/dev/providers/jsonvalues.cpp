// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/jsonvalues_p.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KORA {
namespace DEV {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("KORA::DEV::Providers", text);
}

} // namespace

QJsonValue numberToJson(double number)
{
    if (std::isnan(number)) {
        return QStringLiteral("nan");
    }
    if (std::isinf(number)) {
        return number < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    }
    return number;
}

bool numberFromJson(const QJsonValue &json, double &number)
{
    const QString text = json.toString();
    if (text == QLatin1String("nan")) {
        number = std::numeric_limits<double>::quiet_NaN();
    } else if (text == QLatin1String("inf")) {
        number = std::numeric_limits<double>::infinity();
    } else if (text == QLatin1String("-inf")) {
        number = -std::numeric_limits<double>::infinity();
    } else {
        number = json.toDouble();
        return json.isDouble();
    }
    return true;
}

bool JsonEntries::find(const char *key, QJsonValue &value) const
{
    value = m_object.value(QLatin1String(key));
    return !value.isUndefined();
}

void JsonEntries::refuse(const char *key, const QString &reason)
{
    if (m_isGood && m_problem) {
        *m_problem = QStringLiteral("\"%1\": %2").arg(QLatin1String(key), reason);
    }
    m_isGood = false;
}

void JsonEntries::allowOnly(std::initializer_list<const char *> keys)
{
    for (auto entry = m_object.begin(); entry != m_object.end(); ++entry) {
        const QString key = entry.key();
        if (std::none_of(keys.begin(), keys.end(),
                         [&](const char *name) { return key == QLatin1String(name); })) {
            refuse(key.toUtf8().constData(), tr("there is no such entry"));
        }
    }
}

QString JsonEntries::text(const char *key, const QString &absent)
{
    QJsonValue value;
    if (!find(key, value)) {
        return absent;
    }
    if (!value.isString()) {
        refuse(key, tr("not a text"));
    }
    return value.toString();
}

bool JsonEntries::flag(const char *key, bool absent)
{
    QJsonValue value;
    if (!find(key, value)) {
        return absent;
    }
    if (!value.isBool()) {
        refuse(key, tr("neither true nor false"));
    }
    return value.toBool();
}

qint64 JsonEntries::wholeNumber(const char *key, qint64 absent)
{
    constexpr double Exact = 9007199254740992.0; // beyond 2^53 a JSON number is not whole any more
    QJsonValue value;
    if (!find(key, value)) {
        return absent;
    }
    const double number = value.toDouble(0.5);
    if (std::abs(number) > Exact || std::floor(number) < number) {
        refuse(key, tr("not a whole number"));
        return absent;
    }
    return static_cast<qint64>(number);
}

int JsonEntries::integer(const char *key, int absent)
{
    const qint64 number = wholeNumber(key, absent);
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        refuse(key, tr("%1 is too large a number").arg(number));
        return absent;
    }
    return static_cast<int>(number);
}

quint32 JsonEntries::seed(const char *key, quint32 absent)
{
    const qint64 number = wholeNumber(key, absent);
    if (number < 0 || number > std::numeric_limits<quint32>::max()) {
        refuse(key, tr("%1 is not between 0 and 4294967295").arg(number));
        return absent;
    }
    return static_cast<quint32>(number);
}

double JsonEntries::number(const char *key, double absent)
{
    QJsonValue value;
    double number = absent;
    if (find(key, value) && !numberFromJson(value, number)) {
        refuse(key, tr("not a number"));
    }
    return number;
}

int JsonEntries::choice(const char *key, const QStringList &names, int absent)
{
    QJsonValue value;
    if (!find(key, value)) {
        return absent;
    }
    const int index = value.isString() ? names.indexOf(value.toString()) : -1;
    if (index < 0) {
        refuse(key, tr("not one of %1").arg(names.join(QStringLiteral(", "))));
        return absent;
    }
    return index;
}

QStringList JsonEntries::texts(const char *key)
{
    QJsonValue value;
    if (!find(key, value)) {
        return {};
    }
    QStringList texts;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &entry : array) {
        if (!entry.isString()) {
            refuse(key, tr("not a list of texts"));
        }
        texts.append(entry.toString());
    }
    if (!value.isArray()) {
        refuse(key, tr("not a list of texts"));
    }
    return texts;
}

QJsonObject JsonEntries::object(const char *key)
{
    QJsonValue value;
    if (find(key, value) && !value.isObject()) {
        refuse(key, tr("not an object"));
    }
    return value.toObject();
}

} // namespace DEV
} // namespace KORA
