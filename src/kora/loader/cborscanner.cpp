// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/cborscanner_p.h>

#include <QtCore/QTextCodec>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

namespace {

constexpr int deepest = 1000; // Qt stops at 1024

enum MajorType { Unsigned, Negative, Bytes, Text, Array, Map, Tag, Simple };

bool isUtf8(const char *text, quint64 size)
{
    const auto isAscii = [](char c) { return static_cast<signed char>(c) >= 0; };
    if (std::all_of(text, text + size, isAscii)) {
        return true;
    }
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForMib(106)->toUnicode(text, static_cast<int>(size), &state); // 106 is UTF-8
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Goes over one value after another and stops at the first that is not whole.
class Scanner
{
public:
    explicit Scanner(const QByteArray &data)
        : m_next(data.constBegin())
        , m_end(data.constEnd())
    {}

    bool skipMap() { return readHead() && m_type == Map && skipRest(0); }

private:
    bool skipValue(int depth) { return readHead() && skipRest(depth); }

    // The type of a value, and its number: the value itself, or its length, or how many follow.
    bool readHead()
    {
        if (m_next == m_end) {
            return false;
        }
        const auto byte = static_cast<quint8>(*m_next++);
        m_type = static_cast<MajorType>(byte >> 5);
        m_info = byte & 31;
        m_isOpen = m_info == openEnd && m_type >= Bytes && m_type <= Map;
        if (m_info < firstWide || m_isOpen) {
            m_number = m_info;
            return true;
        }
        return m_info < firstReserved && readNumber(1 << (m_info - firstWide));
    }

    bool readNumber(int size)
    {
        m_number = 0;
        if (m_end - m_next < size) {
            return false;
        }
        for (int i = 0; i < size; ++i) {
            m_number = m_number << 8 | static_cast<quint8>(*m_next++);
        }
        return true;
    }

    // What follows a head.
    bool skipRest(int depth)
    {
        if (depth > deepest) {
            return false;
        }
        switch (m_type) {
        case Unsigned:
        case Negative:
            return true;
        case Bytes:
        case Text:
            return skipString();
        case Array:
        case Map:
            return skipContainer(depth, m_type == Map ? 2 : 1);
        case Tag:
            return skipValue(depth + 1);
        case Simple:
            return m_info != firstWide || m_number >= 32; // smaller ones have a short form
        }
        return false;
    }

    bool skipString()
    {
        if (!m_isOpen) {
            return skipChunk();
        }
        const MajorType type = m_type;
        while (!skipBreak()) {
            if (!readHead() || m_type != type || m_isOpen || !skipChunk()) {
                return false;
            }
        }
        return true;
    }

    bool skipChunk()
    {
        const char *text = m_next;
        if (m_number > static_cast<quint64>(m_end - m_next)) {
            return false;
        }
        m_next += m_number;
        return m_type == Bytes || isUtf8(text, m_number);
    }

    bool skipContainer(int depth, int valuesPerElement)
    {
        const bool isOpen = m_isOpen;
        for (quint64 left = m_number; isOpen ? !skipBreak() : left > 0; --left) {
            for (int i = 0; i < valuesPerElement; ++i) {
                if (!skipValue(depth + 1)) {
                    return false;
                }
            }
        }
        return true;
    }

    bool skipBreak()
    {
        const bool isBreak = m_next != m_end && static_cast<quint8>(*m_next) == breakByte;
        m_next += isBreak ? 1 : 0;
        return isBreak;
    }

    static constexpr int firstWide = 24; // the number follows in one byte, in two, four or eight
    static constexpr int firstReserved = 28;
    static constexpr int openEnd = 31; // up to a break
    static constexpr quint8 breakByte = 0xff;

    const char *m_next;
    const char *const m_end;
    MajorType m_type = Unsigned;
    int m_info = 0;
    bool m_isOpen = false;
    quint64 m_number = 0;
};

} // namespace

bool beginsWithCborMap(const QByteArray &data)
{
    return Scanner(data).skipMap();
}

} // namespace INTERNAL
} // namespace KORA
