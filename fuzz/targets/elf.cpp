// SPDX-License-Identifier: Apache-2.0
//
// A library file, well formed or not. Inputs that begin with "ELF" alone are patches of a small good file: two bytes of
// offset and one of value each.
#include "../fuzztarget.h"

#include <QtCore/QtEndian>

#include <kora/loader/elffile_p.h>

using KORA::INTERNAL::ElfFile;

namespace {

constexpr int headerSize = 64;
constexpr int sectionSize = 64;

template<typename T>
void put(QByteArray &file, int offset, T value)
{
    qToLittleEndian(value, file.data() + offset);
}

struct Section
{
    quint32 name;
    quint32 type;
    quint32 link;
    QByteArray content;
};

// A shared object for AArch64 with names, metadata, and one needed library.
QByteArray goodFile()
{
    const auto names = QByteArray::fromRawData("\0.shstrtab\0.qtmetadata\0.dynamic\0", 32);
    // One entry that needs the library whose name is at 24 of the names, and the end.
    QByteArray dynamic(32, '\0');
    put<quint64>(dynamic, 0, 1);
    put<quint64>(dynamic, 8, 24);
    // The second section of its kind counts for nothing: many that overlap would make millions of names.
    const QVector<Section> sections{{0, 0, 0, {}},
                                    {1, 3, 0, names},
                                    {11, 1, 0, "QTMETADATA !"},
                                    {23, 6, 1, dynamic},
                                    {23, 6, 1, dynamic}};
    QByteArray file("\x7f"
                    "ELF\2\1\1",
                    7);
    file.append(QByteArray(headerSize + sectionSize * sections.size() - file.size(), '\0'));
    put<quint16>(file, 16, 3);
    put<quint16>(file, 18, 183);
    put<quint64>(file, 40, headerSize);
    put<quint16>(file, 58, sectionSize);
    put<quint16>(file, 60, static_cast<quint16>(sections.size()));
    put<quint16>(file, 62, 1);
    for (int i = 0; i < sections.size(); ++i) {
        const int at = headerSize + i * sectionSize;
        const Section &section = sections.at(i);
        put(file, at, section.name);
        put(file, at + 4, section.type);
        put<quint64>(file, at + 24, static_cast<quint64>(file.size()));
        put<quint64>(file, at + 32, static_cast<quint64>(section.content.size()));
        put(file, at + 40, section.link);
        file.append(section.content);
    }
    return file;
}

QByteArray patched(QByteArray file, const QByteArray &patches)
{
    for (int i = 0; i + 2 < patches.size(); i += 3) {
        const auto offset =
            static_cast<unsigned char>(patches.at(i)) << 8 | static_cast<unsigned char>(patches.at(i + 1));
        if (offset < file.size()) {
            file[offset] = patches.at(i + 2);
        } else {
            file.truncate(offset % (file.size() + 1));
        }
    }
    return file;
}

} // namespace

KORA_FUZZ_TARGET(elf)
{
    static const QByteArray good = goodFile();
    const bool isPatch = input.startsWith("ELF");
    const QByteArray content = isPatch ? patched(good, input.mid(3)) : input;
    const ElfFile file(content);
    if (content == good) {
        expect(file.state() == ElfFile::State::Fine && file.isSharedObject()
                   && file.machine() == ElfFile::MachineAArch64
                   && file.section(".qtmetadata") == "QTMETADATA !"
                   && file.neededLibraries() == QStringList(QStringLiteral("dynamic")),
               "the good file");
    }
    expect(content.startsWith("\x7f"
                              "ELF")
               == (file.state() != ElfFile::State::NotElf),
           "ELF or not");
    expect(file.bits() == 32 || file.bits() == 64, "bits");
    expect(content.contains(file.section(".qtmetadata")), "a section that the file does not hold");
    ElfFile::machineName(file.machine());
    const QStringList libraries = file.neededLibraries();
    expect(libraries.size() <= content.size(), "more needed libraries than bytes");
}
