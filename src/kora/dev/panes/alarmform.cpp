// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/alarmform_p.h>

#include <kora/dev/panes/colorswatch_p.h>
#include <kora/dev/panes/panecontrols_p.h>
#include <kora/dev/providers/alarmtable.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/tagvalues.h>

#include <QtCore/QEvent>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDateTimeEdit>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

namespace KORA {
namespace DEV {

namespace {

const QLatin1String Prefix("alarmForm");

QStringList linesOf(const QPlainTextEdit *edit)
{
    return edit->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void showText(QLineEdit *line, const QString &text)
{
    if (!line->hasFocus() && line->text() != text) {
        line->setText(text);
    }
}

void showList(QPlainTextEdit *edit, const QStringList &list)
{
    if (!edit->hasFocus() && linesOf(edit) != list) {
        edit->setPlainText(list.join(QLatin1Char('\n')));
    }
}

/// A number, true or false where the text is one; else the text itself.
QVariant valueOfText(const QString &text)
{
    QVariant value;
    if (text.isEmpty()) {
        return value;
    }
    if (text == QLatin1String("true") || text == QLatin1String("false")) {
        return text == QLatin1String("true");
    }
    for (const INTERNAL::TagType type : {INTERNAL::TagTypeInt, INTERNAL::TagTypeDouble}) {
        if (TagValues::convert(type, text, value, nullptr) && TagValues::text(value) == text) {
            return value;
        }
    }
    return text;
}

} // namespace

AlarmForm::AlarmForm(AlarmTable *alarms, TagTable *tags, QWidget *parent)
    : QWidget(parent)
    , m_alarms(alarms)
    , m_tags(tags)
{
    auto *layout = new QFormLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setVerticalSpacing(4);
    layout->setRowWrapPolicy(QFormLayout::WrapLongRows);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_nameLine =
        addLine(layout, QStringLiteral("Name"), tr("Name"), tr("Widgets acknowledge and reset it by this"));
    m_description =
        addLine(layout, QStringLiteral("Description"), tr("Description"), tr("What the operator reads"));
    m_state = addChoice(layout, QStringLiteral("State"), tr("State"), tr("Sets a state directly"));
    m_severity =
        addChoice(layout, QStringLiteral("Severity"), tr("Severity"), tr("How much the alarm matters"));
    for (int i = 0; i < AlarmTable::StateCount; ++i) {
        m_state->addItem(AlarmTable::stateText(static_cast<AlarmInfo::State>(i)));
    }
    for (int i = 0; i < AlarmTable::SeverityCount; ++i) {
        m_severity->addItem(AlarmTable::severityText(static_cast<AlarmInfo::Severity>(i)));
    }
    m_acknowledge = addFlag(layout, QStringLiteral("Acknowledge"), tr("Can be acknowledged"),
                            tr("Raised, it waits to be acknowledged"));
    m_reset =
        addFlag(layout, QStringLiteral("Reset"), tr("Has to be reset"), tr("Gone, it waits to be reset"));
    m_blink = addFlag(layout, QStringLiteral("Blink"), tr("Blinks"), tr("Widgets are to draw it blinking"));
    addTime(layout);
    m_tag = addChoice(layout, QStringLiteral("Tag"), tr("Tag"), tr("The tag that raised the alarm"));
    m_tag->setEditable(true);
    m_tagValue = addLine(layout, QStringLiteral("TagValue"), tr("Tag value"),
                         tr("The tag's value when the alarm was raised; raising it here sets it"));
    m_groups = addList(layout, QStringLiteral("Groups"), tr("Groups"), tr("One group in each line"));
    m_customFields =
        addList(layout, QStringLiteral("CustomFields"), tr("Custom fields"), tr("One field in each line"));
    addColors(layout);
    setEnabled(false);
}

// A control that loses the focus while the form is going has nothing to apply any more.
AlarmForm::~AlarmForm()
{
    const QList<QWidget *> controls = findChildren<QWidget *>();
    for (QWidget *control : controls) {
        control->disconnect(this);
        control->removeEventFilter(this);
    }
}

QLineEdit *AlarmForm::addLine(QFormLayout *layout, const QString &name, const QString &label,
                              const QString &toolTip)
{
    auto *line = new QLineEdit(this);
    describeControl(line, Prefix + name, label, toolTip);
    layout->addRow(label, line);
    connect(line, &QLineEdit::editingFinished, this, &AlarmForm::apply);
    return line;
}

QComboBox *AlarmForm::addChoice(QFormLayout *layout, const QString &name, const QString &label,
                                const QString &toolTip)
{
    auto *combo = new QComboBox(this);
    describeControl(combo, Prefix + name, label, toolTip);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(8);
    combo->setInsertPolicy(QComboBox::NoInsert);
    ignoreWheelWithoutFocus(combo);
    layout->addRow(label, combo);
    connect(combo, QOverload<int>::of(&QComboBox::activated), this, &AlarmForm::apply);
    return combo;
}

QPlainTextEdit *AlarmForm::addList(QFormLayout *layout, const QString &name, const QString &label,
                                   const QString &toolTip)
{
    auto *edit = new QPlainTextEdit(this);
    describeControl(edit, Prefix + name, label, toolTip);
    edit->setTabChangesFocus(true);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setFixedHeight(edit->fontMetrics().height() * 3 + 10);
    edit->installEventFilter(this);
    layout->addRow(label, edit);
    return edit;
}

QCheckBox *AlarmForm::addFlag(QFormLayout *layout, const QString &name, const QString &text,
                              const QString &toolTip)
{
    auto *box = new QCheckBox(text, this);
    describeControl(box, Prefix + name, text, toolTip);
    layout->addRow(box);
    connect(box, &QCheckBox::clicked, this, &AlarmForm::apply);
    return box;
}

void AlarmForm::addTime(QFormLayout *layout)
{
    m_time = new QDateTimeEdit(this);
    describeControl(m_time, Prefix + QStringLiteral("Time"), tr("Time, UTC"),
                    tr("When it was raised, in UTC"));
    m_time->setLocale(QLocale::c());
    m_time->setTimeSpec(Qt::UTC);
    m_time->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    m_time->setMinimumDate(QDate(1970, 1, 1));
    m_time->setSpecialValueText(tr("never"));
    ignoreWheelWithoutFocus(m_time);
    layout->addRow(tr("Time, UTC"), m_time);
    connect(m_time, &QDateTimeEdit::editingFinished, this, &AlarmForm::apply);
}

void AlarmForm::addColors(QFormLayout *layout)
{
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(2);
    grid->addWidget(new QLabel(tr("Colours by state"), this), 0, 0);
    grid->addWidget(new QLabel(tr("Back"), this), 0, 1, Qt::AlignCenter);
    grid->addWidget(new QLabel(tr("Text"), this), 0, 2, Qt::AlignCenter);
    grid->setColumnStretch(0, 1);
    for (int state = 0; state < AlarmTable::StateCount; ++state) {
        auto *label = new QLabel(AlarmTable::stateText(static_cast<AlarmInfo::State>(state)), this);
        label->setWordWrap(true);
        grid->addWidget(label, state + 1, 0);
        m_backgrounds.append(addSwatch(grid, state, true));
        m_foregrounds.append(addSwatch(grid, state, false));
    }
    layout->addRow(grid);
}

ColorSwatch *AlarmForm::addSwatch(QGridLayout *layout, int state, bool isBackground)
{
    auto *swatch = new ColorSwatch(this);
    const QString stateText = AlarmTable::stateText(static_cast<AlarmInfo::State>(state));
    const QString name = isBackground ? tr("Background when %1").arg(stateText.toLower())
                                      : tr("Text colour when %1").arg(stateText.toLower());
    describeControl(
        swatch,
        Prefix + (isBackground ? QStringLiteral("Background%1") : QStringLiteral("Foreground%1")).arg(state),
        name, tr("%1 (Space changes it, Del takes it away)").arg(name));
    layout->addWidget(swatch, state + 1, isBackground ? 1 : 2, Qt::AlignCenter);
    connect(swatch, &ColorSwatch::colorChosen, this, &AlarmForm::apply);
    return swatch;
}

bool AlarmForm::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        apply();
    }
    return QWidget::eventFilter(watched, event);
}

void AlarmForm::showTags()
{
    const QStringList names = m_tags->names();
    QStringList shown;
    for (int i = 0; i < m_tag->count(); ++i) {
        shown.append(m_tag->itemText(i));
    }
    if (shown != names) {
        m_tag->clear();
        m_tag->addItems(names);
    }
}

void AlarmForm::show(const QString &name)
{
    const AlarmInfoData alarm = m_alarms->definition(name);
    const bool isOther = name != m_name;
    setEnabled(m_alarms->contains(name));
    if (!isOther && alarm == m_shown) {
        return;
    }
    if (isOther && isAncestorOf(focusWidget())) {
        focusWidget()->clearFocus(); // what was typed belongs to the alarm before
    }
    m_name = name;
    m_shown = alarm;
    showText(m_nameLine, alarm.name);
    showText(m_description, alarm.description);
    showText(m_tagValue, TagValues::text(alarm.tagValue));
    showList(m_groups, alarm.groups);
    showList(m_customFields, alarm.customFields);
    m_state->setCurrentIndex(alarm.state);
    m_severity->setCurrentIndex(alarm.severity);
    m_acknowledge->setChecked(alarm.acknowledgeEnabled);
    m_reset->setChecked(alarm.resetEnabled);
    m_blink->setChecked(alarm.blinkEnabled);
    if (!m_time->hasFocus()) {
        m_time->setDateTime(alarm.timestamp.isValid() ? alarm.timestamp.toUTC() : m_time->minimumDateTime());
    }
    if (!m_tag->hasFocus()) {
        showTags();
        m_tag->setEditText(alarm.tagName);
    }
    for (int state = 0; state < AlarmTable::StateCount; ++state) {
        m_backgrounds.at(state)->setColor(alarm.backgroundColors.value(static_cast<AlarmInfo::State>(state)));
        m_foregrounds.at(state)->setColor(alarm.foregroundColors.value(static_cast<AlarmInfo::State>(state)));
    }
}

// What the form shows in another way than the alarm has it is taken only if it was changed.
AlarmInfoData AlarmForm::entered() const
{
    AlarmInfoData alarm = m_shown;
    alarm.name = m_nameLine->text().trimmed();
    alarm.description = m_description->text();
    alarm.state = static_cast<AlarmInfo::State>(m_state->currentIndex());
    alarm.severity = static_cast<AlarmInfo::Severity>(m_severity->currentIndex());
    alarm.acknowledgeEnabled = m_acknowledge->isChecked();
    alarm.resetEnabled = m_reset->isChecked();
    alarm.blinkEnabled = m_blink->isChecked();
    alarm.tagName = m_tag->currentText().trimmed();
    alarm.groups = linesOf(m_groups);
    alarm.customFields = linesOf(m_customFields);
    if (m_tagValue->text() != TagValues::text(m_shown.tagValue)) {
        alarm.tagValue = valueOfText(m_tagValue->text());
    }
    const QDateTime none = m_time->minimumDateTime();
    const QDateTime shownTime = m_shown.timestamp.isValid() ? m_shown.timestamp : none;
    if (m_time->dateTime() != shownTime) {
        alarm.timestamp = m_time->dateTime() == none ? QDateTime() : m_time->dateTime();
    }
    for (int state = 0; state < AlarmTable::StateCount; ++state) {
        const auto key = static_cast<AlarmInfo::State>(state);
        alarm.backgroundColors.insert(key, m_backgrounds.at(state)->color());
        alarm.foregroundColors.insert(key, m_foregrounds.at(state)->color());
    }
    return alarm;
}

void AlarmForm::apply()
{
    if (!m_alarms->contains(m_name)) {
        return;
    }
    const AlarmInfoData alarm = entered();
    const QString before = m_name;
    QString problem;
    m_name = alarm.name;
    if (!m_alarms->edit(before, alarm, &problem)) {
        m_name = before;
        m_nameLine->setText(before);
        Q_EMIT refused(problem);
        return;
    }
    m_shown = m_alarms->definition(m_name);
    if (m_name != before) {
        Q_EMIT renamed(m_name);
    }
}

} // namespace DEV
} // namespace KORA
