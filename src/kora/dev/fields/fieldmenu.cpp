// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QClipboard>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QMenu>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/fields/fieldsources.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/model/fieldvaluejson.h>

#include <limits>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

QString tr(const char *text)
{
    return FieldsPane::tr(text);
}

void copy(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

QString jsonText(const FieldManager &manager)
{
    const QJsonValue json = fieldValueToJson(manager.field().type(), manager.value());
    if (json.isString()) {
        return json.toString();
    }
    // A document holds no bare value.
    const QByteArray array = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

struct Sample
{
    QString text;
    QVariant value;
};

// Values of every kind: what does not convert is refused by the library, with its warning in the console.
QVector<Sample> samples()
{
    return {{tr("Text \"42\""), QStringLiteral("42")},
            {tr("Text \"fast\""), QStringLiteral("fast")},
            {tr("Whole number 42"), 42},
            {tr("Whole number beyond 32 bits"), std::numeric_limits<qint64>::max()},
            {tr("Number 1.5"), 1.5},
            {tr("Not a number"), std::numeric_limits<double>::quiet_NaN()},
            {tr("True"), true},
            {tr("List of texts"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
            {tr("Colour"), QColor(Qt::darkCyan)},
            {tr("Font"), WidgetLibraryPluginUtils::defaultFont()},
            {tr("No value"), QVariant()}};
}

void addCopyActions(QMenu *menu, FieldManager *manager)
{
    menu->addAction(tr("Copy value"), manager, [manager] { copy(jsonText(*manager)); });
    menu->addAction(tr("Copy text form"), manager, [manager] {
        copy(WidgetLibraryPluginUtils::fieldValueToString(manager->field().type(), manager->value()));
    });
    menu->addAction(tr("Copy getFieldValue() line"), manager, [manager] {
        copy(QStringLiteral("getFieldValue(QStringLiteral(\"%1\"))").arg(manager->id()));
    });
}

} // namespace

void fillFieldMenu(QMenu *menu, FieldManager *manager)
{
    addCopyActions(menu, manager);
    menu->addSeparator();
    QAction *again =
        menu->addAction(tr("Set again"), manager, [manager] { manager->sendValue(manager->value()); });
    again->setToolTip(tr("Writes the present value: a widget gets no event for it"));
    QMenu *others = menu->addMenu(tr("Send another type"));
    const QVector<Sample> values = samples();
    for (const Sample &sample : values) {
        others->addAction(sample.text, manager,
                          [manager, value = sample.value] { manager->sendValue(value); });
    }
    if (manager->field().readOnly()) {
        menu->addAction(tr("Override read-only"), manager, &FieldManager::unlock)
            ->setEnabled(manager->isLocked());
    }
    menu->addSeparator();
    menu->addAction(tr("Reset"), manager, &FieldManager::reset)->setEnabled(manager->isModified());
    if (canFollowSource(manager->field())) {
        manager->fillBindMenu(menu->addMenu(tr("Follow a tag or trend")));
    }
}

} // namespace DEV
} // namespace KORA
