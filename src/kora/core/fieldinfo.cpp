// SPDX-License-Identifier: Apache-2.0
#include <kora/core/fieldinfo.h>

#include <QtCore/QVariant>

#include <kora/core/fieldtypes_p.h>

namespace KORA {
namespace INTERNAL {

FieldInfo::FieldInfo(bool setFieldValueIsEnabled, bool getFieldValueIsEnabled, bool isAdditionalInformation,
                     FieldType fieldType, int metaType)
    : m_setFieldValueIsEnabled(setFieldValueIsEnabled)
    , m_getFieldValueIsEnabled(getFieldValueIsEnabled)
    , m_isAdditionalInformation(isAdditionalInformation)
    , m_fieldType(fieldType)
    , m_metaType(metaType)
{}

bool FieldInfo::convertToFieldType(QVariant &value) const
{
    if (!m_isAdditionalInformation) {
        return fieldTypeTraits(m_fieldType).convert(value);
    }
    // A font, the one additional information there is, has checks of its own.
    return m_metaType == QMetaType::QFont ? fieldTypeTraits(FieldTypeFont).convert(value)
                                          : value.convert(m_metaType);
}

} // namespace INTERNAL
} // namespace KORA
