// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/clockbar.h>

#include <kora/dev/panes/panecontrols_p.h>
#include <kora/dev/providers/benchclock.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QToolButton>

#include <limits>

namespace KORA {
namespace DEV {

namespace {

QString timeText(qint64 elapsed)
{
    const qint64 hours = elapsed / 3600000;
    const QTime rest = QTime::fromMSecsSinceStartOfDay(static_cast<int>(elapsed % 3600000));
    return QStringLiteral("%1:%2").arg(QString::number(hours).rightJustified(2, QLatin1Char('0')),
                                       rest.toString(QStringLiteral("mm:ss.zzz")).chopped(2));
}

} // namespace

ClockBar::ClockBar(BenchClock *clock, const QString &prefix, QWidget *parent)
    : QWidget(parent)
    , m_clock(clock)
    , m_pause(new QToolButton(this))
    , m_step(new QToolButton(this))
    , m_speed(new QDoubleSpinBox(this))
    , m_seed(new QSpinBox(this))
    , m_time(new QLabel(this))
{
    addButtons(prefix);
    addNumbers(prefix);
    describeControl(m_time, prefix + QStringLiteral("ClockTime"), tr("Time of the clock"), QString());
    m_time->setMinimumWidth(m_time->fontMetrics().horizontalAdvance(timeText(360000000)) + 4);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (QWidget *control : std::initializer_list<QWidget *>{m_pause, m_step, m_speed, m_seed, m_time}) {
        layout->addWidget(control);
    }
    connect(clock, &BenchClock::ticked, this, &ClockBar::showTime);
    connect(clock, &BenchClock::restarted, this, &ClockBar::showTime);
    connect(clock, &BenchClock::pausedChanged, this, &ClockBar::showState);
    connect(clock, &BenchClock::speedChanged, this, &ClockBar::showState);
    connect(clock, &BenchClock::seedChanged, this, &ClockBar::showState);
    showState();
}

void ClockBar::addButtons(const QString &prefix)
{
    // As wide with either text, so that the row does not move.
    m_pause->setText(tr("Continue"));
    m_pause->setMinimumWidth(m_pause->sizeHint().width());
    m_pause->setCheckable(true);
    m_pause->setFocusPolicy(Qt::StrongFocus);
    describeControl(m_pause, prefix + QStringLiteral("ClockPause"), tr("Pause the clock"),
                    tr("Stop the clock of all tags, trends and alarms, or let it go on"));
    connect(m_pause, &QToolButton::toggled, m_clock, &BenchClock::setPaused);
    m_step->setText(tr("Step"));
    m_step->setFocusPolicy(Qt::StrongFocus);
    describeControl(m_step, prefix + QStringLiteral("ClockStep"), tr("Step the clock"),
                    tr("Stop the clock and go on by %1 ms").arg(BenchClock::StepMs));
    connect(m_step, &QToolButton::clicked, m_clock, [clock = m_clock] { clock->step(); });
}

void ClockBar::addNumbers(const QString &prefix)
{
    m_speed->setLocale(QLocale::c());
    m_speed->setRange(BenchClock::MinimumSpeed, BenchClock::MaximumSpeed);
    m_speed->setDecimals(1);
    m_speed->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    m_speed->setPrefix(QStringLiteral("\u00d7 "));
    m_speed->setKeyboardTracking(false);
    describeControl(m_speed, prefix + QStringLiteral("ClockSpeed"), tr("Speed of the clock"),
                    tr("How much faster than real time the clock runs, 0.1 to 100"));
    ignoreWheelWithoutFocus(m_speed);
    connect(m_speed, QOverload<double>::of(&QDoubleSpinBox::valueChanged), m_clock, &BenchClock::setSpeed);
    m_seed->setLocale(QLocale::c());
    m_seed->setRange(0, std::numeric_limits<int>::max());
    m_seed->setPrefix(tr("Seed "));
    m_seed->setKeyboardTracking(false);
    m_seed->setFixedWidth(m_seed->fontMetrics().horizontalAdvance(m_seed->prefix() + QStringLiteral("0000"))
                          + 24);
    describeControl(m_seed, prefix + QStringLiteral("ClockSeed"), tr("Seed of the generators"),
                    tr("Random walks and spikes are the same for the same seed"));
    ignoreWheelWithoutFocus(m_seed);
    connect(m_seed, QOverload<int>::of(&QSpinBox::valueChanged), m_clock,
            [clock = m_clock](int seed) { clock->setSeed(static_cast<quint32>(seed)); });
}

void ClockBar::showEvent(QShowEvent *event)
{
    showState();
    QWidget::showEvent(event);
}

void ClockBar::showState()
{
    const QSignalBlocker pauseBlocker(m_pause);
    const QSignalBlocker speedBlocker(m_speed);
    const QSignalBlocker seedBlocker(m_seed);
    m_pause->setChecked(m_clock->isPaused());
    m_pause->setText(m_clock->isPaused() ? tr("Continue") : tr("Pause"));
    m_pause->setAccessibleName(m_clock->isPaused() ? tr("Let the clock go on") : tr("Pause the clock"));
    m_speed->setValue(m_clock->speed());
    m_seed->setValue(static_cast<int>(qMin(m_clock->seed(), quint32(std::numeric_limits<int>::max()))));
    showTime();
}

void ClockBar::showTime()
{
    if (!isVisible()) {
        return;
    }
    m_time->setText(timeText(m_clock->elapsed()));
    m_time->setToolTip(tr("Time since the clock's start. It is %1 for tags, trends and alarms.")
                           .arg(m_clock->now().toString(Qt::ISODate)));
}

} // namespace DEV
} // namespace KORA
