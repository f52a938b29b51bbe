// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCborMap>
#include <QtCore/QCborValue>
#include <QtCore/QJsonObject>

#include <elf.h>

/// The bytes of a good library of 64 bits, to be damaged at places that its headers tell.
class LibraryImage
{
public:
    explicit LibraryImage(const QByteArray &file)
        : bytes(file)
    {}

    Elf64_Ehdr &header() { return at<Elf64_Ehdr>(0); }
    Elf64_Shdr &section(int index)
    {
        return at<Elf64_Shdr>(header().e_shoff + static_cast<quint64>(index) * sizeof(Elf64_Shdr));
    }
    Elf64_Shdr &section(const char *name)
    {
        const quint64 names = section(header().e_shstrndx).sh_offset;
        int index = 0;
        while (qstrcmp(&at<char>(names + section(index).sh_name), name) != 0) {
            ++index;
            Q_ASSERT(index < header().e_shnum);
        }
        return section(index);
    }
    /// The first segment of that type, or the @p number th after it.
    Elf64_Phdr &segment(quint32 type, int number = 0)
    {
        quint64 offset = header().e_phoff;
        for (; at<Elf64_Phdr>(offset).p_type != type || number-- > 0; offset += sizeof(Elf64_Phdr)) {
            Q_ASSERT(offset < static_cast<quint64>(bytes.size()));
        }
        return at<Elf64_Phdr>(offset);
    }
    /// The first entry of that kind for the dynamic loader.
    Elf64_Dyn &dynamic(qint64 tag)
    {
        quint64 offset = section(".dynamic").sh_offset;
        while (at<Elf64_Dyn>(offset).d_tag != tag) {
            offset += sizeof(Elf64_Dyn);
        }
        return at<Elf64_Dyn>(offset);
    }
    /// The bytes of Qt's section, from its magic text.
    char *metaData() { return &at<char>(section(".qtmetadata").sh_offset); }

    void truncateAt(quint64 size) { bytes.truncate(static_cast<int>(size)); }
    /// Another content of Qt's section, at the end of the file.
    void replaceSection(const QByteArray &content)
    {
        section(".qtmetadata").sh_offset = static_cast<quint64>(bytes.size());
        section(".qtmetadata").sh_size = static_cast<quint64>(content.size());
        bytes.append(content);
    }
    /// A section that holds this behind Qt's header.
    void replaceCbor(const QByteArray &cbor) { replaceSection(QByteArray(metaData(), 16) + cbor); }
    void replaceMap(const QCborMap &map) { replaceCbor(QCborValue(map).toCbor()); }
    /// Another description of the plugin.
    void replaceDescription(const QCborValue &description)
    {
        replaceMap({{2, QStringLiteral("org.Vako.KORA.WidgetLibrary")},
                    {3, QStringLiteral("Good")},
                    {4, description}});
    }
    /// Another text of the same length everywhere.
    void replaceText(const QByteArray &text, const QByteArray &replacement)
    {
        Q_ASSERT(text.size() == replacement.size() && bytes.contains(text));
        bytes.replace(text, replacement);
    }
    /// What fixture_hostile is to do, and where.
    void setFault(const QByteArray &fault)
    {
        const int width = 26;
        replaceText("fault:" + QByteArray(width, ' '), "fault:" + fault.leftJustified(width));
    }

    QByteArray bytes;

private:
    template<typename T>
    T &at(quint64 offset)
    {
        Q_ASSERT(offset + sizeof(T) <= static_cast<quint64>(bytes.size()));
        return *reinterpret_cast<T *>(bytes.data() + offset);
    }
};
