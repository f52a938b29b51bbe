// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QXmlStreamWriter>

#include <initializer_list>

namespace KORA {
namespace INTERNAL {

struct XmlAttribute
{
    QString name;
    QString value;
};

inline void writeAttributes(QXmlStreamWriter &writer, std::initializer_list<XmlAttribute> attributes)
{
    for (const XmlAttribute &attribute : attributes) {
        writer.writeAttribute(attribute.name, attribute.value);
    }
}

/// An element from its start tag to the end of the scope: the nesting of scopes is that of the document.
class XmlElement
{
public:
    XmlElement(QXmlStreamWriter &writer, const QString &name,
               std::initializer_list<XmlAttribute> attributes = {})
        : m_writer(writer)
    {
        m_writer.writeStartElement(name);
        writeAttributes(m_writer, attributes);
    }
    ~XmlElement() { m_writer.writeEndElement(); }
    Q_DISABLE_COPY_MOVE(XmlElement)

private:
    QXmlStreamWriter &m_writer;
};

/// An element that holds no other.
inline void writeLeaf(QXmlStreamWriter &writer, const QString &name,
                      std::initializer_list<XmlAttribute> attributes)
{
    const XmlElement leaf(writer, name, attributes);
}

/// A number as the design tool's documents write sizes and positions.
inline QString numberText(double number)
{
    return QString::number(number, 'g', 6);
}

} // namespace INTERNAL
} // namespace KORA
