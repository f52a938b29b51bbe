// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>

/// A place in a text file, both from 1; the column in characters. 0 for no place.
struct TextPlace
{
    int line = 0;
    int column = 0;
};

/// A JSON text with the place of every value. What the values are says Qt, as in the build: RapidJSON tells where.
class JsonSource
{
public:
    explicit JsonSource(const QByteArray &text);

    /// Whether Qt reads the text; else problem() tells what was expected, at problemPlace().
    bool isValid() const { return m_problem.isEmpty(); }
    QString problem() const { return m_problem; }
    TextPlace problemPlace() const { return m_problemPlace; }

    /// Whether RapidJSON reads it too; else strictProblem() tells why not, at problemPlace().
    bool isStandard() const { return m_strictProblem.isEmpty(); }
    QString strictProblem() const { return m_strictProblem; }

    bool isObject() const { return m_isObject; }
    QJsonObject object() const { return m_object; }

    /// Where the value with that JSON pointer begins; without such a value, where its nearest parent does.
    TextPlace placeOf(const QString &pointer) const;
    /// Where the key of that value stands; the value's own place in an array.
    TextPlace placeOfKey(const QString &pointer) const;
    /// The value as it stands in the text, on one line and not too long; empty without such a value.
    QString textOf(const QString &pointer) const;
    /// Keys that an object has twice, by the pointer of their value, at the place of the later one.
    const QVector<QPair<QString, TextPlace>> &repeatedKeys() const { return m_repeatedKeys; }

private:
    struct Span
    {
        int start = 0;
        int end = 0;
        int key = -1;
    };
    friend class JsonPlaces;

    TextPlace placeAt(int offset) const;

    QByteArray m_text;
    QVector<int> m_lineStarts;
    QString m_problem;
    QString m_strictProblem;
    TextPlace m_problemPlace;
    bool m_isObject = false;
    QJsonObject m_object;
    QHash<QString, Span> m_spans;
    QVector<QPair<QString, TextPlace>> m_repeatedKeys;
};

/// The JSON pointer of a member or element.
QString pointerTo(const QString &parent, const QString &key);
QString pointerTo(const QString &parent, int index);
