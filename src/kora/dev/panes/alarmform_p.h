// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <kora/runtime/alarminfo.h>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QFormLayout;
class QGridLayout;
class QLineEdit;
class QPlainTextEdit;

namespace KORA {
namespace DEV {

class AlarmTable;
class ColorSwatch;
class TagTable;

/// Every field of one alarm. What the user enters is taken when the control is left or Enter is pressed. Object names
/// begin with "alarmForm"; the colours are "alarmFormBackground<n>" and "alarmFormForeground<n>" by state number.
class AlarmForm : public QWidget
{
    Q_OBJECT

public:
    /// The tables are not owned and must outlive the form.
    AlarmForm(AlarmTable *alarms, TagTable *tags, QWidget *parent = nullptr);
    ~AlarmForm() override;

    /// Shows an alarm as it is now; what is being typed into a control stays.
    void show(const QString &name);

Q_SIGNALS:
    void refused(const QString &problem);
    /// The alarm that is shown has another name.
    void renamed(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit *addLine(QFormLayout *layout, const QString &name, const QString &label,
                       const QString &toolTip);
    QComboBox *addChoice(QFormLayout *layout, const QString &name, const QString &label,
                         const QString &toolTip);
    QPlainTextEdit *addList(QFormLayout *layout, const QString &name, const QString &label,
                            const QString &toolTip);
    QCheckBox *addFlag(QFormLayout *layout, const QString &name, const QString &text, const QString &toolTip);
    void addTime(QFormLayout *layout);
    void addColors(QFormLayout *layout);
    ColorSwatch *addSwatch(QGridLayout *layout, int state, bool isBackground);
    void showTags();
    AlarmInfoData entered() const;
    void apply();

    AlarmTable *m_alarms;
    TagTable *m_tags;
    QString m_name;
    AlarmInfoData m_shown;
    QLineEdit *m_nameLine;
    QLineEdit *m_description;
    QComboBox *m_state;
    QComboBox *m_severity;
    QDateTimeEdit *m_time = nullptr;
    QComboBox *m_tag;
    QLineEdit *m_tagValue;
    QCheckBox *m_acknowledge;
    QCheckBox *m_reset;
    QCheckBox *m_blink;
    QPlainTextEdit *m_groups;
    QPlainTextEdit *m_customFields;
    QVector<ColorSwatch *> m_backgrounds;
    QVector<ColorSwatch *> m_foregrounds;
};

} // namespace DEV
} // namespace KORA
