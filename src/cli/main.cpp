// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include "command.h"
#include "output.h"
#include "picture/pictureenvironment.h"

#include <memory>
#include <string>
#include <utility>

namespace {

const char descriptionC[] = "Widget libraries for HMI panels: starts, checks, shows and packs them.";

const char footerC[] =
    "Results go to standard output, errors to standard error.\n"
    "Exit status: 0 fine, 1 something was refused, unreadable or not written, 2 wrong usage;\n"
    "check: 3 if a path cannot be read.\n"
    "\n"
    "Examples:\n"
    "  kora new boiler --widget gauge\n"
    "  kora list plugins\n"
    "  kora describe plugins/<id> --format json\n"
    "  kora render plugins/<id> --widget gauge --set value=75 --out pictures\n"
    "  kora resources plugins resources --language en-US\n"
    "  kora check boiler.json\n"
    "  kora bench plugins/<id>";

/// Sets the usage apart from the description above it.
class HelpFormatter : public CLI::Formatter
{
public:
    HelpFormatter() { column_width(26); }

    std::string make_usage(const CLI::App *app, std::string name) const override
    {
        return '\n' + CLI::Formatter::make_usage(app, std::move(name));
    }
};

std::string failureMessage(const CLI::App *, const CLI::Error &error)
{
    return std::string("kora: ") + error.what() + "\nkora --help and kora <subcommand> --help tell more.\n";
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app(descriptionC, "kora");
    app.footer(footerC);
    app.set_version_flag("--version", "kora " KORA_VERSION);
    app.require_subcommand(1);
    app.failure_message(failureMessage);
    app.formatter(std::make_shared<HelpFormatter>());

    CommandRun run;
    addDoctorCommand(app, run);
    addNewCommand(app, run);
    addCheckCommand(app, run);
    addExplainCommand(app, run);
    addTranslationsCommand(app, run);
    addBenchCommand(app, run);
    addListCommand(app, run);
    addDescribeCommand(app, run);
    addRenderCommand(app, run);
    addPackCommand(app, run);
    addResourcesCommand(app, run);
    addCheckChildCommand(app, run);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        // Help and version arrive here too, with the code 0.
        return app.exit(error) == 0 ? ExitFine : ExitUsage;
    }
    pinLocale();
    const int result = run();
    return flushResults() ? result : ExitFindings;
}
