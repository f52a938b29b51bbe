// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <kora/export.h>

namespace KORA {
namespace DEV {

struct TagDefinition
{
    QString name;
    int type = 0;
    QVariant value;
};

class KORA_EXPORT TagTable : public QObject
{
    Q_OBJECT

public:
    QVariant value(const QString &tag) const { return m_values.value(tag); }
    bool setValue(const QString &tag, const QVariant &value, QString *problem = nullptr)
    {
        Q_UNUSED(problem)
        if (m_values.value(tag) != value) {
            m_values.insert(tag, value);
            emit valueChanged(tag, value);
        }
        return true;
    }

    bool add(const TagDefinition &definition, QString *) { return setValue(definition.name, definition.value); }

Q_SIGNALS:
    void valueChanged(const QString &tag, const QVariant &value);

private:
    QHash<QString, QVariant> m_values;
};

} // namespace DEV
} // namespace KORA
