// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

namespace KORA {
namespace DEV {

class Providers;

/// Draws what a widget gets of a trend: for the span and count that were asked for last, else for the last minute.
class TrendCurve : public QWidget
{
    Q_OBJECT

public:
    /// @p providers is not owned and must outlive the curve.
    explicit TrendCurve(Providers *providers, QWidget *parent = nullptr);

    void setTrend(const QString &name);
    /// What stands above the curve: the question, and the present value.
    QString caption() const;

    QSize minimumSizeHint() const override { return QSize(150, 70); }
    QSize sizeHint() const override { return QSize(320, 140); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Curve;

    Curve curve() const;
    void updateSoon();
    void drawFrame(QPainter &painter, const QRectF &plot, const Curve &curve) const;
    void drawLine(QPainter &painter, const QRectF &plot, const Curve &curve) const;

    Providers *m_providers;
    QString m_trend;
    QTimer m_update;
};

} // namespace DEV
} // namespace KORA
