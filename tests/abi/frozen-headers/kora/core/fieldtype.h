// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace KORA {
namespace INTERNAL {

/// The kind of value that a field holds. The numbers are stored and exchanged.
enum FieldType : int {
    FieldTypeUndefined = 0,
    FieldTypeString = 1,
    FieldTypeStringList = 2,
    FieldTypeStringMap = 3, ///< index to text, QMap<int, QString>
    FieldTypeInteger = 4,
    FieldTypeDouble = 5,
    FieldTypeBool = 6,
    FieldTypeOption = 7, ///< the index of the chosen option
    FieldTypeColor = 8,
    FieldTypeFont = 9,
    FieldTypeImage = 10, ///< a reference to an image, as text
    FieldTypeTag = 11,   ///< bound to a data tag
    FieldTypeTrend = 12  ///< bound to a trend
};

/// Types of data tag that a field may be attached to.
enum TagType : int {
    TagTypeNone = 0,
    TagTypeBool = 1,
    TagTypeByte = 2,
    TagTypeShort = 3,
    TagTypeInt = 4,
    TagTypeUByte = 5,
    TagTypeUShort = 6,
    TagTypeUInt = 7,
    TagTypeUInt64 = 8,
    TagTypeInt64 = 9,
    TagTypeFloat = 10,
    TagTypeDouble = 11,
    TagTypeString = 12,
    TagTypeArrayBool = 13,
    TagTypeArrayByte = 14,
    TagTypeArrayShort = 15,
    TagTypeArrayInt = 16,
    TagTypeArrayUByte = 17,
    TagTypeArrayUShort = 18,
    TagTypeArrayUInt = 19,
    TagTypeArrayUInt64 = 20,
    TagTypeArrayInt64 = 21,
    TagTypeArrayFloat = 22,
    TagTypeArrayDouble = 23
};

} // namespace INTERNAL
} // namespace KORA
