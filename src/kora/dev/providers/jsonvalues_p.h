// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QStringList>

#include <initializer_list>

namespace KORA {
namespace DEV {

/// A double with every digit, also those that JSON has no form for: "nan", "inf" and "-inf" are texts.
QJsonValue numberToJson(double number);
bool numberFromJson(const QJsonValue &json, double &number);

/// Reads the entries of one JSON object. An absent entry gives the default; the first wrong one is named in the
/// problem, with what it should be, and makes the object no good.
class JsonEntries
{
public:
    JsonEntries(const QJsonObject &object, QString *problem)
        : m_object(object)
        , m_problem(problem)
    {}

    bool isGood() const { return m_isGood; }
    bool contains(const char *key) const { return m_object.contains(QLatin1String(key)); }
    void allowOnly(std::initializer_list<const char *> keys);

    QString text(const char *key, const QString &absent);
    bool flag(const char *key, bool absent);
    int integer(const char *key, int absent);
    qint64 wholeNumber(const char *key, qint64 absent);
    quint32 seed(const char *key, quint32 absent);
    double number(const char *key, double absent);
    int choice(const char *key, const QStringList &names, int absent);
    QStringList texts(const char *key);
    QJsonObject object(const char *key);
    /// Names an entry as wrong.
    void refuse(const char *key, const QString &reason);

private:
    bool find(const char *key, QJsonValue &value) const;

    const QJsonObject m_object;
    QString *m_problem;
    bool m_isGood = true;
};

} // namespace DEV
} // namespace KORA
