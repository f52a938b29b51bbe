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
    auto name = std::make_shared<std::string>();
    CLI::App *command =
        app.add_subcommand("explain", "Tell what a rule of kora check or a code of the parser means.");
    command->add_option("rule", *name, "Rule or code; without one all are listed")->option_text(" ");
    command->callback([name, &run] {
        run = [name] {
            if (!name->empty()) {
                return explain(textOfArgument(*name));
            }
            listAll();
            return static_cast<int>(ExitFine);
        };
    });
}
