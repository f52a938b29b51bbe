// SPDX-License-Identifier: Apache-2.0
#include "support/program.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QMessageLogger>

#include <kora/log/logging.h>
#include <kora/log/logging_p.h>

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace {

const char category[] = "PLUMBING";
const char text[] = "The pressure of vessel 12 is 4.75 bar, above the limit of 4.50 bar: valve 7";

QMessageLogContext context()
{
    return {nullptr, 0, nullptr, category};
}

// The line without the time, which stands in the first 21 characters in all of them.
QString withoutTime(const QString &line)
{
    return line.mid(21);
}

const QString &expectedLine()
{
    static const QString line = QStringLiteral("[WARNING][PLUMBING]: ") + QLatin1String(text);
    return line;
}

void useQtPattern()
{
    qSetMessagePattern(QStringLiteral(
        "[%{time yyyy-MM-ddThh:mm:ss}][%{if-warning}WARNING%{endif}][%{category}]: %{message}"));
}

// One line from message to text -----------------------------------------------------------------------------

void formatOurs(benchmark::State &state)
{
    const QString message = QLatin1String(text);
    if (!require(state, withoutTime(koraFormatLogMessage(QtWarningMsg, context(), message)) == expectedLine(),
                 "another line")) {
        return;
    }
    measure(state, [&] { benchmark::DoNotOptimize(koraFormatLogMessage(QtWarningMsg, context(), message)); });
}

void formatQt(benchmark::State &state)
{
    useQtPattern();
    const QString message = QLatin1String(text);
    if (!require(state, withoutTime(qFormatLogMessage(QtWarningMsg, context(), message)) == expectedLine(),
                 "another line")) {
        return;
    }
    measure(state, [&] { benchmark::DoNotOptimize(qFormatLogMessage(QtWarningMsg, context(), message)); });
}

void formatSpdlog(benchmark::State &state)
{
    spdlog::pattern_formatter formatter("[%Y-%m-%dT%H:%M:%S][WARNING][%n]: %v",
                                        spdlog::pattern_time_type::local, "");
    const auto format = [&] {
        spdlog::memory_buf_t line;
        const spdlog::details::log_msg message(category, spdlog::level::warn, text);
        formatter.format(message, line);
        benchmark::DoNotOptimize(line.data());
        return QString::fromLatin1(line.data(), int(line.size()));
    };
    if (!require(state, withoutTime(format()) == expectedLine(), "another line")) {
        return;
    }
    measure(state, [&] {
        spdlog::memory_buf_t line;
        const spdlog::details::log_msg message(category, spdlog::level::warn, text);
        formatter.format(message, line);
        benchmark::DoNotOptimize(line.data());
    });
}

// A call site up to what receives the line -----------------------------------------------------------------

std::atomic<qint64> received{0};

void receive(int, const QString &, const QString &line, void *)
{
    received += line.size() > 60 ? 1 : 0;
}

void receiveQt(QtMsgType type, const QMessageLogContext &messageContext, const QString &message)
{
    received += qFormatLogMessage(type, messageContext, message).size() > 60 ? 1 : 0;
}

class FormattingSink : public spdlog::sinks::base_sink<std::mutex>
{
protected:
    void sink_it_(const spdlog::details::log_msg &message) override
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        received += line.size() > 60 ? 1 : 0;
    }
    void flush_() override {}
};

// The three arguments of all call sites: a text, a number, a text.
const QString &vessel()
{
    static const QString name = QStringLiteral("The pressure of vessel 12 is above its limit by");
    return name;
}

void logOurs()
{
    KORA::LogHandler(QString(), nullptr, 0, nullptr, category).warning().debug() << vessel() << 12 << "mbar";
}

void logQt()
{
    QMessageLogger(nullptr, 0, nullptr, category).warning() << vessel() << 12 << "mbar";
}

void logStream()
{
    QString line;
    QDebug(&line) << vessel() << 12 << "mbar";
    benchmark::DoNotOptimize(line);
}

spdlog::logger &spdlogLogger()
{
    static const auto logger = [] {
        auto sink = std::make_shared<FormattingSink>();
        sink->set_formatter(std::make_unique<spdlog::pattern_formatter>(
            "[%Y-%m-%dT%H:%M:%S][WARNING][%n]: %v", spdlog::pattern_time_type::local, ""));
        return std::make_unique<spdlog::logger>(category, sink);
    }();
    return *logger;
}

void logSpdlog()
{
    static const std::string name = vessel().toStdString();
    spdlogLogger().warn("{} {} {}", name, 12, "mbar");
}

template<void (*log)()>
void deliver(benchmark::State &state)
{
    const qint64 before = received;
    log();
    if (require(state, received > before, "no line received")) {
        measure(state, log);
    }
}

void frontOurs(benchmark::State &state)
{
    KORA::koraInstallLogMessageHandlerPrivate(receive, nullptr);
    deliver<logOurs>(state);
}

void frontQt(benchmark::State &state)
{
    useQtPattern();
    const QtMessageHandler previous = qInstallMessageHandler(receiveQt);
    deliver<logQt>(state);
    qInstallMessageHandler(previous);
}

void frontStream(benchmark::State &state)
{
    measure(state, logStream);
}

// Both cores at work: two threads that spin take half the wall-clock time of one per round, or nothing about threads
// can be said.
void spin(benchmark::State &state)
{
    for (auto _ : state) {
        for (int i = 0; i < 1000; ++i) {
            benchmark::DoNotOptimize(i);
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    // Qt looks at the zone's file for every time that it formats, unless the environment names the zone.
    qputenv("TZ", "Europe/Vienna");
    Program program(argc, argv);
    program.add("format/ours", formatOurs);
    program.add("format/spdlog", formatSpdlog);
    program.add("format/qt", formatQt);
    program.add("front/ours", frontOurs);
    program.add("front/qt", frontQt);
    program.add("front/stream", frontStream);
    KORA::koraInstallLogMessageHandlerPrivate(receive, nullptr);
    program.addThreaded("threads/ours", deliver<logOurs>, 1);
    program.addThreaded("threads/ours", deliver<logOurs>, 2);
    program.addThreaded("threads/spdlog", deliver<logSpdlog>, 2);
    program.addThreaded("threads/spin", spin, 1);
    program.addThreaded("threads/spin", spin, 2);
    return program.run();
}
