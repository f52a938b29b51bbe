// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtWidgets/QGraphicsScene>

#include <kora/host.h>

class CheckRun;

/// The host that widgets are checked in. Its answers are as good as asked for.
class CheckHost : public KORA::INTERNAL::WidgetActionManagerImpl
{
    Q_OBJECT

public:
    enum Answers {
        Nothing, ///< invalid values and empty lists
        Empty,   ///< valid values without content
        Usual,
        Huge,  ///< very many entries, very long texts, very large numbers
        Broken ///< lists whose entries are not as they should be
    };
    static constexpr int answersCount = Broken + 1;

    QVariant getTagValue(const QString &tag) const override;
    QVariant getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to, unsigned int count,
                           KORA::WidgetActionManager::TrendTimeFormat format) const override;
    QVector<KORA::AlarmInfo> getAlarms() const override;
    void resetAlarm(const QString &) override { ++commandCount; }
    void resetAllAlarms() override { ++commandCount; }
    void acknowAlarm(const QString &) override { ++commandCount; }
    void acknowAllAlarms() override { ++commandCount; }
    bool isInsideProjectEditor() const override { return isInEditor; }
    bool isInsideDevProject() const override { return warnsOfFieldAccess; }

    Answers answers = Usual;
    bool isInEditor = false;
    bool warnsOfFieldAccess = true;
    int commandCount = 0; ///< alarm commands so far
};

/// An alarm with something in every field.
KORA::AlarmInfo alarmInState(KORA::AlarmInfo::State state);

/// A widget with its item on a scene, driven as a host does. Tells the run what it is about to call. What is left
/// of the widget is deleted at the end, in the order that hosts keep to.
class CheckStage
{
public:
    enum Mode { Runtime, Editor };

    explicit CheckStage(CheckRun &run, Mode mode = Runtime);
    ~CheckStage();
    Q_DISABLE_COPY_MOVE(CheckStage)

    /// False if there is no widget: other checks tell why.
    bool makeWidget();
    /// Another item of the widget, on the scene.
    bool makeItem();
    /// Both, the default values, a size and the start.
    bool perform();

    void setDefaults();
    /// Sets a value as a host does, within the field's bounds.
    void setField(const QString &fieldId, const QVariant &value);
    /// The value that setField() stores if the widget lets it be; false if the field does not take it.
    bool storedValue(const QString &fieldId, const QVariant &value, QVariant &stored) const;
    QVariant fieldValue(const QString &fieldId) const;

    void start();
    void stop();
    void resize(const QSizeF &size);
    void alarm(const KORA::AlarmInfo &alarm, const QString &description);
    /// Draws the item, then the scene; tells what the item did to the painter.
    void paint(const QSize &imageSize = QSize(64, 48));
    /// Lets posted events and timers run.
    void settle(int milliseconds = 0);
    void deleteItem(int index);
    void deleteWidget();

    /// Tells if the items are no longer where the host put them, or have no rectangle.
    void verify();

    QSizeF defaultSize() const;
    QGraphicsScene &scene() { return m_scene; }
    KORA::GraphicsObject *item(int index = 0) const { return m_items.value(index); }
    KORA::Widget *widget() const { return m_widget; }
    /// The fields that the widget itself wrote since the last call.
    QSet<QString> takeWrittenFields();

    CheckHost host;

private:
    KORA::WidgetPrivate *priv() const;
    void fieldIsWritten(const QString &fieldId, const QVariant &value);
    void paintItem(const QSize &imageSize);
    void verifyItem(const QPointer<KORA::GraphicsObject> &item);

    CheckRun &m_run;
    QGraphicsScene m_scene;
    QVector<QPointer<KORA::GraphicsObject>> m_items;
    QPointer<KORA::Widget> m_widget;
    QPointer<KORA::WidgetActionManager> m_actionManager;
    QMap<QString, KORA::INTERNAL::FieldInfo> m_fieldInfo;
    QSet<QString> m_writtenFields;
};
