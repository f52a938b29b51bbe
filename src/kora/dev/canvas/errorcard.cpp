// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/errorcard.h>

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QAction>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include <kora/dev/canvas/findingtext.h>
#include <kora/dev/canvas/severitymark.h>

namespace KORA {
namespace DEV {

namespace {

constexpr int markSide = 24;

QString severityName(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Warning:
        return ErrorCard::tr("Warning");
    case Finding::Note:
        return ErrorCard::tr("Note");
    default:
        return ErrorCard::tr("Error");
    }
}

QPixmap severityPixmap(Finding::Severity severity, qreal pixelRatio)
{
    QPixmap pixmap(QSize(markSide, markSide) * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paintSeverityMark(painter, QRectF(1, 1, markSide - 2, markSide - 2), severity);
    return pixmap;
}

} // namespace

ErrorCard::ErrorCard(QWidget *parent)
    : QWidget(parent)
    , m_titleLabel(new QLabel)
    , m_findingsLayout(new QVBoxLayout)
    , m_buttonsLayout(new QHBoxLayout)
{
    setObjectName(QStringLiteral("errorCard"));
    setAccessibleName(tr("Why the widget library is not loaded"));
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.4);
    titleFont.setBold(true);
    m_titleLabel->setFont(titleFont);
    m_titleLabel->setWordWrap(true);
    m_titleLabel->setTextFormat(Qt::PlainText);

    auto *copyButton = new QPushButton(tr("Copy"));
    copyButton->setObjectName(QStringLiteral("errorCardCopy"));
    copyButton->setToolTip(tr("Copy the whole text"));
    connect(copyButton, &QPushButton::clicked, this, &ErrorCard::copy);
    m_buttonsLayout->addWidget(copyButton);
    m_buttonsLayout->addStretch();
    arrange();
}

void ErrorCard::arrange()
{
    constexpr int distance = 12;
    constexpr int share = 20; // of the room; a margin has 1
    auto *findings = new QWidget;
    findings->setLayout(m_findingsLayout);
    m_findingsLayout->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(findings);
    scroll->setAccessibleName(tr("Causes"));

    auto *column = new QVBoxLayout;
    column->addStretch(1);
    column->addWidget(m_titleLabel);
    column->addSpacing(distance);
    column->addWidget(scroll, share);
    column->addSpacing(distance);
    column->addLayout(m_buttonsLayout);
    column->addStretch(1);
    auto *row = new QHBoxLayout(this);
    row->addStretch(1);
    row->addLayout(column, share);
    row->addStretch(1);
}

void ErrorCard::setFindings(const QString &title, const Findings &findings)
{
    m_title = title;
    m_findings = findings;
    m_titleLabel->setText(title);
    while (QLayoutItem *item = m_findingsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const Finding &finding : findings) {
        addFinding(finding);
    }
    m_findingsLayout->addStretch();
}

QLabel *ErrorCard::addLabel(const QString &text, QBoxLayout *layout)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText); // a plugin's texts may look like markup
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAccessibleName(text);
    layout->addWidget(label);
    return label;
}

void ErrorCard::addFinding(const Finding &finding)
{
    auto *texts = new QVBoxLayout;
    QLabel *cause = addLabel(asSentence(finding.message), texts);
    QFont bold = cause->font();
    bold.setBold(true);
    cause->setFont(bold);
    if (!placeOf(finding).isEmpty()) {
        addLabel(placeOf(finding), texts)->setForegroundRole(QPalette::PlaceholderText);
    }
    if (!finding.hint.isEmpty()) {
        addLabel(asSentence(finding.hint), texts);
    }
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 6, 0, 6);
    auto *icon = new QLabel;
    icon->setPixmap(severityPixmap(finding.severity, devicePixelRatioF()));
    icon->setAccessibleName(severityName(finding.severity));
    icon->setToolTip(severityName(finding.severity));
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addSpacing(8);
    layout->addLayout(texts, 1);
    m_findingsLayout->addWidget(row);
}

void ErrorCard::addButton(QAction *action)
{
    auto *button = new QPushButton(action->icon(), action->text());
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setToolTip(action->toolTip());
    button->setEnabled(action->isEnabled());
    connect(button, &QPushButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::changed, button, [button, action] { button->setEnabled(action->isEnabled()); });
    connect(action, &QObject::destroyed, button, &QObject::deleteLater);
    m_buttonsLayout->insertWidget(m_buttonsLayout->count() - 2, button); // before "Copy" and the stretch
}

QString ErrorCard::text() const
{
    QStringList paragraphs{m_title};
    for (const Finding &finding : m_findings) {
        paragraphs.append(linesOf(finding).join(QLatin1Char('\n')));
    }
    return paragraphs.join(QStringLiteral("\n\n")) + QLatin1Char('\n');
}

void ErrorCard::copy() const
{
    QGuiApplication::clipboard()->setText(text());
}

} // namespace DEV
} // namespace KORA
