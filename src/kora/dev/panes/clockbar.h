// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <kora/export.h>

class QDoubleSpinBox;
class QLabel;
class QSpinBox;
class QToolButton;

namespace KORA {
namespace DEV {

class BenchClock;

/// Pause, step, speed and seed of the clock, and its time. There may be several for one clock.
class KORA_EXPORT ClockBar : public QWidget
{
    Q_OBJECT

public:
    /// @p prefix makes the object names of its controls: "<prefix>ClockPause", "<prefix>ClockStep",
    /// "<prefix>ClockSpeed", "<prefix>ClockSeed", "<prefix>ClockTime". @p clock is not owned and must outlive the bar.
    ClockBar(BenchClock *clock, const QString &prefix, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addButtons(const QString &prefix);
    void addNumbers(const QString &prefix);
    void showState();
    void showTime();

    BenchClock *m_clock;
    QToolButton *m_pause;
    QToolButton *m_step;
    QDoubleSpinBox *m_speed;
    QSpinBox *m_seed;
    QLabel *m_time;
};

} // namespace DEV
} // namespace KORA
