#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the benchmarks of a build folder and prints how the library does beside what it is compared with.

report.py FOLDER [--repetitions N] [--json FILE] [--no-count]

All ratios are ours to the other's of the same run: the median over repetitions in random order. Exit code 1 if a benchmark
found a wrong answer; a goal that is missed is only printed.
"""
import argparse
import json
import os
import random
import statistics
import subprocess
import sys
import tempfile
from collections import namedtuple

# A line of the table: ours and the other are names of benchmarks of the program.
Goal = namedtuple("Goal", "what program ours other most")
GOALS = [
    Goal("read metadata, 1 MB : QJsonDocument", "metadata", "read/ours", "read/qt", 1.6),
    Goal("  with 5,000 translations : without", "metadata", "read/translated", "read/ours", 1.5),
    Goal("requirements, 30 letters : QRegularExpression", "metadata", "requirement/ours", "requirement/qt", 0.10),
    Goal("format a log line : spdlog", "logging", "format/ours", "format/spdlog", 0.75),
    Goal("format a log line : qFormatLogMessage", "logging", "format/ours", "format/qt", 0.08),
    Goal("log to the callback : Qt handler and format", "logging", "front/ours", "front/qt", 0.30),
    Goal("log to the callback : QDebug on a QString", "logging", "front/ours", "front/stream", 1.50),
    Goal("log, 2 threads : spdlog, 2 threads", "logging", "threads/ours/2", "threads/spdlog/2", 1.0),
    Goal("host write, 0 listeners : QObject::setProperty", "fields", "hostwrite/ours/0", "hostwrite/qt/0", 1.0),
    Goal("host write, 1 listener : QObject::setProperty", "fields", "hostwrite/ours/1", "hostwrite/qt/1", 1.0),
    Goal("host write, 4 listeners : QObject::setProperty", "fields", "hostwrite/ours/4", "hostwrite/qt/4", 1.0),
    Goal("host write, unchanged : dynamic property", "fields", "hostsame/ours", "hostsame/qt", 0.65),
    Goal("plugin write : QQmlPropertyMap", "fields", "pluginwrite/ours", "pluginwrite/qt", 0.80),
    Goal("field read : dynamic property", "fields", "fieldread/ours", "fieldread/qt", 0.60),
    Goal("properties document : QXmlStreamWriter", "documents", "properties/ours", "properties/qt", 1.15),
    Goal("defaults document : QXmlStreamWriter", "documents", "defaults/ours", "defaults/qt", 1.15),
    Goal("gallery document : QXmlStreamWriter", "documents", "gallery/ours", "gallery/qt", 1.15),
    Goal("files of a library : QXmlStreamWriter on QFile", "documents", "files/ours", "files/qt", 0.90),
    Goal("files of a library : libxml2", "documents", "files/ours", "files/libxml2", 2.0),
    Goal("second resource run, 500 : raw loop", "resources", "secondrun/ours", "secondrun/raw", 1.5),
    Goal("recognize() pan : Qt's", "gestures", "pan/ours", "pan/qt", 0.90),
    Goal("recognize() pinch : Qt's", "gestures", "pinch/ours", "pinch/qt", 0.60),
    Goal("recognize() swipe : Qt's", "gestures", "swipe/ours", "swipe/qt", 1.0),
    Goal("touch update, 7 types : Qt's 3 types", "gestures", "touch/ours", "touch/qt", 1.0),
    Goal("own event : QCoreApplication::sendEvent", "instances", "event/ours", "event/qt", 0.85),
    Goal("newWidgetInstance : bare newInstance", "instances", "widget/ours", "widget/qt", 1.0),
    Goal("1,000 on a scene : loop of newInstance", "instances", "scene/ours", "scene/qt", 0.65),
    Goal("bench, 1,000 fields shown : QTreeWidget", "bench", "benchfields/ours", "benchfields/qt", 1.5),
    Goal("bench, zoom, 100 widgets : plain scene", "bench", "benchzoom/ours", "benchzoom/qt", 1.3),
    Goal("bench, drag, 100 widgets : plain scene", "bench", "benchdrag/ours", "benchdrag/qt", 1.3),
]

# How often the bodies run while their instructions are counted.
COUNTED_RUNS = {"metadata": 2, "documents": 2, "resources": 2, "bench": 4}
DEFAULT_COUNTED_RUNS = 100

PLUGIN_COUNTS = [10, 100, 500]
PLUGIN_WAYS = ["raw", "kf", "ours", "refused"]
# Two threads on two free cores take at most this much longer than one.
FREE_CORES = 1.12


def environment(**more):
    return dict(os.environ, QT_QPA_PLATFORM="offscreen", **more)


def program_path(folder, program):
    return os.path.join(folder, "benchmark_" + program)


def name_of(run):
    """The benchmark's name as GOALS has it: "threads/ours/real_time/threads:2" is "threads/ours/2"."""
    return run["run_name"].replace("/real_time/threads:", "/")


