// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtWidgets/QMainWindow>

#include <functional>
#include <memory>

#include <kora/dev/diagnosis/finding.h>
#include <kora/dev/model/scenario.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

class BenchDocument;
class WidgetLibraryPluginTestWidgetPrivate;

/// The test bench's window: one widget library, its widgets on a page, their fields, and a simulated plant.
///
///     KORA::INTERNAL::koraInit(icon);
///     KORA::DEV::WidgetLibraryPluginTestWidget bench;
///     bench.openPluginFolder(QStringLiteral("plugins/b29e4ff5-3b69-4566-977d-dd1851a271a4"));
///     bench.show();
///
/// A process opens one plugin folder: Qt does not forget a library, so a changed one needs a fresh process. While
/// the window lives it has the library's log callback. GUI thread.
class KORA_EXPORT WidgetLibraryPluginTestWidget : public QMainWindow
{
    Q_OBJECT

public:
    explicit WidgetLibraryPluginTestWidget(QWidget *parent = nullptr);
    ~WidgetLibraryPluginTestWidget() override;

    /// Loads the plugin and places its first widget. False if it cannot be loaded; the window then shows why.
    bool openPluginFolder(const QString &folder);
    /// Replaces what is on the page. False with a message in the window if the file cannot be read.
    bool openScenario(const QString &path);

    BenchDocument *document() const;

private:
    friend class WidgetLibraryPluginTestWidgetPrivate;

    std::unique_ptr<WidgetLibraryPluginTestWidgetPrivate> d;
};

} // namespace DEV
} // namespace KORA
