// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <utility>
#include <vector>

/// A function that is given inputs which nobody has thought of. It must come back from each of them.
struct FuzzTarget
{
    const char *name;
    void (*run)(const QByteArray &input);
};

/// The targets that are linked into the program.
std::vector<FuzzTarget> &fuzzTargets();
bool addFuzzTarget(const FuzzTarget &target);

/// The function that follows becomes the target of that name.
#define KORA_FUZZ_TARGET(name)                                             \
    static void fuzz_##name(const QByteArray &input);                      \
    static const bool name##IsAdded = addFuzzTarget({#name, fuzz_##name}); \
    static void fuzz_##name([[maybe_unused]] const QByteArray &input)

/// Ends the process with the text if the condition does not hold: that input is a find.
void expect(bool condition, const char *what);

/// A folder of this process, on the temporary file system, that goes with it.
QString fuzzFolder();

/// The object of a JSON text; empty for any other text.
QJsonObject jsonObject(const QByteArray &text);

/// Takes an input apart, byte by byte; 0 beyond its end.
class FuzzBytes
{
public:
    explicit FuzzBytes(const QByteArray &bytes)
        : m_bytes(bytes)
    {}

    bool atEnd() const { return m_position >= m_bytes.size(); }
    int take() { return atEnd() ? 0 : static_cast<unsigned char>(m_bytes.at(m_position++)); }
    int takeBelow(int end) { return take() % end; }
    /// From -128 to 127.
    int takeSigned() { return static_cast<signed char>(take()); }
    /// The text up to the next line feed or the end.
    QByteArray takeLine()
    {
        const int end = m_bytes.indexOf('\n', m_position);
        const QByteArray line = m_bytes.mid(m_position, end < 0 ? -1 : end - m_position);
        m_position = end < 0 ? m_bytes.size() : end + 1;
        return line;
    }
    QByteArray takeRest() { return m_bytes.mid(std::exchange(m_position, m_bytes.size())); }

private:
    const QByteArray m_bytes;
    int m_position = 0;
};

/// What every program of the targets does first: no display, and every message of Qt and the library is formatted;
/// one of Qt ends the process.
void prepareFuzzing(int &argc, char **argv);
