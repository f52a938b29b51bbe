// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/commandpalette.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

#include <kora/dev/theme/controls.h>

namespace KORA {
namespace DEV {

namespace {

const int wholeScore = 1000;

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
    , m_list(new QListWidget(this))
{
    setObjectName(QStringLiteral("commandPalette"));
    setWindowTitle(tr("Command palette"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(560, 380);
    m_list->setObjectName(QStringLiteral("paletteList"));
    m_list->setAccessibleName(tr("Found actions"));
    m_list->setUniformItemSizes(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->addWidget(m_edit);
    layout->addWidget(m_list, 1);
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, &CommandPalette::update);
    connect(m_edit, &QLineEdit::returnPressed, this, &CommandPalette::runCurrent);
    connect(m_list, &QListWidget::itemActivated, this, &CommandPalette::runCurrent);
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
    for (const Match &each : qAsConst(matches)) {
        const PaletteEntry &entry = m_entries.at(each.entry);
        auto *row = new QListWidgetItem(
            entry.icon,
            entry.note.isEmpty() ? entry.text : QStringLiteral("%1    %2").arg(entry.text, entry.note),
            m_list);
        row->setData(Qt::UserRole, each.entry);
    }
    m_list->setCurrentRow(0);
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
    const QListWidgetItem *row = m_list->currentItem();
    if (!row) {
        return;
    }
    const std::function<void()> run = m_entries.at(row->data(Qt::UserRole).toInt()).run;
    close();
    run();
}

} // namespace DEV
} // namespace KORA
