// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldsources.h>

#include <QtCore/QCoreApplication>

#include <algorithm>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/trendtable.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

FieldSource tagSource(const TagTable &tags, const QString &name, const FieldMetaInformation &field)
{
    const TagType type = tags.definition(name).type;
    FieldSource source;
    source.name = name;
    source.kind = WidgetLibraryPluginMetaInformation::tagTypeToString(type);
    if (!tags.accepts(name, field.tagAcceptedTypes())) {
        source.problem =
            QCoreApplication::translate("KORA::DEV::FieldSource", "%1 is not accepted").arg(source.kind);
    }
    return source;
}

} // namespace

QVector<FieldSource> fieldSources(Providers *providers, const FieldMetaInformation &field)
{
    QVector<FieldSource> sources;
    if (!providers) {
        return sources;
    }
    const bool isTrend = field.type() == FieldTypeTrend;
    const QStringList names = isTrend ? providers->trends()->names() : providers->tags()->names();
    for (const QString &name : names) {
        sources.append(
            isTrend
                ? FieldSource{name, QCoreApplication::translate("KORA::DEV::FieldSource", "trend"), QString()}
                : tagSource(*providers->tags(), name, field));
    }
    std::stable_partition(sources.begin(), sources.end(),
                          [](const FieldSource &source) { return source.problem.isEmpty(); });
    return sources;
}

bool canFollowSource(const FieldMetaInformation &field)
{
    return field.tagCanBeAttached() || field.type() == FieldTypeTag || field.type() == FieldTypeTrend;
}

} // namespace DEV
} // namespace KORA
