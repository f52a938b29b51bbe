// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/problemspane.h>

#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <kora/dev/canvas/findingtext.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

enum Column : int { MessageColumn, RuleColumn, PlaceColumn, ColumnCount };

const char *iconOf(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return "error";
    case Finding::Warning:
        return "warning";
    default:
        return "info";
    }
}

QString nameOf(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return ProblemsPane::tr("Error");
    case Finding::Warning:
        return ProblemsPane::tr("Warning");
    default:
        return ProblemsPane::tr("Note");
    }
}

QColor colorOf(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return BenchTheme::errorColor();
    case Finding::Warning:
        return BenchTheme::warningColor();
    default:
        return BenchTheme::mutedColor();
    }
}

QString shortPlaceOf(const Finding &finding)
{
    if (finding.file.isEmpty()) {
        return finding.pointer;
    }
    const QString file = QFileInfo(finding.file).fileName();
    return finding.line > 0
               ? QStringLiteral("%1:%2:%3")
                     .arg(file, QString::number(finding.line), QString::number(qMax(finding.column, 1)))
               : file;
}

// Editors of the terminal and of the desktop alike take a line as "+12"; some have a form of their own.
QStringList editorArguments(const QString &program, const Finding &finding)
{
    const QString name = QFileInfo(program).fileName();
    const QString line = QString::number(qMax(finding.line, 1));
    if (name == QLatin1String("code") || name == QLatin1String("codium")) {
        return {QStringLiteral("--goto"), QStringLiteral("%1:%2").arg(finding.file, line)};
    }
    if (name == QLatin1String("kate") || name == QLatin1String("kwrite")) {
        return {QStringLiteral("--line"), line, finding.file};
    }
    if (name == QLatin1String("qtcreator") || name == QLatin1String("subl")) {
        return {QStringLiteral("%1:%2").arg(finding.file, line)};
    }
    return {QStringLiteral("+%1").arg(line), finding.file};
}

} // namespace

ProblemsPane::ProblemsPane(QWidget *parent)
    : QWidget(parent)
    , m_tree(new QTreeWidget(this))
    , m_detail(new QLabel(this))
{
    m_tree->setObjectName(QStringLiteral("problemsList"));
    m_tree->setAccessibleName(tr("Problems"));
    m_tree->setToolTip(tr("Enter or double click opens the place"));
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setHeaderLabels({tr("Problem"), tr("Rule"), tr("Place")});
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(MessageColumn, QHeaderView::Stretch);
    m_tree->header()->resizeSection(RuleColumn, 170);
    m_tree->header()->resizeSection(PlaceColumn, 190);
    m_detail->setObjectName(QStringLiteral("problemsDetail"));
    m_detail->setWordWrap(true);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_detail->setMargin(8);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_detail);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, &ProblemsPane::showDetail);
    connect(m_tree, &QTreeWidget::itemActivated, this, &ProblemsPane::openCurrent);
    showDetail();
}

void ProblemsPane::setFindings(const Findings &findings)
{
    m_findings = findings;
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    m_tree->clear();
    for (int i = 0; i < m_findings.size(); ++i) {
        addRow(i);
    }
    m_tree->setCurrentItem(m_tree->topLevelItem(0));
    showDetail();
    Q_EMIT countChanged(m_findings.size());
}

void ProblemsPane::addRow(int index)
{
    const Finding &finding = m_findings.at(index);
    auto *row =
        new QTreeWidgetItem(m_tree, {asSentence(finding.message), finding.rule, shortPlaceOf(finding)});
    row->setIcon(MessageColumn, benchIcon(iconOf(finding.severity)));
    row->setForeground(MessageColumn, colorOf(finding.severity));
    row->setForeground(RuleColumn, BenchTheme::mutedColor());
    row->setData(MessageColumn, Qt::AccessibleTextRole,
                 QStringLiteral("%1: %2").arg(nameOf(finding.severity), finding.message));
    row->setToolTip(MessageColumn, finding.message);
    row->setToolTip(PlaceColumn, finding.file + QLatin1Char('\n') + finding.pointer);
}

const Finding *ProblemsPane::currentFinding() const
{
    const int row = m_tree->indexOfTopLevelItem(m_tree->currentItem());
    return row < 0 ? nullptr : &m_findings.at(row);
}

void ProblemsPane::showDetail()
{
    const Finding *finding = currentFinding();
    if (!finding) {
        m_detail->setText(m_findings.isEmpty() ? tr("No problems found.") : QString());
        return;
    }
    QString text = asSentence(finding->message).toHtmlEscaped();
    if (!finding->hint.isEmpty()) {
        text += QStringLiteral("<br><b>%1</b> %2")
                    .arg(tr("What to do:"), asSentence(finding->hint)
                                                .toHtmlEscaped()
                                                .replace(QLatin1Char('\n'), QLatin1String("<br>")));
    }
    m_detail->setText(text);
}

void ProblemsPane::openCurrent()
{
    const Finding *finding = currentFinding();
    if (finding && !openPlace(*finding)) {
        Q_EMIT failed(finding->file.isEmpty()
                          ? tr("This problem has no file to open")
                          : tr("%1 cannot be opened; name an editor in $VISUAL").arg(finding->file));
    }
}

bool ProblemsPane::openPlace(const Finding &finding)
{
    if (finding.file.isEmpty()) {
        return false;
    }
    QStringList command = QProcess::splitCommand(qEnvironmentVariable("VISUAL"));
    if (command.isEmpty()) {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(finding.file));
    }
    const QString program = command.takeFirst();
    return QProcess::startDetached(program, command + editorArguments(program, finding));
}

} // namespace DEV
} // namespace KORA
