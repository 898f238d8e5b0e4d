// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Certificates.h"

#include "StorageError.h"

#include <QDebug>
#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryFile>

#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <ctime>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int Day = 24 * 60 * 60;
constexpr int RenewalDays = 30; // before a certificate expires
constexpr int AuthorityDays = 3652;
constexpr int ServerDays = 397; // some clients refuse longer validity

template <auto Function>
struct Free
{
    template <typename T>
    void operator()(T *object) const
    {
        Function(object);
    }
};
using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Bio = std::unique_ptr<BIO, Free<BIO_free>>;
using Number = std::unique_ptr<BIGNUM, Free<BN_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>>;

struct Identity
{
    Certificate certificate;
    Key key;
    bool isComplete() const
    {
        return certificate && key && X509_check_private_key(certificate.get(), key.get()) == 1;
    }
};

void check(bool succeeded)
{
    if (!succeeded)
        throw StorageError("can't create a certificate: OpenSSL failed"_L1);
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

Identity readIdentity(const QString &certificateFile, const QString &keyFile)
{
    const auto memory = [](const QByteArray &bytes) {
        return Bio(BIO_new_mem_buf(bytes.constData(), int(bytes.size())));
    };
    const QByteArray certificate = readFile(certificateFile);
    const QByteArray key = readFile(keyFile);
    // With an empty passphrase OpenSSL does not ask for one on the terminal.
    return {Certificate(PEM_read_bio_X509(memory(certificate).get(), nullptr, nullptr, nullptr)),
            Key(PEM_read_bio_PrivateKey(memory(key).get(), nullptr, nullptr, const_cast<char *>("")))};
}

// Writes a temporary file, which only its owner can read, and renames it, so that nobody reads a half-written one.
void writeFile(const QString &path, BIO *content, bool isSecret)
{
    char *bytes = nullptr;
    const auto size = BIO_get_mem_data(content, &bytes);
    QTemporaryFile file(path + ".XXXXXX"_L1);
    if (!file.open() || file.write(bytes, size) != size || !file.flush()
        || (!isSecret
            && !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
                                    | QFile::ReadOther))
        || std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData())
            != 0)
        throw StorageError("can't write "_L1 + path + ": "_L1 + file.errorString());
    file.setAutoRemove(false);
}

void writeIdentity(const Identity &identity, const QString &certificateFile, const QString &keyFile)
{
    const Bio key(BIO_new(BIO_s_mem()));
    const Bio certificate(BIO_new(BIO_s_mem()));
    check(PEM_write_bio_PKCS8PrivateKey(key.get(), identity.key.get(), nullptr, nullptr, 0, nullptr, nullptr)
              == 1
          && PEM_write_bio_X509(certificate.get(), identity.certificate.get()) == 1);
    writeFile(keyFile, key.get(), true);
    writeFile(certificateFile, certificate.get(), false);
}

bool isCurrent(const X509 *certificate)
{
    time_t soon = std::time(nullptr) + RenewalDays * Day;
    return X509_cmp_current_time(X509_get0_notBefore(certificate)) < 0
        && X509_cmp_time(X509_get0_notAfter(certificate), &soon) > 0;
}

void addExtension(X509 *certificate, X509 *issuer, int nid, const QByteArray &value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value.constData()));
    check(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

// A new key and certificate for \p name, signed by \p issuer, or self-signed when there is none.
Identity makeIdentity(const QByteArray &name, int days, const Identity *issuer,
                      const QList<std::pair<int, QByteArray>> &extensions)
{
    Identity made{Certificate(X509_new()), Key(EVP_EC_gen("P-256"))};
    check(made.certificate && made.key);
    X509 *certificate = made.certificate.get();
    X509 *signer = issuer ? issuer->certificate.get() : certificate;
    const Number serial(BN_new());
    X509_NAME *subject = X509_get_subject_name(certificate);
    check(X509_set_version(certificate, X509_VERSION_3) == 1
          && BN_rand(serial.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1
          && BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(certificate))
          && X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_UTF8,
                                        reinterpret_cast<const unsigned char *>(name.constData()),
                                        int(name.size()), -1, 0)
              == 1
          && X509_set_issuer_name(certificate, X509_get_subject_name(signer)) == 1
          && X509_gmtime_adj(X509_getm_notBefore(certificate), -Day) // a client's clock may be behind
          && X509_time_adj_ex(X509_getm_notAfter(certificate), days, 0, nullptr)
          && X509_set_pubkey(certificate, made.key.get()) == 1);
    for (const auto &[nid, value] : extensions)
        addExtension(certificate, signer, nid, value);
    check(X509_sign(certificate, issuer ? issuer->key.get() : made.key.get(), EVP_sha256()) > 0);
    return made;
}

