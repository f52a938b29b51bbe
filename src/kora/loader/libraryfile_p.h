// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCborMap>
#include <QtCore/QString>

namespace KORA {
namespace INTERNAL {

/// What moc put into a library: the section ".qtmetadata".
struct MetaDataSection
{
    bool isValid = false;
    int qtMajor = 0;
    int qtMinor = 0;
    bool isDebug = false;
    QCborMap map; ///< by Qt's own keys
};

/// Reads the section as Qt does. Invalid where Qt would find fault with it, and for the form before Qt 5.12: plugins are
/// built with 5.15.
MetaDataSection readMetaDataSection(const QByteArray &section);

/// How much of a library file Qt and the system's loader may be trusted with. Qt 5.15 follows the offsets of a damaged
/// file out of its mapping, and writes a message about metadata that it cannot read; the system's loader maps what the
/// file does not hold. Either would end the host.
class LibraryFile
{
public:
    explicit LibraryFile(const QString &path);

    /// Whether Qt can look for the metadata, and finds some that it can read.
    bool hasMetaData() const { return m_hasMetaData; }
    /// Whether the file holds all that is loaded from it.
    bool isWhole() const { return m_isWhole; }

private:
    bool m_hasMetaData = false;
    bool m_isWhole = false;
};

} // namespace INTERNAL
} // namespace KORA
