// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

// A static library's resources must be initialised. The macro only works outside namespaces.
static void addFiles()
{
    Q_INIT_RESOURCE(qvsonglrc_translations);
}

namespace {

/// Deleted with the application object.
class LibraryTranslator final : public QTranslator
{
public:
    using QTranslator::QTranslator;

    void followUsersLanguage();

private:
    QStringList m_followed; // the languages of the last load
};

LibraryTranslator *theTranslator = nullptr;

/// The language code in the names of the translation files.
QString codeOf(const QLocale &locale)
{
    if (locale.language() == QLocale::Chinese)
        return locale.script() == QLocale::TraditionalHanScript ? u"zh_TW"_s : u"zh_CN"_s;
    return QLocale::languageToCode(locale.language());
}

void LibraryTranslator::followUsersLanguage()
{
    const QStringList languages = QLocale().uiLanguages();
    if (m_followed == languages)
        return;
    m_followed = languages;
    for (const QString &language : languages) {
        const QLocale locale(language);
        // English has no file, since the source texts are English. A later language must not be loaded instead.
        if (locale.language() == QLocale::English)
            break;
        if (load(u"qvsonglrc_"_s + codeOf(locale), u":/QVSongLrc/i18n"_s))
            return;
    }
    [[maybe_unused]] const bool isLoaded = load(QString()); // unloads
}

void install()
{
    addFiles();
    theTranslator = new LibraryTranslator(QCoreApplication::instance());
    theTranslator->followUsersLanguage();
    QObject::connect(theTranslator, &QObject::destroyed, [] { theTranslator = nullptr; });
    QCoreApplication::installTranslator(theTranslator);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(install)

void QVSongLrcPrivate::Translations::followUsersLanguage()
{
    if (theTranslator)
        theTranslator->followUsersLanguage();
}
