// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <kora/dev/providers/replayfile.h>
#include <kora/export.h>

class QJsonObject;

namespace KORA {
namespace DEV {

/// How a value moves with time. A value is a function of the moment and of the seeds alone: any moment can be asked,
/// also one before the clock's start, in any order.
struct KORA_EXPORT Generator
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::Generator)

public:
    enum Kind : int {
        Constant,   ///< a tag keeps what was written to it; a trend gives the minimum
        Ramp,       ///< from minimum to maximum within a period, then at once back
        Sine,       ///< one wave each period, starting in the middle and upwards
        Square,     ///< the minimum for half a period, then the maximum
        Toggle,     ///< changes between minimum and maximum after every period
        Counter,    ///< one more after every period; after the maximum comes the minimum
        RandomWalk, ///< wanders within the range; hardly changes within a tenth of a period
        Spikes,     ///< the minimum, and the maximum for a tenth of each period, at a moment left to chance
        CsvReplay   ///< the values of a ReplayFile
    };
    static constexpr int KindCount = CsvReplay + 1;
    static constexpr int MinimumPeriod = 100;
    static constexpr int MaximumPeriod = 24 * 60 * 60 * 1000;

    Kind kind = Constant;
    int period = 10000; ///< milliseconds
    double minimum = 0;
    double maximum = 100;
    QString csvFile; ///< a relative path starts at the folder of the scenario
    quint32 seed = 1;

    bool operator==(const Generator &other) const;
    bool operator!=(const Generator &other) const { return !(*this == other); }

    /// The value at that many milliseconds after the clock's start; 0 for CsvReplay.
    double valueAt(qint64 ms, quint32 clockSeed) const;
    /// False with the reason if a number is not one that can be used. The file is not looked at.
    bool isUsable(QString *problem) const;

    /// The name of a kind in scenarios, and for the reader.
    static QString kindName(Kind kind);
    static QString kindText(Kind kind);

    QJsonObject toJson() const;
    /// Absent entries keep the defaults. False with the reason, and nothing assigned.
    bool fromJson(const QJsonObject &object, QString *problem);
};

/// A generator with its replay file read.
class KORA_EXPORT GeneratorSource
{
public:
    /// False with the reason if the replay file cannot be used; the source has no value then.
    bool open(const Generator &generator, const QString &folder, QString *problem);
    const Generator &generator() const { return m_generator; }
    const ReplayFile &replay() const { return m_replay; }
    /// A double, for CsvReplay the text of the file; invalid without a file.
    QVariant valueAt(qint64 ms, quint32 clockSeed) const;
    /// The same as a number; not a number if it is none.
    double numberAt(qint64 ms, quint32 clockSeed) const;

private:
    Generator m_generator;
    ReplayFile m_replay;
};

} // namespace DEV
} // namespace KORA
