// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;

namespace KORA {
namespace INTERNAL {

/// The codes that readers of metadata return.
enum MetaDataError : int {
    // Of PluginUtils; the texts stand in pluginutils.cpp.
    MetaDataNoError = 0,
    MetaDataGenericError = 1, ///< for callers; no reader returns it
    MetaDataNotPresent = 2,
    MetaDataNotValid = 3,
    MetaDataNameNotPresent = 4,
    MetaDataNameNotValid = 5,
    MetaDataIdNotPresent = 6,
    MetaDataIdNotValid = 7,
    MetaDataAuthorNotPresent = 8,
    MetaDataAuthorNotValid = 9,
    MetaDataVersionNotPresent = 10,
    MetaDataVersionNotValid = 11,
    MetaDataCopyrightNotValid = 12,
    MetaDataDescriptionNotValid = 13,
    MetaDataLicenseNotValid = 14,
    MetaDataDefaultLanguageNotValid = 15,
    MetaDataTranslationNotValid = 16,
    MetaDataTranslationFile = 17,

    // Of WidgetLibraryPluginUtils; the texts stand in widgetlibrarypluginutils.cpp.
    WidgetsNotValid = 10000,
    WidgetIdNotPresent = 10001,
    WidgetIdNotValid = 10002,
    WidgetDisplayNotValid = 10003,
    WidgetDescriptionNotValid = 10004,
    WidgetVersionNotPresent = 10005,
    WidgetVersionNotValid = 10006,
    WidgetDefaultSizeNotValid = 10007,
    WidgetGalleryGroupNameNotValid = 10008,
    WidgetShowInPageGalleryNotValid = 10009,
    WidgetShowInProjectGalleryNotValid = 10010,
    WidgetReceiveAlarmsEventsNotValid = 10011,
    FieldsNotValid = 10012,
    FieldIdNotPresent = 10013,
    FieldIdNotValid = 10014,
    FieldDisplayNotPresent = 10015,
    FieldDisplayNotValid = 10016,
    FieldDisplayFontFamilyNotPresent = 10017,
    FieldDisplayFontFamilyNotValid = 10018,
    FieldDisplayFontSizeNotPresent = 10019,
    FieldDisplayFontSizeNotValid = 10020,
    FieldDisplayFontBoldNotPresent = 10021,
    FieldDisplayFontBoldNotValid = 10022,
    FieldDisplayFontStyleNotPresent = 10023,
    FieldDisplayFontStyleNotValid = 10024,
    FieldDisplayFontUnderlineNotPresent = 10025,
    FieldDisplayFontUnderlineNotValid = 10026,
    FieldDescriptionNotValid = 10027,
    FieldTypeNotPresent = 10028,
    FieldTypeNotValid = 10029,
    FieldTagCanBeAttachedNotValid = 10030,
    FieldDefaultValueNotValid = 10031,
    FieldReadOnlyNotValid = 10032,
    FieldGroupNotValid = 10033,
    FieldMinimumNotValid = 10034,
    FieldMaximumNotValid = 10035,
    FieldOptionsNotValid = 10036,
    FieldPrivateNotValid = 10037,
    FieldRequirementsNotValid = 10038,
    FieldDefaultFontNotValid = 10039,
    FieldMultiLanguageNotValid = 10040,
    FieldTagAcceptedTypesNotValid = 10041,
    FieldTagOnDemandNotValid = 10042
};

/// Logs at critical level under "METADATA"; the source is the plugin's id, or empty while it is not known.
void logMetaDataError(const QString &pluginId, const QString &message);

} // namespace INTERNAL
} // namespace KORA
