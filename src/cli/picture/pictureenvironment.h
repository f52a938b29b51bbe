// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <memory>

class QApplication;

/// Makes the process independent of the user's locale: UTF-8 for file names and text, else the C locale. To be
/// called before any path is used.
void pinLocale();

/// Fixes all that decides how a picture comes out: the fonts, their rendering, 96 DPI, UTC, no scaling, no
/// theme. Made before the application; lives as long as it.
class PictureEnvironment
{
public:
    /// Lets the process use the fonts in @p fontDir and no others. False with the reason in @p problem.
    bool pin(const QString &fontDir, QString &problem);
    /// Makes Roboto the application's font; false if it is not among the fonts. Needs the application.
    static bool useRoboto();

private:
    QTemporaryDir m_dir;
};

/// A QApplication that needs neither display nor desktop session and sees no command line options.
class OffscreenApplication
{
public:
    OffscreenApplication();
    ~OffscreenApplication();
    Q_DISABLE_COPY_MOVE(OffscreenApplication)

private:
    char m_name[5] = "kora";
    char *m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    QTemporaryDir m_runtimeDir;
    std::unique_ptr<QApplication> m_application;
};
