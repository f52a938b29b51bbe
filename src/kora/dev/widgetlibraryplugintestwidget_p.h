// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtWidgets/QStackedWidget>

#include <kora/dev/canvas/canvasview.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/panes/consolemodel.h>
#include <kora/dev/theme/theme.h>
#include <kora/dev/widgetlibraryplugintestwidget.h>
#include <kora/dev/window/bannerstrip.h>
#include <kora/dev/window/benchactions.h>
#include <kora/dev/window/commandpalette.h>
#include <kora/dev/window/paneset.h>
#include <kora/dev/window/statusline.h>
#include <kora/dev/window/toolbar.h>
#include <kora/loader/pluginloader.h>

class QTreeWidgetItem;

namespace KORA {
namespace DEV {

class ErrorCard;
class FieldManager;
class FieldsPane;

class KORA_EXPORT WidgetLibraryPluginTestWidgetPrivate
{
public:
    explicit WidgetLibraryPluginTestWidgetPrivate(WidgetLibraryPluginTestWidget *owner);
    ~WidgetLibraryPluginTestWidgetPrivate();

    // Fields of the selected widget -----------------------------------------------------------------------------

    /// From now on the rows of this pane are shown and hidden, after each change of a value. It must outlive the
    /// window's use of the functions below.
    void setFieldsPane(FieldsPane *pane);

    /// The selected widget's present value; invalid if no widget is selected.
    QVariant getFieldValue(const QString &fieldId) const;
    /// Sets a field of the selected widget, as its editor would.
    void setFieldValue(const QString &fieldId, const QVariant &value);
    /// Shows and hides the editors of the selected widget's fields by their requirements, then the group rows.
    void updateFieldsRequirements();

    const QMap<QString, FieldManager *> &fieldManagers() const; ///< field id to editor
    const QMap<QString, QTreeWidgetItem *> &groupRows() const;  ///< group name to group row

    // The window ------------------------------------------------------------------------------------------------

    void setDocument(std::unique_ptr<BenchDocument> newDocument);
    void dropDocument();
    void fillPanes();
    void connectDocument();
    void connectCanvas();
    void connectActions();
    void connectPageActions();
    void connectWidgetActions();
    void connectToolBar();

    bool load(const QString &folder);
    void showLoadFailure(const QString &folder, int firstConsoleLine);
    void placeFirstWidget();
    void warnOfEnvironment();
    void findUnregistered();

    void updateActions();
    void updateUndo();
    void updateTitle();
    void updateLibraryStatus();
    void updatePage();
    void updateMode();
    void setTheme(Theme theme);
    void restoreLayout();
    void saveLayout();

    void choosePlugin();
    void chooseScenario();
    bool saveScenario(bool asksForPath);
    void savePicture();
    void choosePageSize();
    void chooseBackground();
    void applyBackground(const QColor &color);
    void rotatePage();
    void setDefaultSize();
    void forSelection(const std::function<void(PlacedWidget *)> &act);
    void openPalette();
    void addFieldEntries(QVector<PaletteEntry> &entries);
    void addWidgetEntries(QVector<PaletteEntry> &entries);
    void focusField(const QString &fieldId);
    void showContextMenu(PlacedWidget *widget, const QPoint &position);
    void placeAtCentre(const QString &widgetId, const QString &version);
    void showMessage(const QString &text);

    WidgetLibraryPluginTestWidget *owner;
    FieldsPane *fieldsPane = nullptr;

    ConsoleModel console;
    LogCapture logCapture{&console};
    INTERNAL::PluginLoader loader;
    std::unique_ptr<BenchDocument> document;
    QString folder;
    QString buildTime;
    QString scenarioPath;
    bool isStopped = false;
    QTimer changeTimer;

    // The owner's children.
    BenchActions actions;
    BannerStrip *banners;
    QStackedWidget *centre;
    QPointer<CanvasView> canvas;
    ErrorCard *card;
    QString failureTitle; // on the card
    PaneSet panes;
    BenchToolBar *toolBar;
    StatusLine *statusLine;
};

} // namespace DEV
} // namespace KORA
