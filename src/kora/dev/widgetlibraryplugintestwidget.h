// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtWidgets/QMainWindow>

#include <memory>

#include <kora/dev/diagnosis/finding.h>
#include <kora/dev/model/scenario.h>
#include <kora/dev/window/banner.h>
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
/// the window lives it has the library's log callback, and the application has its style and palette. GUI thread.
class KORA_EXPORT WidgetLibraryPluginTestWidget : public QMainWindow
{
    Q_OBJECT

public:
    enum class Start {
        FirstWidget, ///< places the library's first widget
        Empty,       ///< leaves the page empty, for a scenario
        Stopped      ///< likewise, and makes no instance of any widget, not even for its icon
    };

    explicit WidgetLibraryPluginTestWidget(QWidget *parent = nullptr);
    ~WidgetLibraryPluginTestWidget() override;

    /// Loads the plugin. False if it cannot be loaded; the window then shows why. Once one is loaded, no other can be.
    bool openPluginFolder(const QString &folder, Start start = Start::FirstWidget);
    /// As openPluginFolder() does unless told otherwise; needs a library. No edit.
    void placeFirstWidget();
    /// The folder of the last call of openPluginFolder().
    QString pluginFolder() const;

    /// Replaces what is on the page. False with a message in the window if the file cannot be read.
    bool openScenario(const QString &path);
    /// The file that "Save scenario" writes; empty if it asks for one.
    QString scenarioPath() const;
    void setScenarioPath(const QString &path);

    /// Never null; without a plugin until one is loaded. Another one after openPluginFolder().
    BenchDocument *document() const;

    /// What a window that takes over shows again: place on the screen, docks, zoom, scroll position, selection.
    QJsonObject windowState() const;
    /// Call it after the page is filled. Parts that are absent or not valid change nothing.
    void restoreWindowState(const QJsonObject &state);

    /// Shows a message above the page until it is closed, in place of the one with the same key.
    void showBanner(BannerKind kind, const QString &text, const QVector<BannerAction> &actions = {},
                    const QString &key = {});
    void closeBanner(const QString &key);
    /// The texts of the messages that are shown.
    QStringList banners() const;

    /// What the Problems pane shows.
    void setFindings(const Findings &findings);
    /// Adds to them, and to what is shown in place of the page if the library could not be loaded. One that is there
    /// already without a place gets its place.
    void addFindings(const Findings &findings);
    /// Shows a failure on the page's place; the window otherwise stays as it is.
    void showFailure(const QString &title, const Findings &findings);
    /// The part of the status bar that tells of watching and reloading.
    void setReloadStatus(const QString &text);

Q_SIGNALS:
    /// The user wants a fresh process, with what is on the page or without.
    void reloadRequested(bool keepsState);
    void scenarioSaved(const QString &path);
    /// Another folder is to be opened, which takes a fresh process.
    void openRequested(const QString &folder);
    /// An instance that was left stopped is to be started: PlacedWidget::id(). The window does start it.
    void startAgainRequested(int id);
    /// openPluginFolder() has made another document.
    void documentChanged();
    void aboutToClose();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class WidgetLibraryPluginTestWidgetPrivate;

    std::unique_ptr<WidgetLibraryPluginTestWidgetPrivate> d;
};

} // namespace DEV
} // namespace KORA
