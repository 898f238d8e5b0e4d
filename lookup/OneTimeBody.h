// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>

#include <algorithm>

namespace QVSongLrcPrivate {

/// A request's body that can be read only once. A lookup must not be sent twice, but when the connection closes
/// before the reply begins, Qt sends the request again, up to three times, if it can read the body again.
class OneTimeBody final : public QIODevice
{
public:
    explicit OneTimeBody(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(ReadOnly | Unbuffered);
    }

    qint64 size() const override { return m_bytes.size(); }

    bool reset() override { return false; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 length = std::min<qint64>(maxSize, m_bytes.size() - m_at);
        std::copy_n(m_bytes.constData() + m_at, length, data);
        m_at += length;
        return length;
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    qint64 m_at = 0;
};

} // namespace QVSongLrcPrivate
