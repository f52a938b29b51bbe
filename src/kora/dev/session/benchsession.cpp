// SPDX-License-Identifier: Apache-2.0
#include "benchsession.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

namespace {

const QLatin1String suffix(".json");

QString stateFolder()
{
    const QString folder = qEnvironmentVariable("XDG_STATE_HOME");
    return QDir::isAbsolutePath(folder) ? folder : QDir::home().filePath(QStringLiteral(".local/state"));
}

QString baseOf(const QString &path)
{
    return path.endsWith(suffix) ? path.chopped(suffix.size()) : path;
}

/// A name that is not taken, with the time in it.
QString damagedName(const QString &path)
{
    const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString name;
    for (int i = 0; i == 0 || QFileInfo::exists(name); ++i) {
        const QString number = i == 0 ? QString() : QStringLiteral("-%1").arg(i);
        name = QStringLiteral("%1.damaged-%2%3%4").arg(baseOf(path), time, number, suffix);
    }
    return name;
}

} // namespace

QString BenchSession::defaultPath(const QString &pluginId)
{
    return QStringLiteral("%1/kora/bench/%2%3").arg(stateFolder(), pluginId, suffix);
}

BenchSession::Found BenchSession::read(const QString &path, Scenario &scenario, QString &message)
{
    if (!QFileInfo::exists(path)) {
        return Found::Nothing;
    }
    QStringList problems;
    if (Scenario::load(path, scenario, problems)) {
        return Found::Session;
    }
    const QString reason = problems.isEmpty() ? QString() : problems.first();
    const QString name = damagedName(path);
    message = QFile::rename(path, name)
                  ? tr("The last session cannot be read (%1). It is kept as %2.").arg(reason, name)
                  : tr("The last session cannot be read (%1), nor renamed: copy %2 before you go on.")
                        .arg(reason, path);
    return Found::Damaged;
}

bool BenchSession::setAside(const QString &path)
{
    if (!QFileInfo::exists(path)) {
        return true;
    }
    const QString previous = baseOf(path) + QLatin1String(".previous") + suffix;
    return (!QFileInfo::exists(previous) || QFile::remove(previous)) && QFile::rename(path, previous);
}

BenchSession::BenchSession(const QString &path, BenchDocument *document, QObject *parent)
    : QObject(parent)
    , m_path(path)
    , m_document(document)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(delayMs);
    connect(&m_timer, &QTimer::timeout, this, &BenchSession::save);
    connect(document, &BenchDocument::changed, this, &BenchSession::noteChange);
}

BenchSession::~BenchSession() = default;

void BenchSession::noteChange()
{
    if (!m_timer.isActive() && !m_isSuspended) {
        m_timer.start();
    }
}

bool BenchSession::save()
{
    m_timer.stop();
    if (m_isSuspended) {
        return true;
    }
    Scenario scenario = m_document->toScenario();
    if (m_view) {
        scenario.view = m_view();
    }
    const QByteArray text = QJsonDocument(scenario.toJson()).toJson(QJsonDocument::Compact);
    if (text == m_written && QFileInfo::exists(m_path)) {
        return true;
    }
    QString problem;
    if (!QDir().mkpath(QFileInfo(m_path).path())) {
        problem = tr("the folder %1 cannot be made").arg(QFileInfo(m_path).path());
    } else if (scenario.save(m_path, problem)) {
        m_written = text;
    }
    if (!problem.isEmpty() && problem != m_lastProblem) {
        emit failed(problem);
    }
    m_lastProblem = problem;
    return problem.isEmpty();
}

bool BenchSession::suspend()
{
    const bool isSaved = save();
    m_isSuspended = true;
    return isSaved;
}

void BenchSession::resume()
{
    m_isSuspended = false;
    m_written.clear(); // another may have written the file
    noteChange();
}

} // namespace DEV
} // namespace KORA