def timed(folder, program, repetitions):
    """Nanoseconds of all repetitions by name, and the names of the benchmarks that failed."""
    output = subprocess.run(
        [program_path(folder, program), "--benchmark_format=json", f"--benchmark_repetitions={repetitions}",
         "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.05"],
        env=environment(), check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    times, failed = {}, []
    for run in json.loads(output)["benchmarks"]:
        if run.get("error_occurred"):
            failed.append(f"{program}: {run['name']}: {run['error_message']}")
        elif run["run_type"] == "iteration":
            unit = {"ns": 1, "us": 1e3, "ms": 1e6}[run["time_unit"]]
            clock = "real_time" if "/threads:" in run["run_name"] else "cpu_time"
            times.setdefault(name_of(run), []).append(run[clock] * unit)
    return times, failed


def counted(folder, program):
    """Instructions per run of a body, by name."""
    runs = COUNTED_RUNS.get(program, DEFAULT_COUNTED_RUNS)
    counts = {}
    with tempfile.TemporaryDirectory() as dumps:
        subprocess.run(
            ["valgrind", "--tool=callgrind", "--instr-atstart=no",
             f"--callgrind-out-file={dumps}/out", os.path.abspath(program_path(folder, program))],
            env=environment(KORA_BENCHMARK_COUNTED_RUNS=str(runs)), check=True,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for dump in os.listdir(dumps):
            name, total = None, None
            with open(os.path.join(dumps, dump), encoding="utf-8", errors="replace") as lines:
                for line in lines:
                    if line.startswith("desc: Trigger: Client Request: "):
                        name = line.split(": ", 3)[3].strip()
                    elif line.startswith(("summary: ", "totals: ")):
                        total = int(line.split()[1])
            if name and total is not None:
                counts[name] = total / runs
    return counts


def load_plugins(folder, samples):
    """Microseconds per plugin by (way, number of plugins), each sample in a process of its own."""
    program = program_path(folder, "pluginload")
    times = {}
    with tempfile.TemporaryDirectory() as top:
        for count in PLUGIN_COUNTS:
            plugins = os.path.join(top, str(count))
            subprocess.run([program, "make", plugins, str(count)], env=environment(), check=True)
            for _ in range(samples):
                for way in random.sample(PLUGIN_WAYS, len(PLUGIN_WAYS)):
                    output = subprocess.run([program, way, plugins], env=environment(), check=True,
                                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
                    times.setdefault((way, count), []).append(float(output))
    return times


def row(what, ours, other, most, instructions=None, measured=True):
    ratios = sorted(a / b for a, b in zip(ours, other))
    quarter = len(ratios) // 4
    ratio = statistics.median(ours) / statistics.median(other)
    return {
        "what": what, "ours": statistics.median(ours), "other": statistics.median(other), "ratio": ratio,
        "spread": [ratios[quarter], ratios[-1 - quarter]], "instructions": instructions, "goal": most,
        "result": "not measured" if not measured else "met" if ratio <= most else "missed",
    }


def plugin_rows(times):
    rows = []
    for count in PLUGIN_COUNTS[1:]:
        ours = times["ours", count]
        rows.append(row(f"load, {count} plugins : QPluginLoader", ours, times["raw", count], 1.25))
        rows.append(row(f"load, {count} plugins : KCoreAddons", ours, times["kf", count], 0.70))
    rows.append(row("load one of 500 : one of 10", times["ours", 500], times["ours", 10], 1.15))
    rows.append(row("refuse a plugin : QPluginLoader", times["refused", 500], times["raw", 500], 0.02))
    return rows


def cores_are_free(times):
    one, two = (statistics.median(times[f"threads/spin/{threads}"]) for threads in (1, 2))
    return 2 * two / one < FREE_CORES


def program_rows(times, counts):
    free = cores_are_free(times)
    rows = []
    for goal in GOALS:
        instructions = None
        if goal.ours in counts and goal.other in counts:
            instructions = counts[goal.ours] / counts[goal.other]
        if goal.ours in times and goal.other in times:
            rows.append(row(goal.what, times[goal.ours], times[goal.other], goal.most, instructions,
                            free or not goal.ours.startswith("threads/")))
    return rows


def print_table(rows):
    print(f"{'ours : the other':48}{'ratio':>7}  {'middle half':13}{'instr.':>7}{'goal':>7}  result")
    for line in rows:
        spread = f"{line['spread'][0]:.2f} to {line['spread'][1]:.2f}"
        instructions = "-" if line["instructions"] is None else f"{line['instructions']:.2f}"
        ratio = "-" if line["result"] == "not measured" else f"{line['ratio']:.3f}"
        print(f"{line['what']:48}{ratio:>7}  {spread:13}{instructions:>7}{line['goal']:>7}  {line['result']}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--repetitions", type=int, default=11)
    parser.add_argument("--json")
    parser.add_argument("--no-count", action="store_true")
    arguments = parser.parse_args()

    times, counts, failed = {}, {}, []
    for program in dict.fromkeys(goal.program for goal in GOALS):
        print(f"benchmark: {program}", file=sys.stderr)
        program_times, program_failed = timed(arguments.folder, program, arguments.repetitions)
        times.update(program_times)
        failed += program_failed
        if not arguments.no_count:
            counts.update(counted(arguments.folder, program))
    print("benchmark: pluginload", file=sys.stderr)
    plugin_times = load_plugins(arguments.folder, arguments.repetitions)

    rows = plugin_rows(plugin_times) + program_rows(times, counts)
    print_table(rows)
    if arguments.json:
        plugins = {f"load/{way}/{count}": values for (way, count), values in plugin_times.items()}
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump({"rows": rows, "nanoseconds": times, "microsecondsPerPlugin": plugins,
                       "instructions": counts}, file, indent=1)
    for failure in failed:
        print(f"wrong answer: {failure}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
