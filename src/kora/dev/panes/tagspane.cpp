// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/tagspane.h>

#include <kora/dev/panes/replaychooser_p.h>
#include <kora/dev/providers/providers.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QTableView>

namespace KORA {
namespace DEV {

TagsPane::TagsPane(Providers *providers, QWidget *parent)
    : ProviderPane(providers->tags(), providers->clock(), QStringLiteral("tags"), tr("tag"), parent)
    , m_providers(providers)
{
    table()->setAccessibleName(tr("Tags"));
    QAction *replay = addAction(QStringLiteral("Replay"), tr("Replay file\u2026"),
                                tr("Choose a file of recorded values for the tag to play"));
    connect(replay, &QAction::triggered, this, &TagsPane::chooseReplay);
}

void TagsPane::chooseReplay()
{
    const QString name = currentName();
    chooseReplayFile(this, m_providers->folder(), [this, name](const QString &path) {
        TagDefinition tag = m_providers->tags()->definition(name);
        tag.generator.kind = Generator::CsvReplay;
        tag.generator.csvFile = path;
        QString problem;
        if (!m_providers->tags()->edit(name, tag, &problem)) {
            showProblem(problem);
        }
    });
}

} // namespace DEV
} // namespace KORA
