// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>
#include <QVSongLrc/QVTextRange.h>

#include <QList>
#include <QString>
#include <QVarLengthArray>

#include <memory>

namespace QVSongLrcPrivate {
class QVLineWriter;
}

/// Times in ms. Up to three lie inside the list itself; more take an allocation.
using QVTimeList = QVarLengthArray<qint64, 3>;

/// One line of a lyric: a lyric line (time tags and the text that is sung) or a property line (a two-letter
/// key and a value, such as "[ar:Artist]").
///
/// Lines have identity: documents and hosts hold them by `std::shared_ptr`, and a change through one
/// reference shows through all. Use from one thread at a time.
///
/// A line that a document made holds its text as a slice of the document's text, so a document
/// makes one allocation a line, and another for a property's key or for more than three times. The line keeps
/// the text that it slices alive; lineText() turns the slice into a string of the line's own, once.
class QVSONGLRC_CORE_EXPORT QVSongLine
{
public:
    /// A lyric line without times whose text and key are absent. While its text is absent it shows as
    /// "(null)" and equals no line, itself included.
    QVSongLine();

    /// A line of its own with the same values, its times in a new list.
    explicit QVSongLine(const QVSongLine &other);
    QVSongLine &operator=(const QVSongLine &) = delete;
    ~QVSongLine();

    /// A new lyric line with the text "".
    static std::shared_ptr<QVSongLine> emptyLine();

    /// The line's times in ms: in the order in which they were added, not sorted, duplicates kept. Never
    /// null. The list is shared: a change to it changes the line, also after the line has gone out of the
    /// document, and it may outlive the line. The first call moves the times out of the line into the list.
    std::shared_ptr<QVTimeList> aryTimes();
    std::shared_ptr<const QVTimeList> aryTimes() const;

    /// Makes \p times itself, not a copy, the line's list. An absent list counts as a new empty one.
    void setAryTimes(std::shared_ptr<QVTimeList> times);

    /// A lyric line's text, everything after its time tags, or a property line's value. An absent text, unlike
    /// an empty one, is written as "(null)".
    QString lineText() const;
    void setLineText(const QString &text);

    /// Where the line lies in its document's text, in UTF-16 code units. Written by the documents; the line
    /// only keeps it.
    QVTextRange txtRg() const { return m_txtRg; }
    void setTxtRg(QVTextRange range) { m_txtRg = range; }

    /// The first time of the list (not the smallest) in seconds, 0.0 when there is none.
    double playTime() const;

    /// Whether this is a property line. A property line may hold times too; they are not shown.
    bool isProperty() const { return m_isProperty; }
    void setIsProperty(bool isProperty);

    /// A property line's two-letter key, without bracket and colon.
    QString propertyStr() const { return m_propertyStr; }
    void setPropertyStr(const QString &key);

    /// The line as LRC text without a line end: "[key:value]", or the time tags followed by the text.
    QString displayText() const;

    /// Property lines are equal when key and value are, whatever their times; lyric lines when their times,
    /// in order, and their texts are. Ranges do not count. An absent string or line equals nothing.
    bool isEqual(const QVSongLine *other) const;
    bool isEqual(const std::shared_ptr<const QVSongLine> &other) const { return isEqual(other.get()); }

    /// One line of text for debugging, line feed included: times, range and text.
    QString description() const;

    /// Moves every time of a lyric line by \p milliseconds; what falls below 0 becomes 0, what passes 64
    /// bits becomes the largest time. A property line stays as it is.
    void shiftAllTime(qint64 milliseconds);

    /// Adds \p milliseconds, as it is, behind the other times.
    void appendTime(qint64 milliseconds);

    /// Gives the line the text that a user typed. A property line that is given a text with a property tag
    /// in it takes key and value from the text: the part before the first ":" less its first code unit, and
    /// the part up to the second ":" less its last. Given any other text a property line becomes a lyric
    /// line. A lyric line takes the text as it is, an absent one too; time tags in it are not read.
    void updateWithText(const QString &text);

    /// Replaces the time at \p atIndex by that of the tag \p timeStr (QVUtils::getTimeInterval()), or
    /// removes it when \p timeStr is empty. Does nothing when there is no such time.
    ///
    /// \throws std::out_of_range when the time exists and \p timeStr is a single code unit; nothing changes.
    void updateWithTimeStr(const QString &timeStr, qint64 atIndex);

private:
    friend class QVEditSong;
    friend class QVPreviewSong;
    friend class QVSongLrcPrivate::QVLineWriter;

    const QVTimeList &times() const;
    QVTimeList &times();
    const std::shared_ptr<QVTimeList> &sharedTimes() const;
    qint64 firstTime() const;

    void setText(const QString &text);
    void setTextSlice(const QString &source, QStringView slice);

    qsizetype displayLength() const;
    char16_t *writeDisplayText(char16_t *out) const;

    // What writing a line touches comes first, to lie in as few cache lines as may be.
    bool m_isProperty = false;
    mutable bool m_textIsSlice = false;
    mutable quint32 m_tagsLength = 0; // so many code units before a slice are the times' tags; 0: not known
    mutable QStringView m_textView;   // the text, in m_text
    QVTextRange m_txtRg;
    mutable std::shared_ptr<QVTimeList> m_sharedTimes;
    mutable QVTimeList m_ownTimes; // the times, until a list is handed out or set
    mutable QString m_text;        // the text, or what the text is a slice of
    QString m_propertyStr;
};

Q_DECLARE_TYPEINFO(std::shared_ptr<QVSongLine>, Q_RELOCATABLE_TYPE);

/// The lines of a document, in order.
using QVSongLineList = QList<std::shared_ptr<QVSongLine>>;
