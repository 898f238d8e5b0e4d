// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslConfiguration>

#include <openssl/x509.h>

#include <memory>

/// A certificate authority of the test's own, made when the test runs: no key lies in the repository.
class TestAuthority
{
public:
    TestAuthority();

    QSslCertificate certificate() const;

    /// What a server presents that is called \p name, such as "IP:127.0.0.1", up to \p secondsValid from now.
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
