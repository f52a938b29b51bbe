// SPDX-License-Identifier: Apache-2.0
//
// The controls of the fields pane, and their colours.
#include <kora/dev/fields/fieldspane.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldrow_p.h>
#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

namespace {

const int nameColumnWidth = 130;

/// Shows the current row softly: editors stand in it.
class FieldTree : public QTreeWidget
{
protected:
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override
    {
        QStyleOptionViewItem soft = option;
        const QColor base = palette().color(QPalette::Base);
        const QColor accent = palette().color(QPalette::Highlight);
        soft.palette.setColor(QPalette::Highlight, mixed(base, accent, 0.18));
        soft.palette.setColor(QPalette::HighlightedText, palette().color(QPalette::Text));
        QTreeWidget::drawRow(painter, soft, index);
    }

private:
    static QColor mixed(const QColor &base, const QColor &accent, qreal part)
    {
        const auto channel = [part](qreal from, qreal to) { return from + (to - from) * part; };
        return QColor::fromRgbF(channel(base.redF(), accent.redF()), channel(base.greenF(), accent.greenF()),
                                channel(base.blueF(), accent.blueF()));
    }
};

} // namespace

QToolButton *FieldsPane::makeTextButton(const QString &name, const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

QWidget *FieldsPane::makeBar()
{
    auto *bar = new QWidget;
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    m_filter = new QLineEdit;
    m_filter->setObjectName(QStringLiteral("fieldsFilter"));
    m_filter->setAccessibleName(tr("Filter fields"));
    m_filter->setToolTip(tr("Shows the fields with this in their name, id or group (Ctrl+F)"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setClearButtonEnabled(true);
    auto *find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(find);
    connect(find, &QAction::triggered, this, [this] {
        m_filter->setFocus();
        m_filter->selectAll();
    });
    m_modifiedOnly = makeTextButton(QStringLiteral("fieldsModified"), tr("Modified"),
                                    tr("Shows only the fields that do not have their default"));
    m_modifiedOnly->setCheckable(true);
    QToolButton *reset = makeTextButton(QStringLiteral("fieldsResetAll"), tr("Reset all"),
                                        tr("Sets every field to its default and unbinds it"));
    QToolButton *more =
        makeTextButton(QStringLiteral("fieldsMore"), tr("More"), tr("Private fields, folding"));
    more->setIcon(benchIcon("more"));
    more->setToolButtonStyle(Qt::ToolButtonIconOnly);
    auto *menu = new QMenu(more);
    QAction *privateFields = menu->addAction(tr("Private fields"));
    privateFields->setObjectName(QStringLiteral("fieldsPrivate"));
    privateFields->setCheckable(true);
    connect(privateFields, &QAction::toggled, this, &FieldsPane::setPrivateFieldsShown);
    menu->addSeparator();
    menu->addAction(tr("Unfold all groups"), this, [this] { m_tree->expandToDepth(0); });
    menu->addAction(tr("Fold all groups"), this, [this] { m_tree->collapseAll(); });
    connect(more, &QToolButton::clicked, menu,
            [more, menu] { menu->popup(more->mapToGlobal(QPoint(0, more->height()))); });

    layout->addWidget(m_filter, 1);
    layout->addWidget(m_modifiedOnly);
    layout->addWidget(reset);
    layout->addWidget(more);
    connect(m_filter, &QLineEdit::textChanged, this, &FieldsPane::applyFilter);
    connect(m_modifiedOnly, &QToolButton::toggled, this, &FieldsPane::applyFilter);
    connect(reset, &QToolButton::clicked, this, &FieldsPane::resetAll);
    return bar;
}

QWidget *FieldsPane::makeTree()
{
    m_stack = new QStackedWidget;
    m_emptyText = new QLabel;
    m_emptyText->setAlignment(Qt::AlignCenter);
    m_emptyText->setWordWrap(true);
    m_emptyText->setMargin(16);
    m_tree = new FieldTree;
    m_tree->setObjectName(QStringLiteral("fieldsTree"));
    m_tree->setAccessibleName(tr("Fields"));
    m_tree->setColumnCount(ColumnCount);
    m_tree->setHeaderLabels({tr("Field"), tr("Value")});
    m_tree->header()->resizeSection(NameColumn, nameColumnWidth);
    m_tree->header()->setStretchLastSection(true);
    m_tree->header()->hide();
    m_tree->setIndentation(12);
    m_tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tree->setFocusPolicy(Qt::StrongFocus);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->setTextElideMode(Qt::ElideRight);
    m_tree->setTabKeyNavigation(false);
    m_tree->viewport()->installEventFilter(this);
    m_tree->installEventFilter(this);
    m_stack->addWidget(m_tree);
    m_stack->addWidget(m_emptyText);

    connect(m_tree->verticalScrollBar(), &QScrollBar::valueChanged, this, &FieldsPane::scheduleVisibleRows);
    connect(m_tree->verticalScrollBar(), &QScrollBar::rangeChanged, this, &FieldsPane::scheduleVisibleRows);
    connect(m_tree, &QTreeWidget::itemExpanded, this, &FieldsPane::foldGroups);
    connect(m_tree, &QTreeWidget::itemCollapsed, this, &FieldsPane::foldGroups);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, &FieldsPane::showDetails);
    connect(m_tree, &QTreeWidget::customContextMenuRequested, this, &FieldsPane::openMenu);
    return m_stack;
}

QWidget *FieldsPane::makeHiddenFields()
{
    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    m_hiddenToggle = makeTextButton(QStringLiteral("fieldsHidden"), QString(),
                                    tr("Shows why the requirements of these fields hide them"));
    m_hiddenToggle->setCheckable(true);
    m_hiddenToggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_hiddenToggle->setArrowType(Qt::RightArrow);
    m_hiddenList = new QListWidget;
    m_hiddenList->setObjectName(QStringLiteral("fieldsHiddenList"));
    m_hiddenList->setAccessibleName(tr("Fields hidden by requirements"));
    m_hiddenList->setWordWrap(true);
    m_hiddenList->setMaximumHeight(120);
    m_hiddenList->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    m_hiddenList->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    m_hiddenList->setFrameShape(QFrame::NoFrame);
    m_hiddenList->hide();
    connect(m_hiddenToggle, &QToolButton::toggled, this, [this](bool isOpen) {
        m_hiddenToggle->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
        m_hiddenList->setVisible(isOpen);
        showHiddenFields();
    });
    layout->addWidget(m_hiddenToggle);
    layout->addWidget(m_hiddenList);
    return box;
}

/// Fusion draws the outline of a control darker than its window's colour: unseen on dark. Nothing else of these
/// controls has that colour; below a style sheet it must be set for each of them.
void FieldsPane::lightenOutlines()
{
    QColor outline = palette().color(QPalette::Window);
    if (outline.lightness() < 128) {
        outline = palette().color(QPalette::Mid).lighter(160);
    }
    const QList<QWidget *> widgets = findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const bool hasOutline = qobject_cast<QLineEdit *>(widget) || qobject_cast<QAbstractSpinBox *>(widget)
                                || qobject_cast<QCheckBox *>(widget);
        QPalette colors = widget->palette();
        if (hasOutline && colors.color(QPalette::Window) != outline) {
            colors.setColor(QPalette::Window, outline);
            widget->setPalette(colors);
        }
    }
}

void FieldsPane::colorGroups()
{
    for (QTreeWidgetItem *group : qAsConst(m_groups)) {
        for (int column = 0; column < ColumnCount; ++column) {
            group->setBackground(column, palette().brush(QPalette::Button));
            group->setForeground(column, palette().brush(QPalette::ButtonText));
        }
    }
}

} // namespace DEV
} // namespace KORA
