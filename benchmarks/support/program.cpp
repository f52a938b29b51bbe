// SPDX-License-Identifier: Apache-2.0
#include "program.h"

QByteArray Program::runningName;

Program::Program(int &argc, char **argv)
    : m_application(argc, argv)
{
    benchmark::Initialize(&argc, argv);
}

int Program::countedRuns()
{
    static const int runs = qEnvironmentVariableIntValue("KORA_BENCHMARK_COUNTED_RUNS");
    return runs;
}

benchmark::internal::Benchmark *Program::registered(const char *name, const QByteArray &fullName,
                                                    Function function)
{
    return benchmark::RegisterBenchmark(name, [function, fullName](benchmark::State &state) {
        if (state.thread_index() == 0) {
            runningName = fullName;
        }
        function(state);
    });
}

void Program::add(const char *name, Function function)
{
    auto *added = registered(name, name, function);
    if (countedRuns() > 0) {
        added->Iterations(countedRuns());
    }
}

void Program::add(const char *name, Function function, std::initializer_list<int> sizes)
{
    for (const int size : sizes) {
        auto *added = registered(name, name + QByteArray("/") + QByteArray::number(size), function);
        added->Arg(size);
        if (countedRuns() > 0) {
            added->Iterations(countedRuns());
        }
    }
}

void Program::addThreaded(const char *name, Function function, int threads)
{
    if (countedRuns() == 0) {
        registered(name, name, function)->Threads(threads)->UseRealTime();
    }
}

int Program::run()
{
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
