// SPDX-License-Identifier: Apache-2.0
//
// A library file, well formed or not. Inputs that begin with "ELF" alone are patches of a small good file: two bytes of
// offset and one of value each.
#include "../fuzztarget.h"
#include "../libraryfile.h"

#include <kora/loader/elffile_p.h>

using KORA::INTERNAL::ElfFile;

namespace {

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
    static const QByteArray good = libraryFile(ElfFile::MachineAArch64, "QTMETADATA !");
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
