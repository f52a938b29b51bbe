// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/elffile_p.h>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

namespace {

constexpr int identSize = 16;
constexpr int classOffset = 4;
constexpr int dataOffset = 5;
constexpr char class64 = 2;
constexpr char dataBigEndian = 2;

constexpr int typeSharedObject = 3;
constexpr quint32 sectionNoBits = 8; // takes no room in the file
constexpr quint32 sectionDynamic = 6;
constexpr quint32 segmentLoad = 1;
constexpr quint64 dynamicNeeded = 1;

} // namespace

ElfFile::ElfFile(const QByteArray &content)
    : m_content(content)
{
    if (!content.startsWith("\x7f"
                            "ELF")) {
        return;
    }
    m_state = State::Truncated;
    if (content.size() < identSize + 4) {
        return;
    }
    m_is64 = content.at(classOffset) == class64;
    m_isBigEndian = content.at(dataOffset) == dataBigEndian;
    m_type = static_cast<int>(number(16, 2));
    m_machine = static_cast<int>(number(18, 2));
    m_hasTarget = true;
    if (contains(0, choose(52, 64))) {
        readHeaders();
    }
}

bool ElfFile::isSharedObject() const
{
    return m_type == typeSharedObject;
}

void ElfFile::readHeaders()
{
    const bool isWhole = readSections() && hasSegmentTable() && hasWholeSegments();
    m_hasWholeNames = readNames(static_cast<int>(number(choose(50, 62), 2)));
    if (isWhole) {
        m_state = State::Fine;
    }
}

bool ElfFile::hasSegmentTable() const
{
    const quint64 entrySize = number(choose(42, 54), 2);
    const quint64 count = number(choose(44, 56), 2);
    return count == 0 || (entrySize >= choose(32, 56) && contains(word(choose(28, 32)), entrySize * count));
}

bool ElfFile::hasWholeSegments() const
{
    const quint64 table = word(choose(28, 32));
    const quint64 entrySize = number(choose(42, 54), 2);
    // Entries of another size are no segments; the system's loader refuses them.
    const bool areSegments = hasSegmentTable() && entrySize == choose(32, 56);
    const quint64 count = areSegments ? number(choose(44, 56), 2) : 0;
    for (quint64 i = 0; i < count; ++i) {
        const quint64 entry = table + i * entrySize;
        const bool isLoaded = number(entry, 4) == segmentLoad;
        const quint64 size = word(entry + choose(16, 32)); // in the file; linkers put empty ones anywhere
        if (isLoaded && size > 0 && !contains(word(entry + choose(4, 8)), size)) {
            return false;
        }
    }
    return true;
}

// False if the table or a section lies beyond the end of the file.
bool ElfFile::readSections()
{
    const quint64 table = word(choose(32, 40));
    const quint64 entrySize = number(choose(46, 58), 2);
    const quint64 count = number(choose(48, 60), 2);
    if (count > 0 && (entrySize < choose(40, 64) || !contains(table, entrySize * count))) {
        return false;
    }
    m_sections.reserve(static_cast<int>(count));
    for (quint64 i = 0; i < count; ++i) {
        m_sections.append(readSection(table + i * entrySize));
    }
    return std::all_of(m_sections.cbegin(), m_sections.cend(),
                       [this](const Section &section) { return isInFile(section); });
}

bool ElfFile::readNames(int index)
{
    if (index >= m_sections.size()) {
        return false;
    }
    m_names = contentOf(m_sections.at(index));
    const auto size = static_cast<quint32>(m_names.size());
    return m_names.endsWith('\0')
           && std::all_of(m_sections.cbegin(), m_sections.cend(),
                          [size](const Section &section) { return section.name < size; });
}

bool ElfFile::isInFile(const Section &section) const
{
    return section.type == sectionNoBits || contains(section.offset, section.size);
}

ElfFile::Section ElfFile::readSection(quint64 offset) const
{
    Section section;
    section.name = static_cast<quint32>(number(offset, 4));
    section.type = static_cast<quint32>(number(offset + 4, 4));
    section.offset = word(offset + choose(16, 24));
    section.size = word(offset + choose(20, 32));
    section.link = static_cast<quint32>(number(offset + choose(24, 40), 4));
    return section;
}

QByteArray ElfFile::contentOf(const Section &section) const
{
    return section.type == sectionNoBits || !isInFile(section)
               ? QByteArray()
               : m_content.mid(static_cast<int>(section.offset), static_cast<int>(section.size));
}

QByteArray ElfFile::section(const char *name) const
{
    for (const Section &section : m_sections) {
        const auto nameOffset = static_cast<int>(qMin(section.name, static_cast<quint32>(m_names.size())));
        if (qstrcmp(m_names.constData() + nameOffset, name) == 0) {
            return contentOf(section);
        }
    }
    return {};
}

QStringList ElfFile::neededLibraries() const
{
    for (const Section &section : m_sections) {
        if (section.type != sectionDynamic || !isInFile(section)
            || section.link >= static_cast<quint32>(m_sections.size())) {
            continue;
        }
        const QByteArray names = contentOf(m_sections.at(static_cast<int>(section.link)));
        const quint64 entrySize = choose(8, 16);
        QStringList libraries;
        for (quint64 at = section.offset; at + entrySize <= section.offset + section.size; at += entrySize) {
            const quint64 name = word(at + entrySize / 2);
            if (word(at) == dynamicNeeded && name < static_cast<quint64>(names.size())) {
                libraries.append(QString::fromUtf8(names.constData() + name));
            }
        }
        return libraries; // one section in a good file; time and names of many that overlap grow with the square
    }
    return {};
}

QString ElfFile::machineName(int machine)
{
    switch (machine) {
    case MachineX86:
        return QStringLiteral("x86");
    case MachineArm:
        return QStringLiteral("ARM");
    case MachineX86_64:
        return QStringLiteral("x86-64");
    case MachineAArch64:
        return QStringLiteral("AArch64");
    default:
        return QStringLiteral("processor number %1").arg(machine);
    }
}

bool ElfFile::contains(quint64 offset, quint64 size) const
{
    const auto total = static_cast<quint64>(m_content.size());
    return size <= total && offset <= total - size;
}

quint64 ElfFile::number(quint64 offset, int size) const
{
    if (!contains(offset, static_cast<quint64>(size))) {
        return 0;
    }
    quint64 result = 0;
    for (int i = 0; i < size; ++i) {
        const int position = static_cast<int>(offset) + (m_isBigEndian ? i : size - 1 - i);
        result = result << 8 | static_cast<unsigned char>(m_content.at(position));
    }
    return result;
}

} // namespace INTERNAL
} // namespace KORA
