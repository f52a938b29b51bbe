// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/toolbar.h>

#include <QtGui/QPainter>
#include <QtWidgets/QAction>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/window/benchactions.h>

namespace KORA {
namespace DEV {

namespace {

const QSize presets[] = {{800, 480}, {1024, 600}, {1280, 800}};

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1 x %2").arg(QString::number(size.width()), QString::number(size.height()));
}

QIcon swatch(const QColor &color)
{
    const int side = 16;
    QPixmap pixmap(side, side);
    pixmap.fill(color.isValid() ? color : QColor(Qt::white));
    QPainter painter(&pixmap);
    if (!color.isValid()) {
        painter.fillRect(0, 0, side / 2, side / 2, Qt::lightGray);
        painter.fillRect(side / 2, side / 2, side / 2, side / 2, Qt::lightGray);
    }
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, side - 1, side - 1);
    return QIcon(pixmap);
}

} // namespace

BenchToolBar::BenchToolBar(const BenchActions &actions, QWidget *parent)
    : QToolBar(parent)
    , m_zoom(new QComboBox(this))
    , m_page(new QComboBox(this))
    , m_background(new QToolButton(this))
    , m_language(new QComboBox(this))
{
    setObjectName(QStringLiteral("toolBar"));
    setWindowTitle(tr("Tools"));
    setMovable(false);
    setIconSize({18, 18});
    setContextMenuPolicy(Qt::PreventContextMenu);
    addModes(actions);
    addSeparator();
    addZoom(actions);
    addSeparator();
    addPage(actions);
    addSeparator();
    addWidget(m_language);
    addAction(actions["touch"]);
    addSeparator();
    for (const char *const name : {"startWidget", "stopWidget", "restartWidget"}) {
        addAction(actions[name]);
    }
    addSeparator();
    for (const char *const name : {"reload", "savePicture", "palette"}) {
        addAction(actions[name]);
    }
    // What has no room.
    auto *more = findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"));
    more->setIcon(benchIcon("down"));
    more->setAccessibleName(tr("More tools"));
    more->setToolTip(tr("More tools"));
    const QList<QToolButton *> buttons = findChildren<QToolButton *>();
    for (QToolButton *button : buttons) {
        button->setFocusPolicy(Qt::TabFocus);
        if (const QAction *action = button->defaultAction()) {
            button->setObjectName(action->objectName() + QLatin1String("Button"));
            button->setAccessibleName(action->text().remove(QLatin1Char('&')));
        }
    }
    describe(m_language, {QStringLiteral("languageBox"), tr("Language"), tr("Language of the texts"), {}});
    connect(m_language, QOverload<int>::of(&QComboBox::activated), this,
            [this] { Q_EMIT languageChosen(m_language->currentText()); });
}

void BenchToolBar::addModes(const BenchActions &actions)
{
    for (const char *const name : {"studio", "runtime"}) {
        addAction(actions[name]);
        static_cast<QToolButton *>(widgetForAction(actions[name]))
            ->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    addSeparator();
    addAction(actions["undo"]);
    addAction(actions["redo"]);
}

void BenchToolBar::addZoom(const BenchActions &actions)
{
    describe(m_zoom, {QStringLiteral("zoomBox"), tr("Zoom"), tr("Zoom in percent"), {}});
    m_zoom->setEditable(true);
    m_zoom->setInsertPolicy(QComboBox::NoInsert);
    m_zoom->setMinimumContentsLength(6);
    m_zoom->lineEdit()->setObjectName(QStringLiteral("zoomEdit"));
    m_zoom->lineEdit()->setAccessibleName(tr("Zoom"));
    const QVector<int> steps = zoomSteps();
    for (const int step : steps) {
        m_zoom->addItem(QStringLiteral("%1 %").arg(step));
    }
    connect(m_zoom, QOverload<int>::of(&QComboBox::activated), this, &BenchToolBar::chooseZoom);
    connect(m_zoom->lineEdit(), &QLineEdit::returnPressed, this, &BenchToolBar::chooseZoom);
    addAction(actions["zoomOut"]);
    addWidget(m_zoom);
    addAction(actions["zoomIn"]);
    addAction(actions["zoom100"]);
    addAction(actions["fitPage"]);
}

void BenchToolBar::addPage(const BenchActions &actions)
{
    describe(m_page, {QStringLiteral("pageBox"), tr("Page size"), tr("Size of the page in pixels"), {}});
    m_page->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(m_page, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        const QSize size = m_page->itemData(index).toSize();
        size.isValid() ? Q_EMIT pageSizeChosen(size) : Q_EMIT customPageSizeRequested();
    });
    describe(m_background,
             {QStringLiteral("backgroundButton"), tr("Background"), tr("Background of the page"), {}});
    m_background->setIcon(benchIcon("background"));
    m_background->setPopupMode(QToolButton::InstantPopup);
    m_background->setMenu(makeBackgroundMenu());
    addWidget(m_page);
    addAction(actions["rotatePage"]);
    addWidget(m_background);
    addAction(actions["grid"]);
}

QMenu *BenchToolBar::makeBackgroundMenu()
{
    auto *menu = new QMenu(m_background);
    menu->setObjectName(QStringLiteral("backgroundMenu"));
    const QPair<QString, QColor> colors[] = {{tr("White"), Qt::white},
                                             {tr("Grey"), QColor(0xc0, 0xc4, 0xca)},
                                             {tr("Dark grey"), QColor(0x30, 0x34, 0x3a)},
                                             {tr("Black"), Qt::black},
                                             {tr("Checkerboard"), QColor()}};
    for (const auto &each : colors) {
        const QColor color = each.second;
        QAction *action = menu->addAction(swatch(color), each.first);
        connect(action, &QAction::triggered, this, [this, color] { Q_EMIT backgroundChosen(color); });
    }
    connect(menu->addAction(benchIcon("color"), tr("Colour...")), &QAction::triggered, this,
            &BenchToolBar::customBackgroundRequested);
    return menu;
}

QVector<int> BenchToolBar::zoomSteps()
{
    return {10, 25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400, 800, 1600};
}

void BenchToolBar::chooseZoom()
{
    bool ok = false;
    const double percent = m_zoom->currentText().remove(QLatin1Char('%')).trimmed().toDouble(&ok);
    if (ok && percent > 0) {
        Q_EMIT zoomChosen(percent / 100);
    }
}

void BenchToolBar::setZoom(double factor)
{
    m_zoom->setEditText(QStringLiteral("%1 %").arg(qRound(factor * 100)));
}

void BenchToolBar::setPage(const PageState &page)
{
    m_page->clear();
    for (const QSize &preset : presets) {
        const bool isUpright = page.size.width() < page.size.height();
        const QSize size = isUpright ? preset.transposed() : preset;
        m_page->addItem(sizeText(size), size);
    }
    if (m_page->findData(page.size) < 0) {
        m_page->addItem(sizeText(page.size), page.size);
    }
    m_page->setCurrentIndex(m_page->findData(page.size));
    m_page->addItem(tr("Custom..."));
}

void BenchToolBar::setLanguages(const QStringList &languages, const QString &current)
{
    m_language->clear();
    m_language->addItems(languages);
    m_language->setCurrentText(current);
}

} // namespace DEV
} // namespace KORA
