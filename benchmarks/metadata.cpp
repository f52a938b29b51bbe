// SPDX-License-Identifier: Apache-2.0
#include "support/generator.h"
#include "support/program.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QResource>

#include <kora/core/requirementsscanner_p.h>
#include <kora/core/widgetlibrarypluginutils.h>

using namespace KORA::INTERNAL;

namespace {

const LibraryShape large{untranslatedId, 500, 10};
const LibraryShape largeTranslated{translatedId, 500, 10, true};

int readFields(const QJsonObject &object)
{
    WidgetLibraryPluginMetaInformation info;
    if (WidgetLibraryPluginUtils::metaInformationFromMetaData(object, info) != 0) {
        return 0;
    }
    return info.widgets().size() * info.widgets().first().fields().size();
}

// Reading into a model and freeing it.
void read(benchmark::State &state, const LibraryShape &shape)
{
    const QJsonObject object = pluginMetaData(shape);
    if (!require(state, readFields(object) == shape.widgets * shape.fieldsPerWidget, "fields are missing")) {
        return;
    }
    measure(state, [&] {
        WidgetLibraryPluginMetaInformation info;
        benchmark::DoNotOptimize(WidgetLibraryPluginUtils::metaInformationFromMetaData(object, info));
    });
}

void readOurs(benchmark::State &state)
{
    read(state, large);
}

void readTranslated(benchmark::State &state)
{
    static const bool isRegistered = QResource::registerResource(QStringLiteral(KORA_BENCHMARK_TRANSLATIONS));
    WidgetLibraryPluginMetaInformation info;
    WidgetLibraryPluginUtils::metaInformationFromMetaData(pluginMetaData(largeTranslated), info);
    const auto fields = info.widgets().last().fields();
    if (require(state, isRegistered && fields.last().display().contains(QStringLiteral("it-IT")),
                "no translations")) {
        read(state, largeTranslated);
    }
}

void readQt(benchmark::State &state)
{
    const QJsonObject object = pluginMetaData(large);
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (!require(state, text.size() > 800000 && QJsonDocument::fromJson(text).object() == object,
                 "another document")) {
        return;
    }
    measure(state, [&] { benchmark::DoNotOptimize(QJsonDocument::fromJson(text)); });
}

// 30 characters with ids as authors write them. The longer the ids, the longer the expression backtracks: from about 20
// characters on it gives up and refuses them.
const QString requirement = QStringLiteral("setpoint > 10 && pump1_enabled");

void requirementOurs(benchmark::State &state)
{
    if (require(state, requirement.size() == 30 && isRequirementsText(requirement), "refused")) {
        measure(state, [] { benchmark::DoNotOptimize(isRequirementsText(requirement)); });
    }
}

void requirementQt(benchmark::State &state)
{
    static const QRegularExpression expression(QStringLiteral(
        R"(^(?:(?:[a-zA-Z\d_]+)+(?:(?: ){0,1}(?:==|<|>){1}(?: ){0,1}(?:[\+-]{0,1}[\d]+|[\d]+\.[\d]+|true|false){1}){0,1}(?: ){0,1}(?:&&|\|\|){1}(?: ){0,1})*(?:(?:[a-zA-Z\d_]+)+(?: ){0,1}(?:(?:==|<|>){1}(?: ){0,1}(?:[\+-]{0,1}[\d]+|[\d]+\.[\d]+|true|false){1}){0,1}){1}$)"));
    if (!require(state, expression.match(requirement).hasMatch(), "refused")) {
        return;
    }
    measure(state, [&] { benchmark::DoNotOptimize(expression.match(requirement).hasMatch()); });
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("read/ours", readOurs);
    program.add("read/translated", readTranslated);
    program.add("read/qt", readQt);
    program.add("requirement/ours", requirementOurs);
    program.add("requirement/qt", requirementQt);
    return program.run();
}
