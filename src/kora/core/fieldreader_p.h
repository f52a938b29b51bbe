// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <kora/core/jsonreading_p.h>
#include <kora/core/metadataerror_p.h>
#include <kora/core/widgetmetainformation_p.h>

namespace KORA {
namespace INTERNAL {

class TranslatableStringList;

/// Reads one element of a widget's "fields", key by key in a fixed order; each step returns 0 or its code.
///
/// Keys that do not apply to a field's type ("options" of a string, "minimum" of a color, ...) are ignored.
class FieldReader
{
public:
    /// @p texts give the translations and take up the field's texts; they outlive the reader.
    FieldReader(const QJsonObject &object, const QString &pluginId, TranslatableStringList &texts);

    int read();
    /// The field, once it is read.
    FieldMetaInformation takeField() { return FieldMetaInformation(std::move(m_field)); }

    /// The keys "multiLanguage" and "defaultFont" over what the record holds.
    static int readTextKeys(const QJsonObject &object, FieldMetaInformationPrivate &field);

private:
    enum Key {
        Id,
        Type,
        Display,
        Description,
        TagCanBeAttached,
        DefaultValue,
        ReadOnly,
        Group,
        Private,
        Requirements,
        TagAcceptedTypes,
        TagOnDemand,
        Minimum,
        Maximum,
        Options,
        MultiLanguage,
        DefaultFont,
        DisplayFontFamily,
        DisplayFontSize,
        DisplayFontBold,
        DisplayFontStyle,
        DisplayFontUnderline,
        KeyCount
    };
    using Members = JsonMembers<KeyCount>;

    static Members membersOf(const QJsonObject &object);
    QJsonValue value(Key key) const { return m_members.value(key); }

    int readId();
    int readType();
    int readDisplay();
    int readDescription();
    int readTagCanBeAttached();
    int readDefaultValue();
    int readReadOnly();
    int readGroup();
    int readPrivate();
    int readRequirements();
    int readTagAcceptedTypes();
    int readTagOnDemand();
    int readBounds();
    int readOptions();
    int readTypeKeys();
    int readFontKeys();
    int readDisplayFont();

    static int readTextKeys(const Members &members, FieldMetaInformationPrivate &field);
    static int readDefaultFont(const QJsonValue &value, FieldMetaInformationPrivate &field);
    int refuse(const char *message, int code) const;
    bool readTexts(const QJsonValue &value);
    void setDefaultFromTexts();
    bool readTextAt(int index, const QJsonValue &value);
    bool takeText(const QJsonValue &value, TranslationStringType &out);
    int readBound(const QJsonValue &value, QVariant &bound, int code) const;

    const Members m_members;
    const QString &m_pluginId;
    TranslatableStringList &m_texts;
    FieldMetaInformationPrivate m_field;
};

} // namespace INTERNAL
} // namespace KORA
