// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/commandpalette.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

const int wholeScore = 1000;
const int iconSide = 16;

struct Match
{
    int score;
    int entry;
};

} // namespace

CommandPalette::CommandPalette(const QVector<PaletteEntry> &entries, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_entries(entries)
    , m_edit(filterEdit(this, {QStringLiteral("paletteFilter"), tr("Action, widget or field"), {}, {}}))
    , m_list(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("commandPalette"));
    setWindowTitle(tr("Command palette"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(560, 380);
    m_list->setObjectName(QStringLiteral("paletteList"));
    m_list->setAccessibleName(tr("Found actions"));
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->addWidget(m_edit);
    layout->addWidget(m_list, 1);
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, &CommandPalette::update);
    connect(m_edit, &QLineEdit::returnPressed, this, &CommandPalette::runCurrent);
    connect(m_list, &QTreeWidget::itemActivated, this, &CommandPalette::runCurrent);
    update(QString());
}

int CommandPalette::match(const QString &typed, const QString &text)
{
    const int at = text.indexOf(typed, 0, Qt::CaseInsensitive);
    if (at >= 0) {
        return wholeScore - at;
    }
    int from = 0;
    for (const QChar letter : typed) {
        from = letter.isSpace() ? from : text.indexOf(letter, from, Qt::CaseInsensitive) + 1;
        if (from <= 0 && !letter.isSpace()) {
            return -1;
        }
    }
    return qMax(0, wholeScore / 2 - from);
}

void CommandPalette::update(const QString &typed)
{
    QVector<Match> matches;
    for (int i = 0; i < m_entries.size(); ++i) {
        const int score = match(typed.trimmed(), m_entries.at(i).text);
        if (score >= 0) {
            matches.append({score, i});
        }
    }
    std::stable_sort(matches.begin(), matches.end(),
                     [](const Match &a, const Match &b) { return a.score > b.score; });
    m_list->clear();
    QPixmap nothing(iconSide, iconSide); // keeps the texts in line
    nothing.fill(Qt::transparent);
    const QIcon noIcon(nothing);
    for (const Match &each : qAsConst(matches)) {
        const PaletteEntry &entry = m_entries.at(each.entry);
        auto *row = new QTreeWidgetItem(m_list, {entry.text, entry.note});
        row->setIcon(0, entry.icon.isNull() ? noIcon : entry.icon);
        row->setForeground(1, BenchTheme::mutedColor());
        row->setData(0, Qt::UserRole, each.entry);
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
}

bool CommandPalette::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_edit && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void CommandPalette::runCurrent()
{
    const QTreeWidgetItem *row = m_list->currentItem();
    if (!row) {
        return;
    }
    const std::function<void()> run = m_entries.at(row->data(0, Qt::UserRole).toInt()).run;
    close();
    run();
}

} // namespace DEV
} // namespace KORA
