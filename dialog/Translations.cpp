// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

// The files in a static library are there once they are asked for. Outside any namespace, as the macro wants it.
static void addFiles()
{
    Q_INIT_RESOURCE(qvsonglrc_translations);
}

namespace {

/// Goes with the application object.
class Texts final : public QTranslator
{
public:
    explicit Texts(QObject *application)
        : QTranslator(application)
    {
        followUsersLanguage();
    }

    void followUsersLanguage();

private:
    QStringList m_followed; // the languages when the texts were loaded
};

Texts *theTexts = nullptr;

/// What the files of a language are named after.
QString codeOf(const QLocale &locale)
{
    if (locale.language() == QLocale::Chinese)
        return locale.script() == QLocale::TraditionalHanScript ? u"zh_TW"_s : u"zh_CN"_s;
    return QLocale::languageToCode(locale.language());
}

void Texts::followUsersLanguage()
{
    const QStringList languages = QLocale().uiLanguages();
    if (m_followed == languages)
        return;
    m_followed = languages;
    for (const QString &language : languages) {
        const QLocale locale(language);
        // The texts are in English already; who prefers it must not get the next language.
        if (locale.language() == QLocale::English)
            break;
        if (load(u"qvsonglrc_"_s + codeOf(locale), u":/QVSongLrc/i18n"_s))
            return;
    }
    [[maybe_unused]] const bool isLoaded = load(QString()); // empties it
}

void install()
{
    addFiles();
    theTexts = new Texts(QCoreApplication::instance());
    QObject::connect(theTexts, &QObject::destroyed, [] { theTexts = nullptr; });
    QCoreApplication::installTranslator(theTexts);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(install)

void QVSongLrcPrivate::Translations::followUsersLanguage()
{
    if (theTexts)
        theTexts->followUsersLanguage();
}
