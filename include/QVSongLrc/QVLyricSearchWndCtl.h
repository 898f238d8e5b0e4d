// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class QObject;
class QWidget;

/// A modal dialog in which the user searches the lyric service for a song and downloads its lyric.
///
/// Needs a QApplication. Call every function from its main thread. QVLyricService sets the service's address.
/// The texts are in the first language of QLocale().uiLanguages() that the library has, otherwise in English.
///
/// The host and every outstanding request share ownership of the controller, so the host may drop it at any time.
/// Closing the dialog does not cancel requests. The controller owns the window, which is deleted with the
/// controller, with its parent or just before the application object, whichever comes first. A controller
/// without its window can still be used.
///
/// The host sees errors only as a null lyric. The dialog's status line shows why a download failed; after a
/// failed search it shows "Found 0 results". Messages are logged in the category "qvsonglrc.dialog".
class QVSONGLRC_DIALOG_EXPORT QVLyricSearchWndCtl final
    : public std::enable_shared_from_this<QVLyricSearchWndCtl>
{
public:
    /// Receives the downloaded lyric, unchanged; a null string when the download failed or the service
    /// had no text.
    using CompletionCallback = std::function<void(const QString &lyric)>;

    /// Opens the dialog over \p parent, which may be null, and runs an event loop until it has closed. Starts a
    /// search for \p track by \p artist at once, unless both are empty.
    ///
    /// Calls \p completion from the event loop, exactly once for every download that the user starts. The first
    /// download that ends closes the dialog after its completion has run. For downloads that end after the
    /// dialog has closed, \p completion is called after this function has returned. Downloads outstanding when
    /// the application object is destroyed are dropped. The completion may do anything, such as opening another
    /// dialog or quitting the application. Without one, lyrics are dropped.
    static std::shared_ptr<QVLyricSearchWndCtl> popUp(const QString &track, const QString &artist,
                                                      CompletionCallback completion,
                                                      QWidget *parent = nullptr);

    /// The same, except that \p completion is no longer called once \p context has been destroyed. Use this if
    /// the completion refers to an object that may be gone before a download ends.
    ///
    /// \throws std::invalid_argument when \p context is null; no dialog is opened.
    static std::shared_ptr<QVLyricSearchWndCtl> popUp(const QString &track, const QString &artist,
                                                      QObject *context, CompletionCallback completion,
                                                      QWidget *parent = nullptr);

    ~QVLyricSearchWndCtl();

    /// True from the start of a search or a download until a reply has arrived. With several requests
    /// outstanding, the first reply counts.
    bool isSearching() const;

    /// The candidates in the order shown; empty until a search has succeeded.
    QList<QJsonObject> lrcResults() const;

    /// The completion for all downloads that end from now on. A host may set an empty one to drop them.
    CompletionCallback completionCB() const;
    void setCompletionCB(CompletionCallback completion);

private:
    class Q_DECL_HIDDEN Private;

    explicit QVLyricSearchWndCtl(QWidget *parent);

    const std::unique_ptr<Private> d;
};
