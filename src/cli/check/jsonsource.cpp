// SPDX-License-Identifier: Apache-2.0
#include "jsonsource.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonParseError>

#include <algorithm>
#include <cstring>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>
#pragma GCC diagnostic pop

namespace {

constexpr int longestValue = 60;

/// Bytes that RapidJSON reads directly: it reads the streams of its own through a copy, whose position the handler
/// could not see.
class ByteStream
{
public:
    using Ch = char;

    explicit ByteStream(const QByteArray &text)
        : m_text(text)
    {}

    Ch Peek() const { return m_position < m_text.size() ? m_text.at(m_position) : '\0'; }
    Ch Take()
    {
        const Ch c = Peek();
        ++m_position;
        return c;
    }
    size_t Tell() const { return static_cast<size_t>(m_position); }

    // For writing in place, which is not asked for.
    Ch *PutBegin() { return nullptr; }
    void Put(Ch) {}
    size_t PutEnd(Ch *) { return 0; }

private:
    const QByteArray &m_text;
    int m_position = 0;
};

} // namespace

/// Takes RapidJSON's events and notes the span of each value.
class JsonPlaces
{
public:
    JsonPlaces(JsonSource &source, const ByteStream &stream)
        : m_source(source)
        , m_stream(stream)
    {}

    bool Null() { return value(); }
    bool Bool(bool) { return value(); }
    bool Int(int) { return value(); }
    bool Uint(unsigned) { return value(); }
    bool Int64(int64_t) { return value(); }
    bool Uint64(uint64_t) { return value(); }
    bool Double(double) { return value(); }
    bool RawNumber(const char *, rapidjson::SizeType, bool) { return value(); }
    bool String(const char *, rapidjson::SizeType, bool) { return value(); }
    bool StartObject() { return open(false); }
    bool StartArray() { return open(true); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

    bool Key(const char *text, rapidjson::SizeType size, bool)
    {
        m_keyStart = nextToken();
        m_end = position();
        m_levels.last().key = QString::fromUtf8(text, static_cast<int>(size));
        return true;
    }

private:
    struct Level
    {
        QString pointer;
        bool isArray = false;
        int index = -1;
        QString key;
    };

    int position() const { return static_cast<int>(m_stream.Tell()); }

    // Only separators stand between what was read last and the token.
    int nextToken() const
    {
        int at = m_end;
        while (at < m_source.m_text.size() && std::strchr(" \t\r\n,:", m_source.m_text.at(at))) {
            ++at;
        }
        return at;
    }

    QString nextPointer()
    {
        if (m_levels.isEmpty()) {
            return {};
        }
        Level &level = m_levels.last();
        return level.isArray ? pointerTo(level.pointer, ++level.index) : pointerTo(level.pointer, level.key);
    }

    QString begin()
    {
        const bool isMember = !m_levels.isEmpty() && !m_levels.last().isArray;
        QString pointer = nextPointer();
        if (isMember && m_source.m_spans.contains(pointer)) {
            m_source.m_repeatedKeys.append({pointer, m_source.placeAt(m_keyStart)});
        }
        m_source.m_spans.insert(pointer, {nextToken(), position(), isMember ? m_keyStart : -1});
        m_end = position();
        return pointer;
    }

    bool value()
    {
        begin();
        return true;
    }

    bool open(bool isArray)
    {
        m_levels.append({begin(), isArray, -1, {}});
        m_end = m_source.m_spans.value(m_levels.last().pointer).start + 1; // the bracket may be taken later
        return true;
    }

    bool close()
    {
        m_end = nextToken() + 1;
        m_source.m_spans[m_levels.takeLast().pointer].end = m_end;
        return true;
    }

    JsonSource &m_source;
    const ByteStream &m_stream;
    QVector<Level> m_levels;
    int m_keyStart = 0;
    int m_end = 0;
};

JsonSource::JsonSource(const QByteArray &text)
    : m_text(text)
{
    m_lineStarts.append(0);
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == '\n') {
            m_lineStarts.append(i + 1);
        }
    }
    if (text.startsWith("\xef\xbb\xbf")) {
        m_text.replace(0, 3, "   "); // Qt skips the byte order mark, RapidJSON does not
    }
    ByteStream stream(m_text);
    JsonPlaces places(*this, stream);
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, places);

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    m_isObject = document.isObject();
    m_object = document.object();
    if (result.IsError()) {
        m_strictProblem = QString::fromUtf8(rapidjson::GetParseError_En(result.Code()));
        while (m_strictProblem.endsWith(QLatin1Char('.'))) {
            m_strictProblem.chop(1);
        }
        m_problemPlace = placeAt(static_cast<int>(result.Offset()));
    }
    if (error.error != QJsonParseError::NoError) {
        m_problem = result.IsError() ? m_strictProblem : error.errorString();
        m_problemPlace = result.IsError() ? m_problemPlace : placeAt(error.offset);
    }
}

TextPlace JsonSource::placeAt(int offset) const
{
    const int at = std::clamp(offset, 0, m_text.size());
    const auto next = std::upper_bound(m_lineStarts.cbegin(), m_lineStarts.cend(), at);
    const auto line = static_cast<int>(next - m_lineStarts.cbegin());
    const int lineStart = m_lineStarts.at(line - 1);
    const auto isCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; };
    const auto before = std::count_if(m_text.cbegin() + lineStart, m_text.cbegin() + at, isCharacter);
    return {line, static_cast<int>(before) + 1};
}

TextPlace JsonSource::placeOf(const QString &pointer) const
{
    const auto span = m_spans.constFind(pointer);
    if (span != m_spans.constEnd()) {
        return placeAt(span->start);
    }
    const int parentEnd = pointer.lastIndexOf(QLatin1Char('/'));
    return parentEnd < 0 ? TextPlace() : placeOf(pointer.left(parentEnd));
}

TextPlace JsonSource::placeOfKey(const QString &pointer) const
{
    const Span span = m_spans.value(pointer);
    return span.key < 0 ? placeOf(pointer) : placeAt(span.key);
}

QString JsonSource::textOf(const QString &pointer) const
{
    const Span span = m_spans.value(pointer);
    const QString text = QString::fromUtf8(m_text.mid(span.start, span.end - span.start)).simplified();
    return text.size() <= longestValue ? text : text.left(longestValue - 3) + QLatin1String("...");
}

QString pointerTo(const QString &parent, const QString &key)
{
    QString escaped = key;
    escaped.replace(QLatin1Char('~'), QLatin1String("~0")).replace(QLatin1Char('/'), QLatin1String("~1"));
    return parent + QLatin1Char('/') + escaped;
}

QString pointerTo(const QString &parent, int index)
{
    return parent + QLatin1Char('/') + QString::number(index);
}
