// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/statusline.h>

#include <QtWidgets/QLabel>

#include <kora/dev/model/benchdocument.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

StatusLine::StatusLine(QWidget *parent)
    : QStatusBar(parent)
{
    setObjectName(QStringLiteral("statusLine"));
    setSizeGripEnabled(false);
    m_selection = addLabel(QStringLiteral("statusSelection"), tr("What is selected"), false);
    m_problems = iconButton(this, "warning",
                            {QStringLiteral("statusProblems"), tr("Problems"), tr("Show the problems"), {}});
    m_problems->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    addPermanentWidget(m_problems);
    connect(m_problems, &QToolButton::clicked, this, &StatusLine::problemsRequested);
    m_library = addLabel(QStringLiteral("statusLibrary"), {}, true);
    m_reload = addLabel(QStringLiteral("statusReload"), tr("Watching and reloading"), true);
    m_mode = addLabel(QStringLiteral("statusMode"), tr("Where keys and mouse go"), true);
    m_zoom = addLabel(QStringLiteral("statusZoom"), tr("Zoom"), true);
    m_reload->hide();
    setProblemCount(0);
}

QLabel *StatusLine::addLabel(const QString &name, const QString &toolTip, bool isPermanent)
{
    auto *label = new QLabel(this);
    label->setObjectName(name);
    label->setToolTip(toolTip);
    label->setContentsMargins(6, 0, 6, 0);
    isPermanent ? addPermanentWidget(label) : addWidget(label);
    return label;
}

void StatusLine::showSelection(const BenchDocument &document)
{
    const PlacedWidget *current = document.current();
    if (!current) {
        m_selection->setText(tr("Nothing selected"));
        return;
    }
    const QRectF rect = current->geometry();
    QString text = QStringLiteral("%1   %2, %3   %4 x %5")
                       .arg(current->name(), QString::number(rect.x()), QString::number(rect.y()),
                            QString::number(rect.width()), QString::number(rect.height()));
    if (document.selection().size() > 1) {
        text += tr("   (%1 selected)").arg(QString::number(document.selection().size()));
    }
    m_selection->setText(text);
}

void StatusLine::setProblemCount(int count)
{
    m_problems->setIcon(benchIcon(count > 0 ? "warning" : "check"));
    m_problems->setText(count == 1 ? tr("1 problem") : tr("%1 problems").arg(QString::number(count)));
    m_problems->setAccessibleName(m_problems->text());
    m_problems->setVisible(count > 0);
}

void StatusLine::setLibrary(const QString &text, const QString &toolTip)
{
    m_library->setText(text);
    m_library->setToolTip(toolTip);
}

void StatusLine::setReload(const QString &text)
{
    m_reload->setText(text);
    m_reload->setVisible(!text.isEmpty());
}

void StatusLine::setMode(BenchMode mode, bool allKeys)
{
    if (mode == BenchMode::Studio) {
        m_mode->setText(tr("Studio: mouse and keys edit the page"));
        return;
    }
    m_mode->setText(allKeys ? tr("Runtime: all keys to the widget, F5 back")
                            : tr("Runtime: mouse and keys to the widget"));
}

void StatusLine::setZoom(double factor)
{
    m_zoom->setText(QStringLiteral("%1 %").arg(qRound(factor * 100)));
}

} // namespace DEV
} // namespace KORA
