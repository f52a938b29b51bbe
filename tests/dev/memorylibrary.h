// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>
#include <QtWidgets/QTreeWidget>

#include <kora/core/widgetmetainformation_p.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/fields/requirements.h>
#include <kora/host.h>

/// A widget that stores what it is given.
class ProbeWidget : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ProbeWidget(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}
};

class ProbeItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ProbeItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

class ProbePlugin : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT

public:
    ProbePlugin()
    {
        registerWidget(QStringLiteral("probe"), QStringLiteral("1.0.0"), &ProbeWidget::staticMetaObject,
                       &ProbeItem::staticMetaObject);
    }
};

using Fields = QVector<KORA::INTERNAL::FieldMetaInformation>;

/// The fields of an array as it stands in a widget's metadata.
inline Fields fieldsFromJson(const QByteArray &json)
{
    using namespace KORA::INTERNAL;
    Fields fields;
    const QJsonArray array = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &value : array) {
        FieldMetaInformation field;
        QList<TranslationStringType> translations;
        const int error = WidgetLibraryPluginUtils::infoFromMetaDataParseField(
            value, field, QString(), QStringLiteral("en-US"), translations);
        if (error != 0) {
            qFatal("%s: %s", qPrintable(value.toObject().value(QLatin1String("id")).toString()),
                   qPrintable(WidgetLibraryPluginUtils::errorToString(error)));
        }
        fields.append(field);
    }
    return fields;
}

/// A bench on a library of one widget, "probe", that is not in a file: its fields may be what no metadata allows.
class ProbeBench
{
public:
    explicit ProbeBench(const Fields &fields)
        : data(QString(), nullptr, &plugin, metadata(fields), 0)
        , document(&data)
        , widget(document.place(QStringLiteral("probe"), QStringLiteral("1.0.0"), {100, 100}))
        , pane(&document)
    {
        const auto update = [this] { KORA::DEV::updateFieldsRequirements(&pane); };
        for (const auto signal : {&KORA::DEV::FieldsPane::treeRebuilt, &KORA::DEV::FieldsPane::fieldEdited,
                                  &KORA::DEV::FieldsPane::valuesChanged}) {
            QObject::connect(&pane, signal, update);
        }
        update();
        pane.resize(370, 700);
        pane.show();
        pane.activateWindow();
        if (!QTest::qWaitForWindowActive(&pane)) {
            qFatal("the window does not become active");
        }
    }

    KORA::DEV::FieldManager *manager(const char *id) const
    {
        return pane.fieldManagers().value(QString::fromLatin1(id));
    }
    bool isHidden(const char *id) const { return manager(id)->row()->isHidden(); }
    QVariant value(const char *id) const { return widget->fieldValue(QString::fromLatin1(id)); }
    void set(const char *id, const QVariant &value)
    {
        document.setFieldValue(widget, QString::fromLatin1(id), value);
        QCoreApplication::processEvents();
    }
    /// As the widget's own code does it.
    void setFromPlugin(const char *id, const QVariant &value)
    {
        widget->widget()->setFieldValue(QString::fromLatin1(id), value);
    }
    /// A control of the pane, with its editor made.
    template<typename Control>
    Control *find(const QString &name)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // editors of rows that are gone
        for (KORA::DEV::FieldManager *manager : pane.fieldManagers()) {
            if (name.startsWith(manager->id())) {
                const auto rows = manager->rows();
                for (QTreeWidgetItem *row : rows) {
                    manager->editor(row);
                }
            }
        }
        QCoreApplication::processEvents();
        return pane.findChild<Control *>(name);
    }

    ProbePlugin plugin;
    KORA::INTERNAL::WidgetLibraryPluginData data;
    KORA::DEV::BenchDocument document;
    KORA::DEV::PlacedWidget *widget;
    KORA::DEV::FieldsPane pane;

private:
    static KORA::INTERNAL::WidgetLibraryPluginMetaInformation *metadata(const Fields &fields)
    {
        using namespace KORA::INTERNAL;
        WidgetMetaInformationPrivate widget;
        widget.isValid = true;
        widget.id = QStringLiteral("probe");
        widget.version = VersionType(1, 0, 0);
        widget.defaultSize = {120, 80};
        for (const FieldMetaInformation &field : fields) {
            widget.fields.insert(field.id(), field);
        }
        auto *library = new WidgetLibraryPluginMetaInformation;
        library->init({}, QStringLiteral("probes"), {}, VersionType(1, 0, 0), {}, {}, {},
                      QStringLiteral("en-US"), {QStringLiteral("it-IT")});
        library->init({{{widget.id, QStringLiteral("1.0.0")}, WidgetMetaInformation(widget)}});
        return library;
    }
};
