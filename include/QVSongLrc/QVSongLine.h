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
class LineBlocks;
class QVLineWriter;
} // namespace QVSongLrcPrivate

/// Times in ms. The list holds up to three of them without an allocation of its own.
using QVTimeList = QVarLengthArray<qint64, 3>;

/// One line of a lyric: a lyric line, which has times and a text that is sung ("[00:01.00]words"), or a
/// property line, which has a two-letter key and a value ("[ar:Artist]").
///
/// Documents and hosts share lines by `std::shared_ptr`: a change through one pointer shows through all. Use
/// a line from one thread at a time, const functions included: they may change how the line stores its data.
///
/// A document makes its lines in blocks, and their texts are slices of the document's text. A line that outlives its
/// document keeps that text and its block alive: up to 64 lines, or 2 MiB of lines in a text of millions of characters.
/// So a line that was removed, and the times and texts that a host gave it, may live as long as its neighbours do. The
/// first call of lineText() copies the slice into a string of the line's own.
///
/// The data members are in this header, and their layout is fixed for 1.x, because a pointer to private data
/// would cost an allocation for every line of a lyric.
class QVSONGLRC_CORE_EXPORT QVSongLine
{
public:
    /// A lyric line without times. Its text and key are absent.
    QVSongLine() = default;

    /// A new line with the same values. Its times are copied into a list of its own.
    explicit QVSongLine(const QVSongLine &other);
    QVSongLine &operator=(const QVSongLine &) = delete;
    ~QVSongLine() = default;

    /// A new lyric line whose text is "", not absent.
    static std::shared_ptr<QVSongLine> emptyLine();

    /// The line's times in ms, in the order in which they were added: not sorted, duplicates kept. Never
    /// null. It is the list itself, not a copy: changing it changes the line. It may outlive the line. The
    /// first call allocates the list.
    std::shared_ptr<QVTimeList> aryTimes();
    std::shared_ptr<const QVTimeList> aryTimes() const;

    /// Uses \p times itself, not a copy, as the list of times. A null pointer stands for a new empty list.
    void setAryTimes(std::shared_ptr<QVTimeList> times);

    /// A lyric line's text, which follows its time tags, or a property line's value. An absent text is
    /// written as "(null)".
    QString lineText() const;
    void setLineText(const QString &text);

    /// The line's place in the text that its document wrote last, in UTF-16 code units. The documents set it;
    /// a change of the line leaves it as it is.
    QVTextRange txtRg() const { return m_txtRg; }
    void setTxtRg(QVTextRange range) { m_txtRg = range; }

    /// The first time of the list (not the smallest) in seconds; 0.0 if there is none.
    double playTime() const;

    /// Whether this is a property line. It may have times too, which displayText() does not write.
    bool isProperty() const { return m_isProperty; }
    void setIsProperty(bool isProperty);

    /// A property line's key, without bracket and colon.
    QString propertyStr() const;
    void setPropertyStr(const QString &key);

    /// The line as LRC text without a line feed: "[key:value]", or the time tags followed by the text.
    QString displayText() const;

    /// Property lines are equal if their keys and values are equal. Lyric lines are equal if their texts and
    /// their times, in order, are equal. Ranges are not compared. A null pointer or an absent string equals
    /// nothing, so a line without a text does not even equal itself.
    bool isEqual(const QVSongLine *other) const;
    bool isEqual(const std::shared_ptr<const QVSongLine> &other) const { return isEqual(other.get()); }

    /// The times, range and text in one line for debugging, with a line feed at the end.
    QString description() const;

    /// Adds \p milliseconds to every time of a lyric line. Results are limited to the range from 0 to the
    /// largest qint64. The times of a property line do not change.
    void shiftAllTime(qint64 milliseconds);

    /// Appends a time in ms; any value is allowed.
    void appendTime(qint64 milliseconds);

    /// Sets the text that a user typed for this line.
    ///
    /// If this is a property line and \p text contains a property tag, key and value are taken from \p text:
    /// the key is the part before the first ":" without its first code unit, the value is the part between
    /// the first and the second ":" (or the end) without its last code unit. Otherwise the line becomes, or
    /// stays, a lyric line with \p text as its text; time tags in \p text are not read. An absent \p text
    /// stays absent.
    void updateWithText(const QString &text);

    /// Replaces the time at \p atIndex by the time of the tag \p timeStr (see QVUtils::getTimeInterval()), or
    /// removes it if \p timeStr is empty. Does nothing if there is no such time.
    ///
    /// \throws std::out_of_range if the time exists and \p timeStr is a single code unit; nothing changes.
    void updateWithTimeStr(const QString &timeStr, qint64 atIndex);

private:
    friend class QVEditSong;
    friend class QVPreviewSong;
    friend class QVSongLrcPrivate::LineBlocks;
    friend class QVSongLrcPrivate::QVLineWriter;

    struct Extra; // what few lines have
    struct DeleteExtra
    {
        QVSONGLRC_CORE_EXPORT void operator()(Extra *extra) const;
    };
    Extra &extra() const;

    QStringView textView() const;
    QStringView keyView() const;
    qsizetype timeCount() const;
    qint64 timeAt(qsizetype index) const;
    void setTimeAt(qsizetype index, qint64 milliseconds);
    qint64 firstTime() const;

    QStringView displaySlice() const;
    qsizetype displayLength() const;
    char16_t *writeDisplayText(char16_t *out) const;

    // 64 bytes, as most cache lines.
    const QString *m_source = nullptr;                   // the text that slices refer to; the block owns it
    mutable std::unique_ptr<Extra, DeleteExtra> m_extra; // null for most lines
    qint64 m_position = 0;                               // of the text, if it is a slice
    quint32 m_textLength = 0;                            // of the slice
    quint8 m_prefixLength = 0;                           // of "[key:" or the time tags right before the slice
    quint8 m_ownTimeCount = 0;                           // more times, and large ones, are in m_extra
    bool m_isProperty = false;
    bool m_textIsSlice : 1 = false;
    bool m_keyIsSlice : 1 = false;
    mutable bool m_displayIsSlice : 1 = false; // displayText() is in the source, around the text
    qint32 m_ownTimes[4] = {};
    QVTextRange m_txtRg;
};

Q_DECLARE_TYPEINFO(std::shared_ptr<QVSongLine>, Q_RELOCATABLE_TYPE);

/// The lines of a document, in order.
using QVSongLineList = QList<std::shared_ptr<QVSongLine>>;
