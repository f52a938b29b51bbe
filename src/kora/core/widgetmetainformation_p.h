// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSharedData>

#include <kora/core/widgetmetainformation.h>

namespace KORA {
namespace INTERNAL {

// The records that a reader of metadata fills; see the accessors of the public classes for their meaning.

class FieldMetaInformationPrivate : public QSharedData
{
public:
    bool isValid = false;
    QString id;
    TranslationStringType display;
    TranslationStringType description;
    FieldType type = FieldTypeUndefined;
    bool tagCanBeAttached = false;
    QVariant defaultValue;
    bool readOnly = false;
    TranslationStringType group;
    bool isPrivate = false;
    QString requirements;
    QVariant minimum;
    QVariant maximum;
    QFont defaultFont;
    bool defaultFontSpecified = false;
    bool isMultiLanguage = false;
    QVector<OptionType> options;
    TranslationStringType displayFontFamily;
    TranslationStringType displayFontSize;
    TranslationStringType displayFontBold;
    TranslationStringType displayFontStyle;
    TranslationStringType displayFontUnderline;
    QVector<TagType> tagAcceptedTypes;
    bool tagOnDemand = false;
    QMap<int, TranslationStringType> defaultTexts;
};

class WidgetMetaInformationPrivate : public QSharedData
{
public:
    bool isValid = false;
    QString id;
    VersionType version;
    TranslationStringType display;
    TranslationStringType description;
    QSizeF defaultSize{-1, -1};
    TranslationStringType galleryGroupName;
    bool showInPageGallery = false;
    bool showInProjectGallery = false;
    bool receiveAlarmsEvents = false;
    QMap<QString, FieldMetaInformation> fields;
};

} // namespace INTERNAL
} // namespace KORA
