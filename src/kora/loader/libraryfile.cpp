// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/libraryfile_p.h>

#include <QtCore/QCborValue>
#include <QtCore/QFile>

#include <limits>
#include <string_view>

#include <kora/loader/cborscanner_p.h>
#include <kora/loader/elffile_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const char magic[] = "QTMETADATA ";
constexpr int formOffset = 11; // behind the magic: '!' for CBOR
constexpr int versionOffset = 12;
constexpr int headerSize = 16; // magic, form, its version, Qt's version, flags

// Where the magic is twice, even in a text of the metadata, the last one counts.
int lastMagic(const QByteArray &section)
{
    // QByteArray::lastIndexOf() takes as long as all the rest here.
    const std::string_view text(section.constData(), static_cast<size_t>(section.size()));
    size_t last = std::string_view::npos;
    for (size_t at = text.find(magic); at != std::string_view::npos; at = text.find(magic, at + 1)) {
        last = at;
    }
    return last == std::string_view::npos ? -1 : static_cast<int>(last);
}

// The section from Qt's magic on; null if there is none that plugins of this Qt have.
QByteArray fromMagic(const QByteArray &section)
{
    const int start = lastMagic(section);
    const QByteArray data = start < 0 ? QByteArray() : section.mid(start);
    const bool isKnown =
        data.size() >= headerSize && data.at(formOffset) == '!' && data.at(versionOffset) == 0;
    return isKnown ? data : QByteArray();
}

} // namespace

MetaDataSection readMetaDataSection(const QByteArray &section)
{
    const QByteArray data = fromMagic(section);
    const QByteArray cbor = data.mid(headerSize);
    // Scanned first: Qt takes the memory that a text announces before it sees that the text is shorter.
    if (!beginsWithCborMap(cbor)) {
        return {};
    }
    const auto byte = [&data](int offset) { return static_cast<unsigned char>(data.at(offset)); };
    return {true, byte(versionOffset + 1), byte(versionOffset + 2), (byte(versionOffset + 3) & 1) != 0,
            QCborValue::fromCbor(cbor).toMap()};
}

LibraryFile::LibraryFile(const QString &path)
{
    QFile file(path);
    const qint64 size = file.open(QIODevice::ReadOnly) ? file.size() : 0;
    if (size <= 0 || size > std::numeric_limits<int>::max()) {
        return;
    }
    const uchar *bytes = file.map(0, size);
    if (!bytes) {
        return;
    }
    const QByteArray content =
        QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    const ElfFile elf(content);
    m_hasMetaData =
        elf.hasWholeNames() && beginsWithCborMap(fromMagic(elf.section(".qtmetadata")).mid(headerSize));
    m_isWhole = elf.hasWholeSegments();
}

} // namespace INTERNAL
} // namespace KORA
