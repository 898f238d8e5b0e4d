// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QSslConfiguration>
#include <QString>

/// The service's own certificate authority and server certificate, kept in the data folder as authority.pem,
/// authority-key.pem, server.pem and server-key.pem. Only their owner can read the key files, even while they are
/// being written.
///
/// A client that trusts authority.pem can verify the service as localhost, 127.0.0.1, ::1 and the address
/// it listens on.
class Certificates
{
public:
    Certificates(const QString &dataFolder, const QHostAddress &address);

    QString authorityFile() const;

    /// The TLS configuration of the server. Creates the authority and the certificate when they are missing, about to
    /// expire, or do not cover the address. Logs a warning when it replaces an authority, because clients need the
    /// new one.
    ///
    /// \throws StorageError when a file can't be written or the authority's files are damaged.
    QSslConfiguration prepare() const;

private:
    QString file(QLatin1StringView name) const;

    const QString m_folder;
    QHostAddress m_address;
};
