// SPDX-License-Identifier: Apache-2.0
#include "pictureenvironment.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTextCodec>
#include <QtCore/QXmlStreamWriter>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QApplication>

#include <kora/core/files_p.h>

#include <clocale>

namespace {

struct Variable
{
    const char *name;
    const char *value; // null removes the variable
};

const Variable pictureVariables[] = {
    {"TZ", "UTC"},
    {"QT_FONT_DPI", "96"},
    {"QT_HASH_SEED", "0"},
    {"QT_AUTO_SCREEN_SCALE_FACTOR", nullptr},
    {"QT_DEVICE_PIXEL_RATIO", nullptr},
    {"QT_ENABLE_HIGHDPI_SCALING", nullptr},
    {"QT_SCALE_FACTOR", nullptr},
    {"QT_SCALE_FACTOR_ROUNDING_POLICY", nullptr},
    {"QT_SCREEN_SCALE_FACTORS", nullptr},
    {"QT_QPA_PLATFORMTHEME", nullptr},
    {"QT_STYLE_OVERRIDE", nullptr},
    {"QT_QPA_FONTDIR", nullptr},
    {"QT_SUBPIXEL_AA_TYPE", nullptr},
    {"FREETYPE_PROPERTIES", nullptr},
    {"FONTCONFIG_PATH", nullptr},
    {"FONTCONFIG_SYSROOT", nullptr},
    {"FC_LANG", nullptr},
};

bool setVariable(const Variable &variable)
{
    return variable.value ? qputenv(variable.name, variable.value) : qunsetenv(variable.name);
}

void writeSetting(QXmlStreamWriter &xml, const QString &name, const QString &type, const QString &value)
{
    xml.writeStartElement(QStringLiteral("edit"));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("mode"), QStringLiteral("assign"));
    xml.writeTextElement(type, value);
    xml.writeEndElement();
}

// Smooth outlines at their true shape, whatever this machine's screen would want.
void writeRendering(QXmlStreamWriter &xml)
{
    const QString boolType = QStringLiteral("bool");
    const QString constType = QStringLiteral("const");
    xml.writeStartElement(QStringLiteral("match"));
    xml.writeAttribute(QStringLiteral("target"), QStringLiteral("font"));
    writeSetting(xml, QStringLiteral("antialias"), boolType, QStringLiteral("true"));
    writeSetting(xml, QStringLiteral("hinting"), boolType, QStringLiteral("false"));
    writeSetting(xml, QStringLiteral("autohint"), boolType, QStringLiteral("false"));
    writeSetting(xml, QStringLiteral("hintstyle"), constType, QStringLiteral("hintnone"));
    writeSetting(xml, QStringLiteral("rgba"), constType, QStringLiteral("none"));
    writeSetting(xml, QStringLiteral("lcdfilter"), constType, QStringLiteral("lcdnone"));
    xml.writeEndElement();
}

bool writeFontConfiguration(const QString &path, const QString &fontDir, const QString &cacheDir)
{
    QByteArray document;
    QXmlStreamWriter xml(&document);
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">"));
    xml.writeStartElement(QStringLiteral("fontconfig"));
    xml.writeTextElement(QStringLiteral("dir"), fontDir);
    xml.writeTextElement(QStringLiteral("cachedir"), cacheDir);
    writeRendering(xml);
    xml.writeEndDocument();
    QString problem; // the caller's own is enough
    return !xml.hasError() && KORA::INTERNAL::replaceFile(path, document, problem);
}

QFont pictureFont()
{
    QFont font(QStringLiteral("Roboto"), 10);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

} // namespace

void pinLocale()
{
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    (void)std::setlocale(LC_ALL, "");
    // Also where the C library has no such locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QLocale::setDefault(QLocale::c());
}

bool PictureEnvironment::pin(const QString &fontDir, QString &problem)
{
    if (!m_dir.isValid()) {
        problem = QStringLiteral("no temporary folder: %1").arg(m_dir.errorString());
        return false;
    }
    const QString configuration = m_dir.filePath(QStringLiteral("fonts.conf"));
    if (!writeFontConfiguration(configuration, QFileInfo(fontDir).absoluteFilePath(),
                                m_dir.filePath(QStringLiteral("cache")))) {
        problem = QStringLiteral("%1 cannot be written").arg(configuration);
        return false;
    }
    bool ok = qputenv("FONTCONFIG_FILE", QFile::encodeName(configuration));
    for (const Variable &variable : pictureVariables) {
        ok = setVariable(variable) && ok;
    }
    if (!ok) {
        problem = QStringLiteral("the environment cannot be changed");
    }
    return ok;
}

bool PictureEnvironment::useRoboto()
{
    QApplication::setFont(pictureFont());
    return QFontDatabase().families().contains(QStringLiteral("Roboto"));
}

OffscreenApplication::OffscreenApplication()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt complains where no session has set it, as in a container.
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDir.path()));
    // Widget style and palette of the desktop have no part in what a panel shows.
    QApplication::setDesktopSettingsAware(false);
    m_application = std::make_unique<QApplication>(m_argumentCount, m_arguments);
}

OffscreenApplication::~OffscreenApplication() = default;
