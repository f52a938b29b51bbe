// SPDX-License-Identifier: Apache-2.0
#include "rules.h"

#include "load/loadcheckrules.h"

#include <algorithm>

using KORA::DEV::Finding;

namespace {

const std::vector<Rule> &staticRules()
{
    static const std::vector<Rule> rules = {
        {"input-unreadable", Finding::Error, "a path that was given cannot be read", "a mistyped path",
         "kora check boiler.json"},

        // Metadata: the parser, and the text itself
        {"metadata", Finding::Error, "the library's parser refuses the metadata, with the code that is shown",
         "a key is missing or has another type or form than the parser takes", "kora explain 10034"},
        {"json-syntax", Finding::Error,
         "the file is no JSON: Qt's moc warns and builds a plugin without metadata",
         "a missing or trailing comma, a comment, single quotes",
         "{ \"id\": \"gauge\", \"version\": \"1.0.0\" }"},
        {"json-not-standard", Finding::Warning, "Qt reads the JSON, other programs do not",
         "an unknown escape such as \\q, or a control character inside a text", "\"C:\\\\temp\""},
        {"repeated-key", Finding::Warning, "an object has a key twice: the last one counts",
         "a copied line of which only the value was changed", "one \"display\" per field"},
        {"unknown-key", Finding::Warning, "the parser does not know the key and ignores it",
         "a slip of the pen: keys are compared letter by letter", "\"defaultValue\", not \"default\""},
        {"ignored-key", Finding::Warning, "the key has no effect on a field of this type",
         "the field's type was changed, or the key belongs to another one",
         "\"minimum\" and \"maximum\" for integer and double, \"options\" for option"},
        {"xml-character", Finding::Warning, "a text holds a character that XML documents cannot hold",
         "a control character that was pasted along: the design tool's documents of the library cannot be "
         "written",
         "letters, tabs and line breaks"},
        {"id-differs", Finding::Error, "the id in the metadata is not the one of the plugin's folder",
         "a copied project of which only one of the two was changed", "the folder is named by \"id\""},

        // Widgets
        {"repeated-widget", Finding::Warning, "two widgets have the same id and version: the last one counts",
         "a copied widget that should have got a new version", "\"gauge\" 1.0.0 and \"gauge\" 1.1.0"},
        {"no-default-size", Finding::Warning, "the widget has no default size, or an empty one",
         "\"defaultSize\" was forgotten: the design tool does not know how large to place it",
         "\"defaultSize\": \"200x100\""},

        // Fields
        {"repeated-field", Finding::Warning, "two fields of a widget have the same id: the last one counts",
         "a copied field", "one field per id"},
        {"empty-field-id", Finding::Warning,
         "the parser takes an empty field id, but nothing can refer to it",
         "\"id\": \"\" was left to be filled in", "\"id\": \"speed\""},
        {"default-outside-bounds", Finding::Warning,
         "the default value lies outside minimum and maximum: a host moves it to the bound",
         "the bounds were changed later", "\"minimum\": 0, \"maximum\": 10, \"defaultValue\": 5"},
        {"bounds-reversed", Finding::Warning,
         "the minimum is greater than the maximum: every value becomes the maximum", "the two were mixed up",
         "\"minimum\": 0, \"maximum\": 10"},
        {"repeated-option-index", Finding::Warning,
         "two options have the same index: a value does not tell which is meant", "a copied option",
         "{ \"index\": 0, \"option\": \"Off\" }, { \"index\": 1, \"option\": \"On\" }"},

        // Requirements
        {"requirement-blank", Finding::Warning,
         "a blank beside a field id or a compared value belongs to it: the condition never holds",
         "the parser takes a blank round operators, the evaluation does not",
         "\"requirements\": \"mode==2\""},
        {"requirement-never", Finding::Warning, "the field can never have the value that is asked for",
         "values are compared as text: a bool is \"true\" or \"false\", an integer has no sign +, a double "
         "no "
         "trailing zeros",
         "\"enabled==true\", \"mode==2\", \"level==1.5\""},
        {"requirement-existence", Finding::Warning,
         "a field id alone asks whether the field has any value: false is one",
         "it reads as if the field had to be true", "\"enabled==true\""},
        {"requirement-self", Finding::Warning,
         "the field requires a value of itself: once hidden it stays hidden", "a copied requirement",
         "the id of another field"},
        {"requirement-mixed", Finding::Warning,
         "&& and || stand in one text: the evaluation takes the whole for invalid",
         "conditions are separated by one of the two, and not joined by either", "one condition per field"},
        {"requirement-last-counts", Finding::Warning,
         "several conditions are applied one after the other: the last one alone decides",
         "&& and || separate conditions and do not join them", "one condition per field"},

        // Languages
        {"repeated-language", Finding::Warning, "a language is listed twice, or is the default language",
         "\"translation\" lists the languages beside the default language",
         "\"translation\": [\"it-IT\", \"de-DE\"]"},
        {"language-without-file", Finding::Warning, "a listed language has no translation file",
         "the file is missing, has another name or lies elsewhere than beside the metadata file or in "
         "\"translations\" there",
         "translations/it-IT.csv"},
        {"csv-unreadable", Finding::Error, "a translation file cannot be read", "no right to read it",
         "translations/it-IT.csv"},
        {"csv-header", Finding::Warning,
         "the first line of a translation file is skipped, but holds a translation",
         "the line with the headings was forgotten", "en-US,comment,it-IT"},
        {"csv-encoding", Finding::Warning, "a line of a translation file is not UTF-8",
         "the file was saved in the encoding of an old spreadsheet", "save as CSV UTF-8"},
        {"csv-fields", Finding::Error,
         "a line of a translation file has not exactly three fields: the parser refuses the plugin (17)",
         "an unquoted comma in a text, an empty line, a quotation mark that is not closed",
         "\"Low, warning\",,\"Basso, avviso\""},
        {"csv-conflict", Finding::Error,
         "a text has two different translations into one language: the parser refuses the plugin (17)",
         "two lines with the same text and comment; a comment tells texts of different meaning apart",
         "Open,verb,Apri and Open,state,Aperto"},
        {"csv-empty-quoted", Finding::Warning, "\"\" reads as one quotation mark, not as an empty text",
         "a spreadsheet that quotes every field", "Gauge,,Manometro"},
        {"untranslated", Finding::Warning,
         "a text has no translation into a listed language: it is shown in the default language",
         "the text or its comment was changed or is new", "Gauge,,Manometro"},
        {"option-translation", Finding::Warning,
         "the translation of an option holds \",\" or \"=\", which separate the options in the design tool's "
         "documents",
         "option texts are letters, digits and _, their translations too", "High,,Alto"},

        {"translation-unlisted", Finding::Warning,
         "a translation file of a language that the metadata does not list",
         "the language was added as a file alone: the file is not read",
         "\"translation\": [\"it-IT\", \"de-DE\"]"},
        {"translation-stale", Finding::Warning,
         "a row of a translation file whose text the metadata no longer has",
         "the text was changed or removed; kora translations update moves the row to the end, where its "
         "translation can "
         "be copied from",
         "kora translations update --prune"},
        {"translation-empty", Finding::Warning, "a text is translated as an empty text, and shown so",
         "a row that waits for the translator", "Gauge,,Manometro"},
        {"translation-same", Finding::Note, "texts whose translation is the text itself",
         "new rows are made so by kora translations update; some words are the same in both languages",
         "Gauge,,Manometro"},
        {"translation-unwritable", Finding::Error,
         "a translation file cannot be written, or cannot hold a text",
         "no right to write it; a text of two lines, which the form of the file does not know",
         "one line per text"},

        // Plugin folders and libraries
        {"folder-missing", Finding::Error, "there is no such folder", "a mistyped path", "plugins/<id>"},
        {"folder-name", Finding::Error, "the folder's name is no UUID",
         "the folder was named after the widget library", "6f1d7f1e-1c7c-4c39-9d0e-0c8a1d2b3e4f"},
        {"folder-empty", Finding::Error, "the folder holds no plugin", "nothing was built or copied yet",
         "<id>/linux/arm64/lib<id>.so"},
        {"library-missing", Finding::Error, "the folder has no library for the platform",
         "built for another platform, or the file is not named lib<id>.so", "<id>/linux/arm64/lib<id>.so"},
        {"library-not-file", Finding::Error, "a folder or a device stands in the library's place",
         "a slip when copying", "a regular file"},
        {"library-unreadable", Finding::Error, "the library cannot be read", "no right to read it",
         "chmod a+r"},
        {"library-text", Finding::Error, "the library is a text file",
         "the pointer file of a version control system, or an error page that was downloaded",
         "copy the built file"},
        {"library-not-elf", Finding::Error, "the file is no Linux library",
         "a Windows library or an archive in the place of a Linux one",
         "win32/x64/<id>.dll, linux/arm64/lib<id>.so"},
        {"library-truncated", Finding::Error, "the library is empty or cut off",
         "a full disk or a broken transfer", "compare the sizes, copy again"},
        {"library-32-bit", Finding::Error, "the library is of 32 bits where 64 are expected",
         "the wrong toolchain", "cmake --preset panel"},
        {"library-64-bit", Finding::Error, "the library is of 64 bits where 32 are expected",
         "the wrong toolchain", "cmake --preset panel"},
        {"library-wrong-cpu", Finding::Error, "the library is for another processor than its folder says",
         "built for the developer's machine instead of the panel; Qt says \"No such file or directory\"",
         "cmake --preset panel"},
        {"library-big-endian", Finding::Error, "the library is for a processor with the other byte order",
         "the wrong toolchain", "cmake --preset panel"},
        {"library-not-shared", Finding::Error, "the file is a program or an object file",
         "the wrong file was copied", "kora_add_widget_library()"},
        {"library-no-plugin", Finding::Error, "the library is no Qt plugin",
         "Q_PLUGIN_METADATA is missing, or moc did not run over the class",
         "Q_PLUGIN_METADATA(IID \"org.Vako.KORA.WidgetLibrary\" FILE \"boiler.json\")"},
        {"library-metadata-broken", Finding::Error, "Qt's section in the library is broken",
         "a tool that rewrote the file, a broken transfer", "build again"},
        {"library-no-iid", Finding::Error, "the plugin names no interface", "Q_PLUGIN_METADATA without IID",
         "Q_PLUGIN_METADATA(IID \"org.Vako.KORA.WidgetLibrary\" FILE \"boiler.json\")"},
        {"library-wrong-iid", Finding::Error, "the plugin names another interface",
         "a plugin of another product, or a slip of the pen",
         "Q_PLUGIN_METADATA(IID \"org.Vako.KORA.WidgetLibrary\" FILE \"boiler.json\")"},
        {"library-no-metadata", Finding::Error, "the plugin carries no metadata",
         "FILE is missing in Q_PLUGIN_METADATA, or the JSON was broken: moc only warns",
         "kora check boiler.json"},
        {"library-newer-qt", Finding::Error, "the library was built with a newer Qt than this one",
         "built without the sysroot of the target", "Qt 5.15 loads plugins of Qt 5.0 to 5.15"},
        {"library-id-differs", Finding::Error, "the plugin's id is not the folder's name",
         "a copied folder or project; capital and small letters count", "<id>/linux/arm64/lib<id>.so"},
        {"source-differs", Finding::Warning, "the library carries other metadata than the source file",
         "the file was changed after the build", "build again"},
        {"platform-missing", Finding::Error,
         "--complete: the library of one of the four platforms is missing", "not all platforms were built",
         "win32/x86, win32/x64, linux/arm32, linux/arm64"},
        {"debug-build", Finding::Warning, "--complete: the library was built for debugging",
         "CMAKE_BUILD_TYPE is Debug or not set", "-DCMAKE_BUILD_TYPE=Release"},

        // Loads that failed
        {"load-missing-library", Finding::Error, "a library that the plugin needs is not there",
         "not installed on the target", "ldd lib<id>.so"},
        {"load-undefined-symbol", Finding::Error, "the plugin uses a function or class that nothing defines",
         "a function that is declared and not defined, or a host with an older SDK", "-Wl,--no-undefined"},
        {"load-old-library", Finding::Error,
         "a library on this machine is older than the one the plugin was linked with",
         "built without the sysroot of the target", "cmake --preset panel"},
        {"load-failed", Finding::Error, "the dynamic loader refuses the library, in its words",
         "see the message", "ldd lib<id>.so"},

        // Archives of kora pack
        {"archive-unreadable", Finding::Error, "the file is no whole tar archive",
         "it was cut or damaged on its way", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-content", Finding::Error, "the archive does not hold one plugin folder",
         "it was not made by kora pack", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-manifest", Finding::Error, "the archive does not begin with its list of files, SHA256SUMS",
         "it was packed by tar and not by kora pack", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-extra-file", Finding::Error,
         "the archive has a file that its list does not name, or names outside the "
         "plugin folder",
         "a file was added after it was packed", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-missing-file", Finding::Error, "the archive lacks a file that its list names",
         "a file was removed after it was packed", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-changed-file", Finding::Error, "a file of the archive is not the one that was packed",
         "the archive was damaged or changed on its way", "kora pack plugins/<id> -o boiler.tar"},
        {"archive-form", Finding::Error,
         "all files are as they were packed, but other bytes of the archive are not",
         "it was packed anew by another program", "kora pack plugins/<id> -o boiler.tar"},
    };
    return rules;
}

} // namespace

const std::vector<Rule> &allRules()
{
    static const std::vector<Rule> rules = [] {
        std::vector<Rule> all = staticRules();
        all.insert(all.end(), loadCheckRules().cbegin(), loadCheckRules().cend());
        return all;
    }();
    return rules;
}

const Rule *findRule(const QString &id)
{
    const auto &rules = allRules();
    const auto found = std::find_if(rules.cbegin(), rules.cend(),
                                    [&id](const Rule &rule) { return id == QLatin1String(rule.id); });
    return found == rules.cend() ? nullptr : &*found;
}

const CodeHelp *findCode(int code)
{
    const auto &codes = allCodes();
    const auto found = std::find_if(codes.cbegin(), codes.cend(),
                                    [code](const CodeHelp &help) { return help.code == code; });
    return found == codes.cend() ? nullptr : &*found;
}

QString severityName(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return QStringLiteral("error");
    case Finding::Warning:
        return QStringLiteral("warning");
    case Finding::Note:
        break;
    }
    return QStringLiteral("note");
}
