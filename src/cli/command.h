// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace CLI {
class App;
} // namespace CLI

/// How a run ends. Scripts rely on the numbers.
enum ExitCode : int {
    ExitFine = 0,
    ExitFindings = 1,   ///< a plugin was refused, something could not be read or written
    ExitUsage = 2,      ///< the command line is wrong
    ExitUnreadable = 3, ///< `kora check` could not read what it was to look at
    ExitDied = 4        ///< a plugin's code crashed, hung or ended the process that checked it
};

/// What the command line asked for; the result is an exit code.
using CommandRun = std::function<int()>;

/// Each adds its subcommand; parsing a command line that names it stores the work in @p run.
void addBenchCommand(CLI::App &app, CommandRun &run);
void addDoctorCommand(CLI::App &app, CommandRun &run);
void addNewCommand(CLI::App &app, CommandRun &run);
void addPackCommand(CLI::App &app, CommandRun &run);
void addTranslationsCommand(CLI::App &app, CommandRun &run);
void addCheckCommand(CLI::App &app, CommandRun &run);
void addExplainCommand(CLI::App &app, CommandRun &run);
void addListCommand(CLI::App &app, CommandRun &run);
void addDescribeCommand(CLI::App &app, CommandRun &run);
void addRenderCommand(CLI::App &app, CommandRun &run);
void addResourcesCommand(CLI::App &app, CommandRun &run);
/// What kora check --load starts; not for users.
void addCheckChildCommand(CLI::App &app, CommandRun &run);
