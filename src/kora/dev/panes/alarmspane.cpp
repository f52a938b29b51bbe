// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/alarmspane.h>

#include <kora/dev/panes/alarmform_p.h>
#include <kora/dev/panes/panecontrols_p.h>
#include <kora/dev/providers/providers.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QAction>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTableView>
#include <QtWidgets/QToolButton>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

constexpr int UsualRate = 10;

} // namespace

AlarmsPane::AlarmsPane(Providers *providers, QWidget *parent)
    : ProviderPane(providers->alarms(), providers->clock(), QStringLiteral("alarms"), tr("alarm"), parent)
    , m_providers(providers)
{
    table()->setAccessibleName(tr("Alarms"));
    addStateAction(QStringLiteral("Raise"), tr("Raise"), tr("Raise the selected alarms"), AlarmStates::Raise);
    addStateAction(QStringLiteral("Clear"), tr("Clear"), tr("The cause of the selected alarms is gone"),
                   AlarmStates::Clear);
    addStateAction(QStringLiteral("Acknowledge"), tr("Acknowledge"), tr("Acknowledge the selected alarms"),
                   AlarmStates::Acknowledge);
    addStateAction(QStringLiteral("Reset"), tr("Reset"), tr("Reset the selected alarms that are gone"),
                   AlarmStates::Reset);
    m_disable = addAction(QStringLiteral("Disable"), tr("Disable"),
                          tr("Disable the selected alarms, or enable them"));
    m_disable->setCheckable(true);
    connect(m_disable, &QAction::triggered, this,
            [this](bool isDisabled) { act(isDisabled ? AlarmStates::Disable : AlarmStates::Enable); });
    addBurst();
    addDetails();
    AlarmsPane::currentChanged();
}

AlarmsPane::~AlarmsPane()
{
    m_form->disconnect(this);
    m_burstRate->disconnect(this);
}

void AlarmsPane::addStateAction(const QString &name, const QString &text, const QString &toolTip,
                                AlarmStates::Action action)
{
    QAction *added = addAction(name, text, toolTip);
    m_stateActions.append({action, added});
    connect(added, &QAction::triggered, this, [this, action] { act(action); });
}

void AlarmsPane::addBurst()
{
    m_burst = new QAction(tr("Burst"), this);
    m_burst->setObjectName(prefixed("Burst"));
    m_burst->setToolTip(tr("Raise and clear all alarms in turn, as often as the number beside says"));
    m_burst->setCheckable(true);
    addControl(actionButton(m_burst, this));
    m_burstRate = new QSpinBox(this);
    m_burstRate->setLocale(QLocale::c());
    m_burstRate->setRange(1, AlarmTable::MaximumBurst);
    m_burstRate->setValue(UsualRate);
    m_burstRate->setSuffix(tr("/s"));
    m_burstRate->setKeyboardTracking(false);
    describeControl(m_burstRate, prefixed("BurstRate"), tr("Alarm changes per second"),
                    tr("Alarm changes per second of the clock"));
    ignoreWheelWithoutFocus(m_burstRate);
    addControl(m_burstRate);
    connect(m_burst, &QAction::triggered, this,
            [this](bool isOn) { m_providers->alarms()->burst(isOn ? m_burstRate->value() : 0); });
    connect(m_burstRate, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int rate) {
        if (m_burst->isChecked()) {
            m_providers->alarms()->burst(rate);
        }
    });
    const auto showRate = [this](int rate) {
        const QSignalBlocker blocker(m_burstRate);
        m_burst->setChecked(rate > 0);
        m_burstRate->setValue(rate > 0 ? rate : m_burstRate->value());
    };
    connect(m_providers->alarms(), &AlarmTable::burstChanged, this, showRate);
    showRate(m_providers->alarms()->burstRate());
}

void AlarmsPane::addDetails()
{
    m_details = new QAction(tr("Details"), this);
    m_details->setObjectName(prefixed("Details"));
    m_details->setToolTip(tr("Show all fields and colours of the alarm"));
    m_details->setCheckable(true);
    addControl(actionButton(m_details, this));
    m_form = new AlarmForm(m_providers->alarms(), m_providers->tags(), this);
    m_area = new QScrollArea(this);
    describeControl(m_area, prefixed("DetailsArea"), tr("Details of the alarm"), QString());
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidget(m_form);
    m_area->setMinimumWidth(m_form->minimumSizeHint().width() + 24);
    m_area->hide();
    splitter()->addWidget(m_area);
    splitter()->setStretchFactor(0, 1);
    connect(m_details, &QAction::toggled, m_area, &QWidget::setVisible);
    connect(m_form, &AlarmForm::refused, this, &AlarmsPane::showProblem);
    connect(m_form, &AlarmForm::renamed, this, &AlarmsPane::setCurrentName);
}

void AlarmsPane::act(AlarmStates::Action action)
{
    const QStringList names = selectedNames();
    AlarmTable *alarms = m_providers->alarms();
    alarms->editByUser([&] {
        bool hasActed = false;
        for (const QString &name : names) {
            hasActed = alarms->act(action, name) || hasActed;
        }
        return hasActed;
    });
    currentChanged();
}

bool AlarmsPane::hasEffect(AlarmStates::Action action) const
{
    const QStringList names = selectedNames();
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        return AlarmStates::hasEffect(action, m_providers->alarms()->definition(name));
    });
}

void AlarmsPane::currentChanged()
{
    if (!m_form) { // still being built
        return;
    }
    for (const auto &row : qAsConst(m_stateActions)) {
        row.second->setEnabled(hasEffect(row.first));
    }
    m_disable->setChecked(hasEffect(AlarmStates::Enable));
    m_form->show(currentName());
}

} // namespace DEV
} // namespace KORA
