// SPDX-License-Identifier: Apache-2.0
#include "libraryfile.h"

#include <QtCore/QVector>
#include <QtCore/QtEndian>

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

} // namespace

QByteArray libraryFile(int machine, const QByteArray &metaData)
{
    const auto names = QByteArray::fromRawData("\0.shstrtab\0.qtmetadata\0.dynamic\0", 32);
    // One entry that needs the library whose name is at 24 of the names, and the end.
    QByteArray dynamic(32, '\0');
    put<quint64>(dynamic, 0, 1);
    put<quint64>(dynamic, 8, 24);
    // The second section of its kind counts for nothing: many that overlap would make millions of names.
    // The metadata is last: Qt reads on behind its section.
    const QVector<Section> sections{
        {0, 0, 0, {}}, {1, 3, 0, names}, {23, 6, 1, dynamic}, {23, 6, 1, dynamic}, {11, 1, 0, metaData}};
    QByteArray file("\x7f"
                    "ELF\2\1\1",
                    7);
    file.append(QByteArray(headerSize + sectionSize * sections.size() - file.size(), '\0'));
    put<quint16>(file, 16, 3);
    put<quint16>(file, 18, static_cast<quint16>(machine));
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
