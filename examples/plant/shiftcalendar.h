// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"

#include <QtCore/QBasicTimer>

namespace Plant {

/// A project widget: it draws nothing and tells the project which shift is at work, in the read-only fields
/// "shift" and "shiftName".
class ShiftCalendar : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ShiftCalendar(const KORA::WidgetData &data);

    void initEvent(KORA::InitEvent *event) override;
    void deinitEvent(KORA::DeinitEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

    /// The index of the shift at a time of day; shifts of @p hours each follow one another from @p firstStart.
    static int shiftAt(const QTime &time, int firstStart, int hours);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void publish();

    QBasicTimer m_timer;
};

} // namespace Plant
