// SPDX-License-Identifier: Apache-2.0
//
// The test bench's files: what is read of a scenario and of its plant is written and read back equal.
#include "../fuzztarget.h"

#include <QtCore/QStringList>

#include <kora/dev/model/scenario.h>
#include <kora/dev/providers/providers.h>

using KORA::DEV::Providers;
using KORA::DEV::Scenario;

KORA_FUZZ_TARGET(scenario)
{
    Scenario scenario;
    QStringList problems;
    const QJsonObject before = scenario.toJson();
    if (!Scenario::fromJson(jsonObject(input), scenario, problems)) {
        expect(!problems.isEmpty(), "refused without a reason");
        expect(scenario.toJson() == before, "a refused file changed the scenario");
        return;
    }
    const QJsonObject written = scenario.toJson();
    Scenario again;
    expect(Scenario::fromJson(written, again, problems), qPrintable(problems.join(QLatin1Char(';'))));
    expect(again.toJson() == written, "a scenario does not survive its file");
}

KORA_FUZZ_TARGET(providers)
{
    Providers providers;
    QStringList problems;
    providers.clock()->setPaused(true);
    const QJsonObject before = providers.toJson();
    if (!providers.fromJson(jsonObject(input), problems)) {
        expect(!problems.isEmpty(), "refused without a reason");
        expect(providers.toJson() == before, "a refused file changed the plant");
        return;
    }
    providers.clock()->setPaused(true);
    const QJsonObject written = providers.toJson();
    Providers again;
    expect(again.fromJson(written, problems), qPrintable(problems.join(QLatin1Char(';'))));
    expect(again.toJson() == written, "a plant does not survive its file");
}