bool isValidFor(X509 *certificate, const QHostAddress &address)
{
    const auto hasIp = [certificate](const char *ip) { return X509_check_ip_asc(certificate, ip, 0) == 1; };
    return X509_check_host(certificate, "localhost", 0, 0, nullptr) == 1 && hasIp("127.0.0.1") && hasIp("::1")
        && hasIp(address.toString().toLatin1().constData());
}

} // namespace

Certificates::Certificates(const QString &dataFolder, const QHostAddress &address)
    : m_folder(dataFolder)
    , m_address(address)
{
    m_address.setScopeId({}); // certificates have no scope
}

QString Certificates::file(QLatin1StringView name) const
{
    return m_folder + u'/' + name;
}

QString Certificates::authorityFile() const
{
    return file("authority.pem"_L1);
}

QSslConfiguration Certificates::prepare() const
{
    const QString authorityKeyFile = file("authority-key.pem"_L1);
    Identity authority = readIdentity(authorityFile(), authorityKeyFile);
    // A key without a certificate was left by an interrupted start: no client trusts it yet.
    const bool exists = QFile::exists(authorityFile());
    if (exists && !authority.isComplete())
        throw StorageError(authorityFile()
                           + " or its key is damaged; remove both to create a new authority"_L1);
    if (!exists || !isCurrent(authority.certificate.get())) {
        if (exists)
            qWarning() << "the certificate authority was about to expire; clients need the new"
                       << authorityFile();
        authority = makeIdentity("Lyric service on this machine", AuthorityDays, nullptr,
                                 {{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
                                  {NID_key_usage, "critical,keyCertSign,cRLSign"},
                                  {NID_subject_key_identifier, "hash"}});
        writeIdentity(authority, authorityFile(), authorityKeyFile);
    }

    const QString serverFile = file("server.pem"_L1);
    const QString serverKeyFile = file("server-key.pem"_L1);
    const Identity server = readIdentity(serverFile, serverKeyFile);
    const bool isUsable = server.isComplete() && isCurrent(server.certificate.get())
        && X509_verify(server.certificate.get(), authority.key.get()) == 1
        && isValidFor(server.certificate.get(), m_address);
    if (!isUsable) {
        // The same address twice does no harm.
        const QByteArray names = "DNS:localhost,IP:127.0.0.1,IP:::1,IP:" + m_address.toString().toLatin1();
        writeIdentity(makeIdentity("localhost", ServerDays, &authority,
                                   {{NID_basic_constraints, "critical,CA:FALSE"},
                                    {NID_key_usage, "critical,digitalSignature"},
                                    {NID_ext_key_usage, "serverAuth"},
                                    {NID_subject_alt_name, names},
                                    {NID_subject_key_identifier, "hash"},
                                    {NID_authority_key_identifier, "keyid"}}),
                      serverFile, serverKeyFile);
    }

    QSslConfiguration configuration;
    configuration.setLocalCertificate(QSslCertificate(readFile(serverFile), QSsl::Pem));
    configuration.setPrivateKey(QSslKey(readFile(serverKeyFile), QSsl::Ec, QSsl::Pem));
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    // A short list: Qt parses it for each connection.
    configuration.setCiphers(u"TLS_AES_128_GCM_SHA256:TLS_AES_256_GCM_SHA384:TLS_CHACHA20_POLY1305_SHA256:"
                             u"ECDHE-ECDSA-AES128-GCM-SHA256:"
                             "ECDHE-ECDSA-AES256-GCM-SHA384:ECDHE-ECDSA-CHACHA20-POLY1305"_s);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone); // clients have no certificate
    return configuration;
}
