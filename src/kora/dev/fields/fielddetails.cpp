// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fielddetails.h>

#include <QtCore/QDebug>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldmanager.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

QString tr(const char *text)
{
    return FieldDetails::tr(text);
}

QString boundsText(const FieldMetaInformation &field)
{
    const QVariant &low = field.minimum();
    const QVariant &high = field.maximum();
    if (low.isValid() && high.isValid()) {
        return tr("%1 to %2").arg(low.toString(), high.toString());
    }
    if (low.isValid()) {
        return tr("from %1").arg(low.toString());
    }
    return high.isValid() ? tr("up to %1").arg(high.toString()) : QString();
}

QString declarationText(const FieldManager &manager)
{
    const FieldMetaInformation &field = manager.field();
    QStringList parts{field.id(), WidgetLibraryPluginMetaInformation::fieldTypeToString(field.type())};
    parts.append(boundsText(field));
    if (field.defaultValue().isValid()) {
        parts.append(
            tr("default %1")
                .arg(WidgetLibraryPluginUtils::fieldValueToString(field.type(), field.defaultValue())));
    }
    parts.append(field.readOnly() ? tr("read-only") : QString());
    parts.append(field.isPrivate() ? tr("private") : QString());
    parts.append(field.tagOnDemand() ? tr("tag on demand") : QString());
    parts.removeAll(QString());
    return parts.join(QString::fromUtf8(" · "));
}

QString requirementText(const FieldManager &manager, const QStringList &fieldIds)
{
    const RequirementsOutcome &outcome = manager.requirementsOutcome();
    if (manager.requirements().isEmpty()) {
        return tr("always shown");
    }
    const QString reason = requirementsReason(outcome, fieldIds);
    const QString verdict = reason.isEmpty() ? tr("holds") : reason;
    return tr("requires %1: %2").arg(manager.requirements(), verdict);
}

QString storedText(const FieldManager &manager, const FieldWriter &writer)
{
    QString stored;
    QDebug(&stored).nospace() << manager.value();
    QStringList parts{stored};
    const QString text =
        WidgetLibraryPluginUtils::fieldValueToString(manager.field().type(), manager.value());
    if (!text.isEmpty()) {
        parts.append(tr("text form %1").arg(text));
    }
    if (!writer.who.isEmpty()) {
        parts.append(tr("%1 %2").arg(writer.who, writer.time.toString(QStringLiteral("HH:mm:ss.zzz"))));
    }
    return parts.join(QString::fromUtf8(" · "));
}

} // namespace

FieldDetails::FieldDetails(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("fieldsDetails"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(1);
    for (ElidedLabel *&line : m_lines) {
        line = new ElidedLabel;
        line->setSmall();
        layout->addWidget(line);
    }
    clear();
}

void FieldDetails::setLine(int line, const QString &text)
{
    m_lines[line]->showText(text);
}

void FieldDetails::showField(const FieldManager *manager, const FieldWriter &writer,
                             const QStringList &fieldIds)
{
    setEnabled(true);
    setLine(0, declarationText(*manager));
    setLine(1, requirementText(*manager, fieldIds));
    setLine(2, storedText(*manager, writer));
}

void FieldDetails::clear()
{
    setEnabled(false);
    setLine(0, tr("Choose a row to see its declaration,"));
    setLine(1, tr("when it is shown, and what it holds."));
    setLine(2, QString());
}

} // namespace DEV
} // namespace KORA
