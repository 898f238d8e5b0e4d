// SPDX-License-Identifier: MIT
#include "Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

using namespace Qt::StringLiterals;

// The files in a static library are there once they are asked for. Outside any namespace, as the macro wants it.
static void addFiles()
{
    Q_INIT_RESOURCE(qvsonglrc_translations);
}

namespace {

QPointer<QTranslator> theTranslator;
QStringList followed; // the languages when the texts were loaded

/// What the files of a language are named after.
QString codeOf(const QLocale &locale)
{
    if (locale.language() == QLocale::Chinese)
        return locale.script() == QLocale::TraditionalHanScript ? u"zh_TW"_s : u"zh_CN"_s;
    return QLocale::languageToCode(locale.language());
}

void load()
{
    followed = QLocale().uiLanguages();
    for (const QString &language : std::as_const(followed)) {
        const QLocale locale(language);
        // The texts are in English already; who prefers it must not get the next language.
        if (locale.language() == QLocale::English)
            break;
        if (theTranslator->load(u"qvsonglrc_"_s + codeOf(locale), u":/QVSongLrc/i18n"_s))
            return;
    }
    [[maybe_unused]] const bool isLoaded = theTranslator->load(QString()); // empties it
}

void install()
{
    addFiles();
    theTranslator = new QTranslator(QCoreApplication::instance());
    load();
    QCoreApplication::installTranslator(theTranslator);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(install)

void QVSongLrcPrivate::Translations::followUsersLanguage()
{
    if (theTranslator && followed != QLocale().uiLanguages())
        load();
}
