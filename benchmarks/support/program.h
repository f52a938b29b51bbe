// SPDX-License-Identifier: Apache-2.0
//
// What all benchmark programs share: a list of benchmarks named "pair/side", and the loop that is timed or counted.
#pragma once

#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

/// The program's benchmarks. Add them all, then run().
class Program
{
public:
    using Function = void (*)(benchmark::State &state);

    Program(int &argc, char **argv);

    /// A benchmark in processor time.
    void add(const char *name, Function function);
    /// The same for each of a few sizes, as "name/size"; state.range(0) is the size.
    void add(const char *name, Function function, std::initializer_list<int> sizes);
    /// A benchmark of that many threads in wall-clock time, per message of all threads; its instructions are not counted.
    void addThreaded(const char *name, Function function, int threads);

    int run();

    /// How often each body is to run to have its instructions counted; 0 when it is timed.
    static int countedRuns();
    static QByteArray runningName;

private:
    benchmark::internal::Benchmark *registered(const char *name, const QByteArray &fullName,
                                               Function function);

    QApplication m_application;
};

/// Reports a benchmark as failed unless @p ok: nothing is timed that gives no or a wrong answer.
inline bool require(benchmark::State &state, bool ok, const char *message)
{
    if (!ok) {
        state.SkipWithError(message);
    }
    return ok;
}

/// Times the body, or has callgrind count its instructions. It has run once when this starts.
template<typename Body>
void measure(benchmark::State &state, Body body)
{
    body();
    if (Program::countedRuns() > 0) {
        CALLGRIND_START_INSTRUMENTATION;
    }
    for (auto _ : state) {
        body();
    }
    if (Program::countedRuns() > 0) {
        CALLGRIND_STOP_INSTRUMENTATION;
        CALLGRIND_DUMP_STATS_AT(Program::runningName.constData());
    }
}
