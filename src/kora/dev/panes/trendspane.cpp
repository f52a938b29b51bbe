// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/trendspane.h>

#include <kora/dev/panes/panecontrols_p.h>
#include <kora/dev/panes/replaychooser_p.h>
#include <kora/dev/panes/trendcurve_p.h>
#include <kora/dev/providers/providers.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTableView>

namespace KORA {
namespace DEV {

TrendsPane::TrendsPane(Providers *providers, QWidget *parent)
    : ProviderPane(providers->trends(), providers->clock(), QStringLiteral("trends"), tr("trend"), parent)
    , m_providers(providers)
    , m_curve(new TrendCurve(providers, this))
{
    table()->setAccessibleName(tr("Trends"));
    QAction *replay = addAction(QStringLiteral("Replay"), tr("Replay file\u2026"),
                                tr("Choose a file of recorded values for the trend to play"));
    connect(replay, &QAction::triggered, this, &TrendsPane::chooseReplay);
    describeControl(m_curve, prefixed("Curve"), tr("Curve of the trend"), QString());
    splitter()->addWidget(m_curve);
    splitter()->setStretchFactor(0, 3);
    splitter()->setStretchFactor(1, 2);
    m_curve->setTrend(currentName());
}

void TrendsPane::currentChanged()
{
    m_curve->setTrend(currentName());
}

void TrendsPane::chooseReplay()
{
    const QString name = currentName();
    chooseReplayFile(this, m_providers->folder(), [this, name](const QString &path) {
        TrendDefinition trend = m_providers->trends()->definition(name);
        trend.source = TrendDefinition::FromGenerator;
        trend.generator.kind = Generator::CsvReplay;
        trend.generator.csvFile = path;
        QString problem;
        if (!m_providers->trends()->edit(name, trend, &problem)) {
            showProblem(problem);
        }
    });
}

} // namespace DEV
} // namespace KORA
