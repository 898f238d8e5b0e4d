// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslConfiguration>

#include <openssl/x509.h>

#include <memory>

/// A certificate authority. It is made when the test runs, so that no private key is in the repository.
class TestAuthority
{
public:
    TestAuthority();

    /// The authority's certificate.
    QByteArray pem() const;

    /// The configuration of a server whose certificate is for \p name, such as "IP:127.0.0.1", and expires in
    /// \p secondsValid.
    QSslConfiguration issue(const char *name, long secondsValid = 3600) const;

private:
    using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
    using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

    static Key makeKey();
    Certificate sign(EVP_PKEY *key, const char *commonName, long secondsValid, int extension,
                     const char *value) const;

    Key m_key;
    Certificate m_certificate;
};
