// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QDialog;
class QEventLoop;
class QWidget;

namespace Ui {
class QVLyricSearchWndCtl;
}

namespace QVSongLrcPrivate {
class LyricResultsModel;
}

/// A modal dialog in which the user looks a lyric up on the lyric service and downloads it.
///
/// Needs a QApplication, and its main thread for every call. QVLyricService says where the service is. Texts
/// are in the first of the languages of QLocale() that the library speaks, else in English.
///
/// A controller lives as long as somebody holds it or a request of its own is outstanding. Closing the dialog
/// cancels no request. The window is the controller's; it also goes with its parent or with the application,
/// whichever is first, and a controller without a window does no harm.
class QVSONGLRC_DIALOG_EXPORT QVLyricSearchWndCtl final
    : public QObject,
      public std::enable_shared_from_this<QVLyricSearchWndCtl>
{
    Q_OBJECT

public:
    /// Takes the lyric that was downloaded, unchanged; a null string when the download failed or the service
    /// had no text.
    using CompletionCallback = std::function<void(const QString &lyric)>;

    /// Opens the dialog over \p parent, searches at once for \p track by \p artist unless both are empty, and
    /// returns when the dialog has been closed.
    ///
    /// \p completion is called once for every download that the user has started and never otherwise: from the
    /// event loop, before the dialog closes, or after this has returned when the user closed the dialog while
    /// the download went on; not for those outstanding when the application object is destroyed. The user may
    /// start a second download before the first has ended. The completion may do anything, opening another
    /// dialog and closing the application included; without one, lyrics are dropped.
    static std::shared_ptr<QVLyricSearchWndCtl> popUp(const QString &track, const QString &artist,
                                                      CompletionCallback completion,
                                                      QWidget *parent = nullptr);

    ~QVLyricSearchWndCtl() override;

    /// Whether a search or a download is outstanding. A second download's end is not waited for.
    bool isSearching() const { return m_isSearching; }

    /// The candidates in the order in which they are shown.
    QList<QJsonObject> lrcResults() const;

    /// What takes the lyrics. A host that has gone on since may set an absent one.
    CompletionCallback completionCB() const { return m_completionCB; }
    void setCompletionCB(CompletionCallback completion) { m_completionCB = std::move(completion); }

private:
    explicit QVLyricSearchWndCtl(QWidget *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void windowDidLoad();
    void runModal();
    void setTrack(const QString &track, const QString &artist);
    void setIsSearching(bool isSearching);
    void refreshBtnsState();
    void setSearchState(const QString &text);
    QJsonObject reqParams() const;
    void searchClick();
    void selectRow(qint64 row);
    void downloadClick();
    void requestDetail(const QString &link);
    void tableDoubleClick();
    void cancelClick();
    void closeWindow();
    void windowWillClose();
    void controlTextDidChange();

    bool m_isSearching = false;
    CompletionCallback m_completionCB;
    const std::unique_ptr<QVSongLrcPrivate::LyricResultsModel>
        m_results;                                       // outlives the window, which shows it
    const std::unique_ptr<Ui::QVLyricSearchWndCtl> m_ui; // what it points at goes with the window
    QPointer<QDialog> m_window;
    QPointer<QEventLoop> m_modalRun;
};
