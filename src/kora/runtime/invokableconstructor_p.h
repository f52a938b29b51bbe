// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>

namespace KORA {

/// The invokable constructor of a class that takes one argument of a type, looked up once: QMetaObject::newInstance()
/// takes longer to find it each time than many classes take to construct.
class InvokableConstructor
{
public:
    /// None.
    InvokableConstructor() = default;
    /// @p type is the argument's type as the meta-object system writes it. The class may be null.
    InvokableConstructor(const QMetaObject *metaObject, const char *type)
        : m_metaObject(metaObject)
    {
        if (metaObject) {
            const QByteArray name = metaObject->className();
            const QByteArray unqualified = name.mid(name.lastIndexOf(':') + 1);
            m_index = metaObject->indexOfConstructor(QByteArray(unqualified + '(' + type + ')').constData());
        }
    }

    const QMetaObject *metaObject() const { return m_metaObject; }

    /// A new object, the caller's; null without such a constructor.
    QObject *construct(const void *argument) const
    {
        QObject *object = nullptr;
        if (m_index >= 0) {
            void *arguments[] = {&object, const_cast<void *>(argument)};
            m_metaObject->static_metacall(QMetaObject::CreateInstance, m_index, arguments);
        }
        return object;
    }

private:
    const QMetaObject *m_metaObject = nullptr;
    int m_index = -1;
};

} // namespace KORA
