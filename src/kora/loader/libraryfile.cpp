// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/libraryfile_p.h>

#include <QtCore/QCborValue>
#include <QtCore/QFile>

#include <limits>

#include <kora/loader/elffile_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const char magic[] = "QTMETADATA ";
constexpr char cborMark = '!';    // behind the magic; Qt before 5.14 wrote another form
constexpr int markOffset = 11;    // of what follows the magic
constexpr int versionOffset = 12; // of the form: 0
constexpr int qtMajorOffset = 13;
constexpr int qtMinorOffset = 14;
constexpr int flagsOffset = 15;
constexpr int headerSize = 16;

} // namespace

MetaDataSection readMetaDataSection(const QByteArray &section)
{
    const int start = section.indexOf(magic);
    if (start < 0 || section.size() < start + headerSize) {
        return {};
    }
    const auto byte = [&](int offset) { return static_cast<unsigned char>(section.at(start + offset)); };
    if (byte(markOffset) != cborMark || byte(versionOffset) != 0) {
        return {};
    }
    QCborParserError problem;
    const QCborValue value = QCborValue::fromCbor(section.mid(start + headerSize), &problem);
    const bool isValid = problem.error == QCborError::NoError && value.isMap();
    return {isValid, byte(qtMajorOffset), byte(qtMinorOffset), (byte(flagsOffset) & 1) != 0, value.toMap()};
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
    m_hasMetaData = elf.hasWholeNames() && readMetaDataSection(elf.section(".qtmetadata")).isValid;
    m_isWhole = elf.hasWholeSegments();
}

} // namespace INTERNAL
} // namespace KORA
