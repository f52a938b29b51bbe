// SPDX-License-Identifier: Apache-2.0
#include <kora/core/versiontype.h>

#include <QtCore/QStringBuilder>

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
    , m_version(QString::number(major) % QLatin1Char('.') % QString::number(minor) % QLatin1Char('.')
                % QString::number(patch))
{}

VersionType::VersionType(const QString &text)
{
    const int first = text.indexOf(QLatin1Char('.'));
    const int second = first < 0 ? -1 : text.indexOf(QLatin1Char('.'), first + 1);
    if (second < 0) {
        return;
    }
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int patch = 0;
    // A third point is no number, so that it need not be looked for.
    if (parsePart(text.leftRef(first), major) && parsePart(text.midRef(first + 1, second - first - 1), minor)
        && parsePart(text.midRef(second + 1), patch)) {
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
