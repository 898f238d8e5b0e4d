// SPDX-License-Identifier: MIT
#include "LyricView.h"

#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>

namespace {

// The text with the same number of code units, and a block of the view's for each of its lines: the view ends
// a block at more than line feeds.
QString blockForLine(QString text)
{
    const auto endsBlock = [](QChar c) {
        return c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator || c == QChar(0xFDD0)
            || c == QChar(0xFDD1);
    };
    if (std::any_of(text.cbegin(), text.cend(), endsBlock))
        std::replace_if(text.begin(), text.end(), endsBlock, QChar(u' '));
    return text;
}

} // namespace

LyricView::LyricView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setTabChangesFocus(true);
    setAcceptDrops(false); // a file that is dropped is the window's
}

void LyricView::setLyric(const QString &text)
{
    const QString shown = blockForLine(text);
    const qsizetype shorter = std::min(shown.size(), m_shown.size());
    qsizetype head =
        std::mismatch(shown.cbegin(), shown.cbegin() + shorter, m_shown.cbegin()).first - shown.cbegin();
    head = head == 0 ? 0 : shown.lastIndexOf(u'\n', head - 1) + 1; // whole lines
    qsizetype tail =
        std::mismatch(shown.crbegin(), shown.crbegin() + (shorter - head), m_shown.crbegin()).first
        - shown.crbegin();
    if (const qsizetype end = shown.indexOf(u'\n', shown.size() - tail); end >= 0)
        tail = shown.size() - end;
    else
        tail = 0;

    const qsizetype removed = m_shown.size() - head - tail;
    const qsizetype inserted = shown.size() - head - tail;
    if (removed == 0 && inserted == 0)
        return;
    QTextCursor cursor(document());
    cursor.setPosition(int(head));
    cursor.setPosition(int(head + removed), QTextCursor::KeepAnchor);
    cursor.insertText(shown.sliced(head, inserted));
    m_shown = shown;
}

void LyricView::highlight(std::optional<QVTextRange> range)
{
    QList<QTextEdit::ExtraSelection> selections;
    if (range && range->location + range->length <= quint64(m_shown.size())) {
        QTextEdit::ExtraSelection selection;
        selection.cursor = QTextCursor(document());
        selection.cursor.setPosition(int(range->location));
        selection.cursor.setPosition(int(range->location + range->length), QTextCursor::KeepAnchor);
        QColor background = palette().color(QPalette::Highlight);
        background.setAlpha(90); // the text keeps its own colour, in light and dark palettes
        selection.format.setBackground(background);
        selection.format.setProperty(QTextFormat::FullWidthSelection, true);
        selections.append(selection);

        // Without moving the cursor, which the user may be selecting with.
        QScrollBar &bar = *verticalScrollBar();
        const int line = document()->findBlock(int(range->location)).blockNumber();
        if (line < bar.value() || line >= bar.value() + bar.pageStep())
            bar.setValue(line - bar.pageStep() / 2);
    }
    setExtraSelections(selections);
}
