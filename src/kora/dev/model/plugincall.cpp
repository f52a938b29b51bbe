// SPDX-License-Identifier: Apache-2.0
#include "plugincall.h"

#include <QtCore/QtEndian>

#include <cstring>

namespace KORA {
namespace DEV {

namespace {

// The file: the number of running calls, then one slot of text per call. A deeper call than there are slots counts
// but is not named.
const int slotCount = 15;
const int slotSize = 256;
const int fileSize = (slotCount + 1) * slotSize;

} // namespace

CallTrace &CallTrace::instance()
{
    static CallTrace trace;
    return trace;
}

bool CallTrace::open(const QString &path)
{
    m_page = nullptr;
    m_depth = 0;
    m_file.close();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Truncate) || !m_file.resize(fileSize)) {
        return false;
    }
    m_page = m_file.map(0, fileSize);
    return m_page != nullptr;
}

QStringList CallTrace::runningCalls(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray page = file.read(fileSize);
    if (page.size() < fileSize) {
        return {};
    }
    const int depth = qBound(0, qFromUnaligned<int>(page.constData()), slotCount);
    QStringList calls;
    for (int i = 1; i <= depth; ++i) {
        const char *slot = page.constData() + i * slotSize;
        calls.append(QString::fromUtf8(slot, static_cast<int>(qstrnlen(slot, slotSize))));
    }
    return calls;
}

void CallTrace::enter(const QString &call)
{
    if (!m_page) {
        return;
    }
    if (m_depth < slotCount) {
        const QByteArray text = call.toUtf8().left(slotSize - 1);
        char *slot = reinterpret_cast<char *>(m_page) + (m_depth + 1) * slotSize;
        std::memcpy(slot, text.constData(), static_cast<size_t>(text.size()) + 1);
    }
    ++m_depth;
    std::memcpy(m_page, &m_depth, sizeof m_depth);
}

void CallTrace::leave()
{
    if (!m_page) {
        return;
    }
    --m_depth;
    std::memcpy(m_page, &m_depth, sizeof m_depth);
}

PluginCall::PluginCall(ActivityLog *log, ActivityEntry::Kind kind, const QString &instance,
                       const QString &what, const QString &arguments)
    : m_log(log)
{
    m_entry.kind = kind;
    m_entry.instance = instance;
    m_entry.what = what;
    m_entry.arguments = arguments;
    m_entry.time = QDateTime::currentDateTimeUtc();
    CallTrace::instance().enter(QStringLiteral("%1 of %2").arg(what, instance));
    m_timer.start();
}

PluginCall::~PluginCall()
{
    m_entry.nanoseconds = m_timer.nsecsElapsed();
    CallTrace::instance().leave();
    if (m_log) {
        m_log->record(std::move(m_entry));
    }
}

} // namespace DEV
} // namespace KORA
