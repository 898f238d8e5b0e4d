// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QSslConfiguration>
#include <QString>

/// The service's own certificate authority, and the certificate that it shows to clients, kept in the data
/// folder: authority.pem, authority-key.pem, server.pem, server-key.pem. The keys are readable by their owner
/// only from the first byte on.
///
/// A client that trusts authority.pem can verify the service as localhost, 127.0.0.1, ::1 and the address
/// that it listens on.
class Certificates
{
public:
    Certificates(const QString &dataFolder, const QHostAddress &address);

    QString authorityFile() const;

    /// What a server needs for TLS. Makes the authority (for ten years) and the certificate (for a year)
    /// where they are missing, about to expire, or not made for the address; a new authority is told on
    /// standard error, for clients need it.
    ///
    /// \throws ServiceError when the files can't be written or the authority's are damaged.
    QSslConfiguration prepare() const;

private:
    QString file(QLatin1StringView name) const;

    const QString m_folder;
    QHostAddress m_address;
};
