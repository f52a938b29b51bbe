// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/panes/providerpane.h>
#include <kora/dev/providers/alarmstates.h>

class QScrollArea;
class QSpinBox;

namespace KORA {
namespace DEV {

class AlarmForm;
class Providers;

/// The simulated alarms. Object names begin with "alarms", see ProviderPane; the buttons are "alarmsRaise", "alarmsClear",
/// "alarmsAcknowledge", "alarmsReset", "alarmsDisable", "alarmsBurst" with "alarmsBurstRate", and "alarmsDetails", which
/// shows the form of all fields.
class KORA_EXPORT AlarmsPane : public ProviderPane
{
    Q_OBJECT

public:
    /// @p providers is not owned and must outlive the pane.
    explicit AlarmsPane(Providers *providers, QWidget *parent = nullptr);
    ~AlarmsPane() override;

protected:
    void currentChanged() override;

private:
    void addStateAction(const QString &name, const QString &text, const QString &toolTip,
                        AlarmStates::Action action);
    void addBurst();
    void addDetails();
    void act(AlarmStates::Action action);
    bool hasEffect(AlarmStates::Action action) const;

    Providers *m_providers;
    QVector<QPair<AlarmStates::Action, QAction *>> m_stateActions;
    QAction *m_disable = nullptr;
    QAction *m_burst = nullptr;
    QSpinBox *m_burstRate = nullptr;
    QAction *m_details = nullptr;
    QScrollArea *m_area = nullptr;
    AlarmForm *m_form = nullptr;
};

} // namespace DEV
} // namespace KORA
