// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/replaychooser_p.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtWidgets/QFileDialog>

namespace KORA {
namespace DEV {

void chooseReplayFile(QWidget *parent, const QString &folder,
                      const std::function<void(const QString &)> &take)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("KORA::DEV::TagsPane", text); };
    auto *dialog =
        new QFileDialog(parent, tr("Replay file"), folder, tr("Recorded values (*.csv);;All files (*)"));
    dialog->setObjectName(QStringLiteral("replayDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, [folder, take](const QString &path) {
        const QString relative = folder.isEmpty() ? path : QDir(folder).relativeFilePath(path);
        take(relative.startsWith(QLatin1String("..")) ? path : relative);
    });
    dialog->show();
}

} // namespace DEV
} // namespace KORA
