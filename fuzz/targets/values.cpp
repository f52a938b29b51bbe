// SPDX-License-Identifier: Apache-2.0
//
// The text forms of field values, sizes and fonts, and the bounds. Byte 0 chooses the type.
#include "../fuzztarget.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QColor>

#include <cmath>

#include <kora/core/widgetlibrarypluginutils.h>

using namespace KORA::INTERNAL;

namespace {

using Utils = WidgetLibraryPluginUtils;

void checkTextForm(int type, const QString &text)
{
    const QVariant value = Utils::fieldValueFromString(type, text);
    const QString written = Utils::fieldValueToString(type, value);
    const QVariant read = Utils::fieldValueFromString(type, written);
    expect(Utils::fieldValueToString(type, read) == written, "a written text reads as another value");
    const bool isWhole = type == FieldTypeInteger || type == FieldTypeOption || type == FieldTypeBool;
    expect(!isWhole || read == value, "a value does not survive its text");
    QVariant converted = value;
    const FieldInfo info(true, true, false, static_cast<FieldType>(type), 0);
    const bool isConverted = info.convertToFieldType(converted);
    const bool isNumber = type == FieldTypeInteger || type == FieldTypeDouble || type == FieldTypeBool;
    expect(!isNumber || (isConverted && converted == value) || value != value, "a value of its own type");
}

void checkSize(const QString &text)
{
    QSizeF size;
    const bool isSize = Utils::convertStringTo(text, size);
    const bool isGood = std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() >= 0;
    expect(isSize ? isGood : size == QSizeF(-1, -1), "a size");
}

void checkFont(const QString &text)
{
    bool ok = false;
    Utils::fieldFontFromString(text, &ok);
    const QFont font = Utils::fieldFontFromString(text, nullptr);
    const QFont again = Utils::fieldFontFromString(Utils::fieldFontToString(font), nullptr);
    expect(Utils::fieldFontToString(again) == Utils::fieldFontToString(font),
           "a font does not survive its text");
}

double numberOf(const QVariant &value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    // A text beyond the range of a double saturates, though Qt does not call it converted.
    return (ok || std::isinf(number)) && !std::isnan(number) ? number : 0;
}

// The three elements of a JSON array are value, minimum and maximum; strings and null too.
void checkBounds(const QJsonArray &array)
{
    const QVariant minimum = array.at(1).isNull() ? QVariant() : array.at(1).toVariant();
    const QVariant maximum = array.at(2).isNull() ? QVariant() : array.at(2).toVariant();
    QVariant value = array.at(0).toVariant();
    double expected = numberOf(value);
    expected = minimum.isValid() ? std::fmax(expected, numberOf(minimum)) : expected;
    expected = maximum.isValid() ? std::fmin(expected, numberOf(maximum)) : expected;
    QVariant whole = value;
    koraBound<double>(minimum, value, maximum);
    expect(value.userType() == QMetaType::Double && value.toDouble() == expected, "a bounded double");
    koraBound<int>(minimum, whole, maximum);
    expect(whole.userType() == QMetaType::Int, "a bounded integer is none");
}

} // namespace

KORA_FUZZ_TARGET(values)
{
    FuzzBytes bytes(input);
    const int type = bytes.take() % 14;
    const QByteArray rest = bytes.takeRest();
    const QString text = QString::fromUtf8(rest);
    checkTextForm(type, text);
    checkSize(text);
    checkFont(text);
    checkBounds(QJsonDocument::fromJson(rest).array());
    const QVariant any = QJsonDocument::fromJson(rest).toVariant();
    for (int other = 0; other < 13; ++other) {
        QVariant value = any;
        FieldInfo(true, true, false, static_cast<FieldType>(other), 0).convertToFieldType(value);
        Utils::fieldValueToString(other, any);
    }
}
