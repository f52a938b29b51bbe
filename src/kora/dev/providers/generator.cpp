// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/generator.h>

#include <kora/dev/providers/jsonvalues_p.h>

#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtCore/QtMath>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KORA {
namespace DEV {

namespace {

struct KindRow
{
    const char *name;
    const char *text;
};

const KindRow kindRows[Generator::KindCount] = {
    {"constant", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Constant")},
    {"ramp", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Ramp")},
    {"sine", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Sine")},
    {"square", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Square")},
    {"toggle", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Toggle")},
    {"counter", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Counter")},
    {"randomWalk", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Random walk")},
    {"spikes", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "Spikes")},
    {"csvReplay", QT_TRANSLATE_NOOP("KORA::DEV::Generator", "CSV replay")},
};

// The mixing step of SplitMix64: the same number everywhere for the same place and seed.
quint64 mixed(quint64 number)
{
    number += 0x9e3779b97f4a7c15ULL;
    number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9ULL;
    number = (number ^ (number >> 27U)) * 0x94d049bb133111ebULL;
    return number ^ (number >> 31U);
}

/// From 0 to below 1.
double chance(quint64 seed, qint64 place)
{
    constexpr double Range = 9007199254740992.0; // 2^53, what a double holds
    return static_cast<double>(mixed(seed ^ mixed(static_cast<quint64>(place))) >> 11U) / Range;
}

double between(double from, double to, double share)
{
    return from + (to - from) * share;
}

// Random numbers at every period, every second, fourth ... one, joined by lines and added up: slow movements are
// large and quick ones small, as in a walk, but no step needs the one before it.
double walkShare(double periods, quint64 seed)
{
    constexpr int Octaves = 7;
    constexpr double Stretch = 1.8; // a sum of random numbers keeps to the middle
    double sum = 0;
    double weights = 0;
    for (int octave = 0; octave < Octaves; ++octave) {
        const double weight = std::pow(2.0, octave / 2.0);
        const double position = periods / std::pow(2.0, octave);
        const double left = std::floor(position);
        const auto place = static_cast<qint64>(left);
        const quint64 octaveSeed = mixed(seed + static_cast<quint64>(octave));
        sum += weight * between(chance(octaveSeed, place), chance(octaveSeed, place + 1), position - left);
        weights += weight;
    }
    return std::clamp(0.5 + (sum / weights - 0.5) * Stretch, 0.0, 1.0);
}

double spikeShare(qint64 period, double inPeriod, quint64 seed)
{
    constexpr double Width = 0.1;
    const double begin = chance(seed, period) * (1 - Width);
    return inPeriod >= begin && inPeriod < begin + Width ? 1 : 0;
}

double counted(const Generator &generator, qint64 periods)
{
    const double numbers = std::floor(generator.maximum - generator.minimum) + 1;
    const double count = std::fmod(static_cast<double>(periods), numbers);
    return generator.minimum + (count < 0 ? count + numbers : count);
}

} // namespace

bool Generator::operator==(const Generator &other) const
{
    const auto isSame = std::equal_to<double>();
    return kind == other.kind && period == other.period && isSame(minimum, other.minimum)
           && isSame(maximum, other.maximum) && csvFile == other.csvFile && seed == other.seed;
}

double Generator::valueAt(qint64 ms, quint32 clockSeed) const
{
    // Counted in whole numbers first: the same place in every period gives the same value to the last digit.
    const qint64 length = std::max(period, MinimumPeriod);
    const qint64 remainder = ms % length;
    const qint64 inPeriod = remainder < 0 ? remainder + length : remainder;
    const qint64 periods = (ms - inPeriod) / length;
    const double share = static_cast<double>(inPeriod) / static_cast<double>(length);
    const quint64 bothSeeds = (static_cast<quint64>(clockSeed) << 32U) | seed;
    switch (kind) {
    case Constant:
        return minimum;
    case Ramp:
        return between(minimum, maximum, share);
    case Sine:
        return between(minimum, maximum, 0.5 + 0.5 * std::sin(2 * M_PI * share));
    case Square:
        return share < 0.5 ? minimum : maximum;
    case Toggle:
        return periods % 2 == 0 ? minimum : maximum;
    case Counter:
        return counted(*this, periods);
    case RandomWalk:
        return between(minimum, maximum, walkShare(static_cast<double>(periods) + share, bothSeeds));
    case Spikes:
        return between(minimum, maximum, spikeShare(periods, share, bothSeeds));
    case CsvReplay:
        break;
    }
    return 0;
}

bool Generator::isUsable(QString *problem) const
{
    QString reason;
    if (kind < Constant || kind > CsvReplay) {
        reason = tr("there is no generator of kind %1").arg(static_cast<int>(kind));
    } else if (period < MinimumPeriod || period > MaximumPeriod) {
        reason =
            tr("the period %1 ms is not between %2 ms and %3 ms")
                .arg(QString::number(period), QString::number(MinimumPeriod), QString::number(MaximumPeriod));
    } else if (!std::isfinite(minimum) || !std::isfinite(maximum) || !std::isfinite(maximum - minimum)) {
        reason = tr("minimum and maximum have to be finite numbers");
    } else if (minimum > maximum) {
        reason = tr("the minimum %1 is above the maximum %2")
                     .arg(QString::number(minimum), QString::number(maximum));
    }
    if (problem && !reason.isEmpty()) {
        *problem = reason;
    }
    return reason.isEmpty();
}

QString Generator::kindName(Kind kind)
{
    return kind >= Constant && kind <= CsvReplay ? QLatin1String(kindRows[kind].name) : QString();
}

QString Generator::kindText(Kind kind)
{
    return kind >= Constant && kind <= CsvReplay ? tr(kindRows[kind].text) : QString();
}

QJsonObject Generator::toJson() const
{
    return {{QStringLiteral("kind"), kindName(kind)}, {QStringLiteral("period"), period},
            {QStringLiteral("minimum"), minimum},     {QStringLiteral("maximum"), maximum},
            {QStringLiteral("csvFile"), csvFile},     {QStringLiteral("seed"), static_cast<qint64>(seed)}};
}

bool Generator::fromJson(const QJsonObject &object, QString *problem)
{
    QStringList kindNames;
    for (const KindRow &row : kindRows) {
        kindNames.append(QLatin1String(row.name));
    }
    JsonEntries entries(object, problem);
    entries.allowOnly({"kind", "period", "minimum", "maximum", "csvFile", "seed"});
    Generator read;
    read.kind = static_cast<Kind>(entries.choice("kind", kindNames, read.kind));
    read.period = entries.integer("period", read.period);
    read.minimum = entries.number("minimum", read.minimum);
    read.maximum = entries.number("maximum", read.maximum);
    read.csvFile = entries.text("csvFile", read.csvFile);
    read.seed = entries.seed("seed", read.seed);
    if (!entries.isGood() || !read.isUsable(problem)) {
        return false;
    }
    *this = read;
    return true;
}

bool GeneratorSource::open(const Generator &generator, const QString &folder, QString *problem)
{
    m_generator = generator;
    m_replay = ReplayFile();
    if (generator.kind != Generator::CsvReplay) {
        return true;
    }
    const QString path = generator.csvFile.isEmpty() || folder.isEmpty()
                             ? generator.csvFile
                             : QDir(folder).absoluteFilePath(generator.csvFile);
    return m_replay.read(path, problem);
}

QVariant GeneratorSource::valueAt(qint64 ms, quint32 clockSeed) const
{
    if (m_generator.kind != Generator::CsvReplay) {
        return m_generator.valueAt(ms, clockSeed);
    }
    return m_replay.isEmpty() ? QVariant() : QVariant(m_replay.valueAt(ms));
}

double GeneratorSource::numberAt(qint64 ms, quint32 clockSeed) const
{
    bool isNumber = false;
    const double number = valueAt(ms, clockSeed).toDouble(&isNumber);
    return isNumber ? number : std::numeric_limits<double>::quiet_NaN();
}

} // namespace DEV
} // namespace KORA
