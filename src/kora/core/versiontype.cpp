// SPDX-License-Identifier: Apache-2.0
#include <kora/core/versiontype.h>

#include <QtCore/QVector>

#include <tuple>

namespace KORA {
namespace INTERNAL {

namespace {

constexpr unsigned int maximumPart = 999999999;

bool parsePart(const QStringRef &text, unsigned int &part)
{
    bool ok = false;
    part = text.toUInt(&ok, 10);
    return ok && part <= maximumPart;
}

} // namespace

VersionType::VersionType(unsigned int major, unsigned int minor, unsigned int patch)
    : m_major(major)
    , m_minor(minor)
    , m_patch(patch)
    , m_version(QString::number(major) + QLatin1Char('.') + QString::number(minor) + QLatin1Char('.')
                + QString::number(patch))
{}

VersionType::VersionType(const QString &text)
{
    const QVector<QStringRef> parts = text.splitRef(QLatin1Char('.'));
    if (parts.size() != 3) {
        return;
    }
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int patch = 0;
    if (parsePart(parts.at(0), major) && parsePart(parts.at(1), minor) && parsePart(parts.at(2), patch)) {
        *this = VersionType(major, minor, patch);
    }
}

bool VersionType::operator==(const VersionType &other) const
{
    return m_major == other.m_major && m_minor == other.m_minor && m_patch == other.m_patch;
}

bool VersionType::operator<(const VersionType &other) const
{
    return std::tie(m_major, m_minor, m_patch) < std::tie(other.m_major, other.m_minor, other.m_patch);
}

} // namespace INTERNAL
} // namespace KORA
