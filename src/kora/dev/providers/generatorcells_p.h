// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <kora/dev/providers/generator.h>
#include <kora/dev/providers/providertable.h>

namespace KORA {
namespace DEV {

/// The columns of a generator in the tables of tags and trends: the last ones of both, in this order.
class GeneratorCells
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::GeneratorCells)

public:
    enum Cell : int { Kind, Period, Minimum, Maximum, Seed, File };

    static QVector<ProviderColumn> columns();
    /// Whether the cell means something for that kind of generator.
    static bool isUsed(const Generator &generator, int cell);
    static QStringList kindTexts();
    static QVariant displayed(const Generator &generator, int cell);
    static QVariant editable(const Generator &generator, int cell);
    /// False if the text is no number.
    static bool set(Generator &generator, int cell, const QVariant &value);
};

} // namespace DEV
} // namespace KORA
