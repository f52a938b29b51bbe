// SPDX-License-Identifier: Apache-2.0
#include "benchstart.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>

namespace {

QStringList textsOf(const QJsonValue &array)
{
    QStringList texts;
    const QJsonArray values = array.toArray();
    for (const QJsonValue &value : values) {
        texts.append(value.toString());
    }
    return texts;
}

} // namespace

QString BenchCrash::instance() const
{
    return calls.value(calls.size() - 1).section(QLatin1String(" of "), 1);
}

QString BenchCrash::summary() const
{
    if (calls.isEmpty()) {
        return QStringLiteral("Crashed while painting, in a timer or in a thread of the plugin (%1).")
            .arg(cause);
    }
    return QStringLiteral("Crashed in %1 (%2).").arg(calls.last(), cause);
}

QJsonObject BenchCrash::toJson() const
{
    return {{QStringLiteral("cause"), cause},
            {QStringLiteral("calls"), QJsonArray::fromStringList(calls)},
            {QStringLiteral("details"), details},
            {QStringLiteral("repeated"), isRepeated}};
}

BenchCrash BenchCrash::fromJson(const QJsonObject &json)
{
    return {json[QLatin1String("cause")].toString(), textsOf(json[QLatin1String("calls")]),
            json[QLatin1String("details")].toString(), json[QLatin1String("repeated")].toBool()};
}

QJsonObject BenchStart::toJson() const
{
    return {{QStringLiteral("folder"), folder},
            {QStringLiteral("scenario"), scenario},
            {QStringLiteral("session"), session},
            {QStringLiteral("traceFolder"), traceFolder},
            {QStringLiteral("mode"), mode},
            {QStringLiteral("language"), language},
            {QStringLiteral("page"), page},
            {QStringLiteral("theme"), theme},
            {QStringLiteral("stopped"), isStopped},
            {QStringLiteral("withoutPlugin"), withoutPlugin},
            {QStringLiteral("fresh"), isFresh},
            {QStringLiteral("reloadSince"), static_cast<double>(reloadSinceMs)},
            {QStringLiteral("crash"), crash.toJson()}};
}

BenchStart BenchStart::fromJson(const QJsonObject &json)
{
    BenchStart start;
    start.folder = json[QLatin1String("folder")].toString();
    start.scenario = json[QLatin1String("scenario")].toString();
    start.session = json[QLatin1String("session")].toString();
    start.traceFolder = json[QLatin1String("traceFolder")].toString();
    start.mode = json[QLatin1String("mode")].toString();
    start.language = json[QLatin1String("language")].toString();
    start.page = json[QLatin1String("page")].toString();
    start.theme = json[QLatin1String("theme")].toString();
    start.isStopped = json[QLatin1String("stopped")].toBool();
    start.withoutPlugin = json[QLatin1String("withoutPlugin")].toBool();
    start.isFresh = json[QLatin1String("fresh")].toBool();
    start.reloadSinceMs = static_cast<qint64>(json[QLatin1String("reloadSince")].toDouble(-1));
    start.crash = BenchCrash::fromJson(json[QLatin1String("crash")].toObject());
    return start;
}

qint64 monotonicMs()
{
    QElapsedTimer timer;
    timer.start();
    return timer.msecsSinceReference();
}
