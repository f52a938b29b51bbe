// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <kora/host.h>

#include "command.h"
#include "metadatalints.h"
#include "output.h"
#include "rules.h"
#include "texttable.h"

#include <memory>
#include <string>

using KORA::INTERNAL::WidgetLibraryPluginUtils;

namespace {

QString explanation(const QString &title, const QString &meaning, const char *cause, const char *remedy,
                    const char *example)
{
    QString text =
        QStringLiteral("%1\n\n    %2\n\nUsual cause: %3\n").arg(title, meaning, QString::fromUtf8(cause));
    if (remedy) {
        text += QStringLiteral("What to do:  %1\n").arg(QString::fromUtf8(remedy));
    }
    return text + QStringLiteral("Example:     %1\n").arg(QString::fromUtf8(example));
}

void listAll()
{
    TextTable rules({QStringLiteral("RULE"), QStringLiteral("SEVERITY"), QStringLiteral("MEANING")});
    for (const Rule &rule : allRules()) {
        rules.addRow({QLatin1String(rule.id), severityName(rule.severity), QString::fromUtf8(rule.meaning)});
    }
    TextTable codes({QStringLiteral("CODE"), QStringLiteral("TEXT OF THE PARSER")});
    for (const CodeHelp &help : allCodes()) {
        codes.addRow({QString::number(help.code), WidgetLibraryPluginUtils::errorToString(help.code)});
    }
    printResult(rules.toString() + QLatin1Char('\n') + codes.toString()
                + QStringLiteral("\nNext: kora explain <rule or code>\n"));
}

/// A cell of a Markdown table; the texts hold JSON and C++, not Markdown.
QString cell(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('|'), QLatin1String("\\|"));
    for (const char character : {'*', '_', '<', '[', '`'}) {
        escaped.replace(QLatin1Char(character), QLatin1String("\\") + QLatin1Char(character));
    }
    return escaped;
}

QString row(const QStringList &cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QLatin1String(" | ")));
}

/// The page of the documentation.
void writeMarkdown()
{
    QString page =
        QStringLiteral("# Codes and rules\n\n"
                       "Written by `kora explain --format markdown` from the tables in the code.\n\n"
                       "## Codes of the metadata parser\n\n"
                       "| Code | Text | Usual cause | What to do | Example |\n|---|---|---|---|---|\n");
    for (const CodeHelp &help : allCodes()) {
        page += row({QString::number(help.code), cell(WidgetLibraryPluginUtils::errorToString(help.code)),
                     cell(QString::fromUtf8(help.cause)), cell(QString::fromUtf8(help.remedy)),
                     cell(QString::fromUtf8(help.example))});
    }
    page += QStringLiteral(
        "\n## Rules of `kora check`\n\n"
        "| Rule | Severity | Meaning | Usual cause | What is right |\n|---|---|---|---|---|\n");
    for (const Rule &rule : allRules()) {
        page += row({QStringLiteral("`%1`").arg(QLatin1String(rule.id)), severityName(rule.severity),
                     cell(QString::fromUtf8(rule.meaning)), cell(QString::fromUtf8(rule.cause)),
                     cell(QString::fromUtf8(rule.example))});
    }
    printResult(page);
}

int explain(const QString &name)
{
    if (const Rule *rule = findRule(name)) {
        printResult(explanation(QStringLiteral("%1 (%2)").arg(name, severityName(rule->severity)),
                                QString::fromUtf8(rule->meaning), rule->cause, nullptr, rule->example));
        return ExitFine;
    }
    bool isNumber = false;
    const int code = name.toInt(&isNumber);
    if (const CodeHelp *help = isNumber ? findCode(code) : nullptr) {
        printResult(explanation(QStringLiteral("%1 (error)").arg(code),
                                WidgetLibraryPluginUtils::errorToString(code), help->cause, help->remedy,
                                help->example));
        return ExitFine;
    }
    QStringList names;
    for (const Rule &rule : allRules()) {
        names.append(QLatin1String(rule.id));
    }
    const QString nearest = nearestOf(name, names);
    printError(QStringLiteral("%1 is no rule and no code").arg(name),
               {nearest.isEmpty() ? QStringLiteral("kora explain lists them")
                                  : QStringLiteral("did you mean %1?").arg(nearest)});
    return ExitUsage;
}

} // namespace

void addExplainCommand(CLI::App &app, CommandRun &run)
{
    struct Options
    {
        std::string name;
        std::string format = "text";
    };
    auto options = std::make_shared<Options>();
    CLI::App *command =
        app.add_subcommand("explain", "Tell what a rule of kora check or a code of the parser means.");
    CLI::Option *name = command->add_option("rule", options->name, "Rule or code; without one all are listed")
                            ->option_text(" ");
    command->add_option("--format", options->format, "text for people (default), or a page with all of them")
        ->check(CLI::IsMember({"text", "markdown"}))
        ->option_text("text|markdown")
        ->excludes(name);
    command->callback([options, &run] {
        run = [options] {
            if (!options->name.empty()) {
                return explain(textOfArgument(options->name));
            }
            options->format == "text" ? listAll() : writeMarkdown();
            return static_cast<int>(ExitFine);
        };
    });
}
