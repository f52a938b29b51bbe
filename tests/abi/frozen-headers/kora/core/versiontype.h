// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

/// A version of three numbers, ordered numerically: 1.10.0 is later than 1.9.9.
///
/// An invalid version has an empty text and counts as 0.0.0 in comparisons, so it equals the valid 0.0.0.
class KORA_EXPORT VersionType
{
public:
    /// Invalid.
    VersionType() = default;
    /// Always valid; the numbers are taken as they are.
    VersionType(unsigned int major, unsigned int minor, unsigned int patch);
    /// "major.minor.patch", each number from 0 to 999999999; any other text gives an invalid version.
    explicit VersionType(const QString &text);

    bool isValid() const { return !m_version.isEmpty(); }
    /// The canonical text: the three numbers without leading zeros; empty for an invalid version.
    QString version() const { return m_version; }
    unsigned int versionMajor() const { return m_major; }
    unsigned int versionMinor() const { return m_minor; }
    unsigned int versionPatch() const { return m_patch; }

    bool operator==(const VersionType &other) const;
    bool operator!=(const VersionType &other) const { return !(*this == other); }
    bool operator<(const VersionType &other) const;
    bool operator<=(const VersionType &other) const { return *this == other || *this < other; }
    bool operator>(const VersionType &other) const { return other < *this; }
    bool operator>=(const VersionType &other) const { return *this == other || *this > other; }

private:
    unsigned int m_major = 0;
    unsigned int m_minor = 0;
    unsigned int m_patch = 0;
    QString m_version;
};

} // namespace INTERNAL
} // namespace KORA
