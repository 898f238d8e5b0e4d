// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TestAuthority.h"

#include <QSslKey>

#include <openssl/evp.h>
#include <openssl/x509v3.h>

namespace {

template <typename T>
QByteArray der(int (*encode)(const T *, unsigned char **), const T *object)
{
    unsigned char *bytes = nullptr;
    const int length = encode(object, &bytes);
    const QByteArray copy(reinterpret_cast<const char *>(bytes), length);
    OPENSSL_free(bytes);
    return copy;
}

} // namespace

TestAuthority::TestAuthority()
    : m_key(makeKey())
    , m_certificate(nullptr, X509_free)
{
    m_certificate = sign(m_key.get(), "Test authority", 7200, NID_basic_constraints, "critical,CA:TRUE");
}

QByteArray TestAuthority::pem() const
{
    return QSslCertificate(der<X509>(i2d_X509, m_certificate.get()), QSsl::Der).toPem();
}

QSslConfiguration TestAuthority::issue(const char *name, long secondsValid) const
{
    const Key key = makeKey();
    const Certificate leaf = sign(key.get(), "Test server", secondsValid, NID_subject_alt_name, name);
    QSslConfiguration configuration;
    configuration.setLocalCertificate(QSslCertificate(der<X509>(i2d_X509, leaf.get()), QSsl::Der));
    configuration.setPrivateKey(QSslKey(der<EVP_PKEY>(i2d_PrivateKey, key.get()), QSsl::Ec, QSsl::Der));
    return configuration;
}

TestAuthority::Key TestAuthority::makeKey()
{
    return Key(EVP_EC_gen("P-256"), EVP_PKEY_free);
}

TestAuthority::Certificate TestAuthority::sign(EVP_PKEY *key, const char *commonName, long secondsValid,
                                               int extension, const char *value) const
{
    static long serial = 0;
    Certificate certificate(X509_new(), X509_free);
    X509 *const x509 = certificate.get();
    X509_set_version(x509, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(x509), ++serial);
    X509_gmtime_adj(X509_getm_notBefore(x509), -7200);
    X509_gmtime_adj(X509_getm_notAfter(x509), secondsValid);
    X509_set_pubkey(x509, key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(x509), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char *>(commonName), -1, -1, 0);
    X509_set_issuer_name(x509, X509_get_subject_name(m_certificate ? m_certificate.get() : x509));
    X509_EXTENSION *const added = X509V3_EXT_conf_nid(nullptr, nullptr, extension, value);
    X509_add_ext(x509, added, -1);
    X509_EXTENSION_free(added);
    X509_sign(x509, m_key.get(), EVP_sha256());
    return certificate;
}
