// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>

#include <kora/core/widgetmetainformation.h>
#include <kora/dev/model/hostservices.h>
#include <kora/dev/model/livewidget.h>
#include <kora/dev/model/scenario.h>

class QGraphicsScene;

namespace KORA {
namespace DEV {

class BenchDocument;
class Providers;

/// A widget on the bench's page: the live instance, or the reason why there is none, with all that is needed to
/// make it again. Read it here, change it through BenchDocument.
class KORA_EXPORT PlacedWidget : public QObject
{
    Q_OBJECT

public:
    /// Who wrote a field.
    enum Origin : int { Host, Plugin, Tag };
    Q_ENUM(Origin)

    ~PlacedWidget() override;

    int id() const { return m_state.id; }
    QString name() const { return m_state.name; }
    QString widgetId() const { return m_state.widgetId; }
    QString version() const { return m_state.version; }
    /// The widget's metadata; invalid if the library declares no such widget.
    const INTERNAL::WidgetMetaInformation &info() const { return m_info; }
    QRectF geometry() const { return m_state.geometry; }
    bool isVisible() const { return m_state.isVisible; }
    bool isLocked() const { return m_state.isLocked; }
    /// Whether there is an instance and it is started.
    bool isRunning() const;

    /// Null if there is no instance.
    KORA::GraphicsObject *item() const { return m_live.item(); }
    KORA::Widget *widget() const { return m_live.widget(); }
    /// Why there is no instance; its rule is empty if there is one.
    const Finding &problem() const { return m_problem; }

    /// The present value under a field id or "<id>.font"; invalid if it has none or there is no instance.
    QVariant fieldValue(const QString &fieldId) const;
    /// A multi-language text in one language.
    QVariant fieldText(const QString &fieldId, const QString &language) const;
    QVariant defaultValue(const QString &fieldId) const;
    /// Whether the value is not the default.
    bool isModified(const QString &fieldId) const;
    /// The tag or trend that the field follows; empty if none.
    QString binding(const QString &fieldId) const { return m_state.bindings.value(fieldId); }

    /// What makes it again, with the present values.
    PlacedWidgetState state() const;

Q_SIGNALS:
    /// Name, geometry, visibility or lock.
    void changed();
    /// There is another instance, or none; or it was started or stopped.
    void instanceChanged();
    void fieldValueChanged(const QString &fieldId, const QVariant &value,
                           KORA::DEV::PlacedWidget::Origin origin);
    void bindingChanged(const QString &fieldId);

private:
    friend class BenchDocument;

    PlacedWidget(BenchDocument *document, const PlacedWidgetState &state);

    void makeInstance(bool isStopped);
    Finding checkInstance(bool isStopped) const;
    void watchParts();
    void destroyInstance();
    void applyValues();
    void applyGeometry();
    void setRunning(bool isRunning);
    void writeField(const QString &fieldId, const QVariant &value, Origin origin);
    void applyText(const QString &fieldId);
    QVariant boundValue(const QString &fieldId) const;
    void onPluginWrite(const QString &fieldId, const QVariant &value);
    void onTagChanged(const QString &tag, const QVariant &value);
    void deliverAlarm(const KORA::AlarmInfo &alarm);

    BenchDocument *m_document;
    PlacedWidgetState m_state; // values as of the last time without an instance
    INTERNAL::WidgetMetaInformation m_info;
    HostServices m_services; // before the live widget, which uses it
    LiveWidget m_live;
    Finding m_problem;
};

} // namespace DEV
} // namespace KORA
