// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMetaType>

#include <kora/core/fieldtype.h>
#include <kora/export.h>

class QVariant;

namespace KORA {
namespace INTERNAL {

/// What a running widget must know of one of its fields: whether it may read and write it, and its type.
class KORA_EXPORT FieldInfo
{
public:
    /// A field of undefined type that can be neither read nor written.
    FieldInfo() = default;
    FieldInfo(bool setFieldValueIsEnabled, bool getFieldValueIsEnabled, bool isAdditionalInformation,
              FieldType fieldType, int metaType);

    bool setFieldValueIsEnabled() const { return m_setFieldValueIsEnabled; }
    bool getFieldValueIsEnabled() const { return m_getFieldValueIsEnabled; }
    /// Whether this is not a field itself but something told along with one, such as a text's font.
    bool isAdditionalInformation() const { return m_isAdditionalInformation; }
    FieldType fieldType() const { return m_fieldType; }
    /// The QMetaType of an additional information; QMetaType::UnknownType for a field.
    int metaType() const { return m_metaType; }

    /// Converts @p value in place to the kind of the field. False if it does not convert; a number outside the
    /// range of int does not convert to an integer or option.
    bool convertToFieldType(QVariant &value) const;

private:
    bool m_setFieldValueIsEnabled = false;
    bool m_getFieldValueIsEnabled = false;
    bool m_isAdditionalInformation = false;
    FieldType m_fieldType = FieldTypeUndefined;
    int m_metaType = QMetaType::UnknownType;
};

} // namespace INTERNAL
} // namespace KORA
