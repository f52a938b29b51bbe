// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/diagnosis/plugindiagnosis.h>

#include <QtCore/QFile>
#include <QtCore/QPluginLoader>
#include <QtCore/QRegularExpression>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include <kora/loader/elffile_p.h>

namespace KORA {
namespace DEV {

namespace {

Finding failure(const char *rule, const QString &path, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.file = path;
    finding.message = message;
    finding.hint = hint;
    return finding;
}

QString demangled(const QString &symbol)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(symbol.toLatin1().constData(), nullptr, nullptr, &status), &std::free);
    return status == 0 && name ? QString::fromUtf8(name.get()) : symbol;
}

// Empty if the library loads.
QString textOfLoad(const QString &path)
{
    QPluginLoader loader(path);
    if (loader.instance()) {
        loader.unload();
        return {};
    }
    return loader.errorString();
}

bool needs(const QString &path, const QString &library)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray content = file.readAll();
    return INTERNAL::ElfFile(content).neededLibraries().contains(library);
}

Finding missingLibrary(const QString &path, const QString &library)
{
    return failure(
        "load-missing-library", path,
        needs(path, library)
            ? QStringLiteral("the library needs %1, which is not there").arg(library)
            : QStringLiteral("a library that it needs in turn is not there: %1").arg(library),
        QStringLiteral("install %1 on the target, put it on the library path, or link it statically; "
                       "ldd on the file lists all that it needs")
            .arg(library));
}

Finding undefinedSymbol(const QString &path, const QString &symbol)
{
    const QString name = demangled(symbol);
    const bool isOurs = name.contains(QLatin1String("KORA::"));
    return failure(
        "load-undefined-symbol", path, QStringLiteral("nothing defines %1, which the library uses").arg(name),
        isOurs ? QStringLiteral("the library was built with a newer SDK than the host's, or declares "
                                "the function without defining it: build again with the host's SDK")
               : QStringLiteral("define it or link the library that does; "
                                "-Wl,--no-undefined, which kora_add_widget_library() sets, finds this "
                                "when the library is linked"));
}

Finding explained(const QString &path, const QString &text)
{
    static const QRegularExpression missing(
        QStringLiteral("([^\\s(:]+): cannot open shared object file: No such file or directory"));
    static const QRegularExpression undefined(QStringLiteral("undefined symbol: ([^\\s,)]+)"));
    static const QRegularExpression version(QStringLiteral("(\\S+): version `([^']+)' not found"));
    const QRegularExpressionMatch missingLibraryMatch = missing.match(text);
    if (missingLibraryMatch.hasMatch() && missingLibraryMatch.captured(1) != path) {
        return missingLibrary(path, missingLibraryMatch.captured(1));
    }
    const QRegularExpressionMatch symbolMatch = undefined.match(text);
    if (symbolMatch.hasMatch()) {
        return undefinedSymbol(path, symbolMatch.captured(1));
    }
    const QRegularExpressionMatch versionMatch = version.match(text);
    if (versionMatch.hasMatch()) {
        return failure("load-old-library", path,
                       QStringLiteral("the library needs %1 of %2, which is older here")
                           .arg(versionMatch.captured(2), versionMatch.captured(1)),
                       QStringLiteral("build with the sysroot of the target, not with newer libraries"));
    }
    return failure("load-failed", path, QStringLiteral("the library does not load: %1").arg(text),
                   QStringLiteral("this is what the dynamic loader says; ldd on the file may tell more"));
}

} // namespace

Findings diagnoseLoadFailure(const QString &path, const QString &errorText)
{
    const Findings findings = diagnoseLibrary(path);
    if (!findings.isEmpty()) {
        return findings;
    }
    const QString text = errorText.isEmpty() ? textOfLoad(path) : errorText;
    return text.isEmpty() ? Findings() : Findings{explained(path, text)};
}

} // namespace DEV
} // namespace KORA
