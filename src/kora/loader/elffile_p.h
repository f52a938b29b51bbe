// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace KORA {
namespace INTERNAL {

/// What the headers of an ELF file say, for any processor and either byte order. Every offset is checked against
/// the file's size: the file may be broken or hostile.
class ElfFile
{
public:
    enum class State {
        NotElf,    ///< does not begin as an ELF file does
        Truncated, ///< what the headers announce lies behind the end of the file
        Fine
    };
    enum Machine : int { MachineX86 = 3, MachineArm = 40, MachineX86_64 = 62, MachineAArch64 = 183 };

    /// Refers to @p content, which outlives the object.
    explicit ElfFile(const QByteArray &content);

    State state() const { return m_state; }
    /// Whether the file is long enough to say what it is for: the next four functions; a truncated one may be.
    bool hasTarget() const { return m_hasTarget; }
    /// 32 or 64
    int bits() const { return m_is64 ? 64 : 32; }
    bool isBigEndian() const { return m_isBigEndian; }
    int machine() const { return m_machine; }
    bool isSharedObject() const;
    /// False if a segment that is loaded lies beyond the end of the file.
    bool hasWholeSegments() const;
    /// Whether every section has its name in the table of names, which ends as a text does.
    bool hasWholeNames() const { return m_hasWholeNames; }
    /// The content of the first section of that name; null if there is none. It may be whole in a truncated file.
    QByteArray section(const char *name) const;
    /// The libraries that the dynamic loader needs for this one.
    QStringList neededLibraries() const;

    /// "AArch64"; the number for a processor that is not in the table.
    static QString machineName(int machine);

private:
    struct Section
    {
        quint32 name = 0;
        quint32 type = 0;
        quint64 offset = 0;
        quint64 size = 0;
        quint32 link = 0;
    };

    void readHeaders();
    bool readSections();
    bool readNames(int index);
    bool hasSegmentTable() const;
    Section readSection(quint64 offset) const;
    bool isInFile(const Section &section) const;
    QByteArray contentOf(const Section &section) const;
    bool contains(quint64 offset, quint64 size) const;
    quint64 number(quint64 offset, int size) const;
    /// A number that is 4 bytes long in a 32-bit file and 8 in a 64-bit one.
    quint64 word(quint64 offset) const { return number(offset, m_is64 ? 8 : 4); }
    quint64 choose(quint64 offset32, quint64 offset64) const { return m_is64 ? offset64 : offset32; }

    const QByteArray &m_content;
    State m_state = State::NotElf;
    bool m_hasTarget = false;
    bool m_is64 = false;
    bool m_isBigEndian = false;
    bool m_hasWholeNames = false;
    int m_machine = 0;
    int m_type = 0;
    QVector<Section> m_sections;
    QByteArray m_names;
};

} // namespace INTERNAL
} // namespace KORA
