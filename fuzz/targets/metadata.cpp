// SPDX-License-Identifier: Apache-2.0
//
// A plugin's JSON metadata: read by the parser, then its documents are written and read again.
#include "../fuzztarget.h"

#include <QtCore/QRegularExpression>

#include <kora/core/widgetlibrarypluginutils.h>

using namespace KORA::INTERNAL;

namespace {

bool isIdentifier(const QString &text)
{
    static const QRegularExpression expression(QStringLiteral("\\A[a-zA-Z0-9_]*\\z"));
    return expression.match(text).hasMatch();
}

void checkField(const FieldMetaInformation &field)
{
    const auto type = field.type();
    expect(isIdentifier(field.id()), "a field's id was accepted");
    expect(type > FieldTypeUndefined && type <= FieldTypeTrend, "a field has no type");
    expect(type != FieldTypeOption || !field.options().isEmpty(), "an option field without options");
    const bool isBound = type == FieldTypeTag || type == FieldTypeTrend;
    expect(!isBound || !field.defaultValue().isValid(), "a tag or trend has a default value");
    const auto types = field.tagAcceptedTypes();
    expect(std::is_sorted(types.begin(), types.end()), "accepted tag types are not sorted");
}

} // namespace

KORA_FUZZ_TARGET(metadata)
{
    const QJsonObject json = jsonObject(input);
    WidgetLibraryPluginMetaInformation info;
    const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(json, info);
    expect(WidgetLibraryPluginUtils::errorToString(code) != QStringLiteral("error code undefined"),
           "a code without a text");
    if (code != 0) {
        expect(info.widgets().isEmpty(), "widgets of refused metadata");
        return;
    }
    expect(info.version().isValid(), "a plugin without a version");
    for (const auto &widget : info.widgets()) {
        expect(isIdentifier(widget.id()) && !widget.id().isEmpty(), "a widget's id was accepted");
        expect(widget.version().isValid(), "a widget without a version");
        for (const auto &field : widget.fields()) {
            checkField(field);
        }
        expect(widget.fieldInfo().size() >= widget.fields().size(), "a field without its information");
    }
    expect(info.widgetsLatestVersion().size() <= info.widgets().size(), "more latest widgets than widgets");
    for (const QString &language : {info.defaultLanguage(), QStringLiteral("it-IT")}) {
        for (const auto &text : info.translatableStrings(language)) {
            expect(!text.get(language, false).trimmed().isEmpty(), "an empty text to translate");
        }
    }
}
