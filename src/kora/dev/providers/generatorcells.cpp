// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/generatorcells_p.h>

#include <kora/dev/providers/tagvalues.h>

namespace KORA {
namespace DEV {

QVector<ProviderColumn> GeneratorCells::columns()
{
    return {{tr("Generator"), tr("How the value moves with the clock"), ProviderColumn::ChoiceEditor},
            {tr("Period"), tr("Length of one turn of the generator"), ProviderColumn::WholeNumberEditor},
            {tr("Minimum"), tr("The least value that is generated"), ProviderColumn::TextEditor},
            {tr("Maximum"), tr("The greatest value that is generated"), ProviderColumn::TextEditor},
            {tr("Seed"), tr("Another seed gives another random walk or other spikes"),
             ProviderColumn::TextEditor},
            {tr("Replay file"), tr("Lines of time_ms,value that are played in a loop"),
             ProviderColumn::FileEditor}};
}

bool GeneratorCells::isUsed(const Generator &generator, int cell)
{
    switch (cell) {
    case Period:
    case Minimum:
    case Maximum:
        return generator.kind != Generator::Constant && generator.kind != Generator::CsvReplay;
    case Seed:
        return generator.kind == Generator::RandomWalk || generator.kind == Generator::Spikes;
    case File:
        return generator.kind == Generator::CsvReplay;
    default:
        return true;
    }
}

QStringList GeneratorCells::kindTexts()
{
    QStringList texts;
    for (int kind = Generator::Constant; kind < Generator::KindCount; ++kind) {
        texts.append(Generator::kindText(static_cast<Generator::Kind>(kind)));
    }
    return texts;
}

QVariant GeneratorCells::displayed(const Generator &generator, int cell)
{
    if (!isUsed(generator, cell)) {
        return QString();
    }
    switch (cell) {
    case Kind:
        return Generator::kindText(generator.kind);
    case Period:
        return tr("%1 ms").arg(generator.period);
    default:
        return editable(generator, cell);
    }
}

QVariant GeneratorCells::editable(const Generator &generator, int cell)
{
    switch (cell) {
    case Kind:
        return static_cast<int>(generator.kind);
    case Period:
        return generator.period;
    case Minimum:
        return TagValues::text(generator.minimum);
    case Maximum:
        return TagValues::text(generator.maximum);
    case Seed:
        return QString::number(generator.seed);
    case File:
        return generator.csvFile;
    default:
        return QVariant();
    }
}

bool GeneratorCells::set(Generator &generator, int cell, const QVariant &value)
{
    const QString text = value.toString().trimmed();
    bool isGood = true;
    switch (cell) {
    case Kind:
        generator.kind = static_cast<Generator::Kind>(value.toInt());
        break;
    case Period:
        generator.period = value.toInt();
        break;
    case Minimum:
        generator.minimum = text.toDouble(&isGood);
        break;
    case Maximum:
        generator.maximum = text.toDouble(&isGood);
        break;
    case Seed:
        generator.seed = text.toUInt(&isGood);
        break;
    default:
        generator.csvFile = text;
    }
    return isGood;
}

} // namespace DEV
} // namespace KORA
