// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupOptions.h"

#include "FileDescriptor.h"
#include "FileError.h"

#include <QVSongLrc/QVLyricService.h>

#include <CLI/CLI.hpp>

#include <cerrno>
#include <fcntl.h>
#include <stdexcept>

namespace {

QUrl serviceUrl(const std::string &service)
{
    return QUrl(QStringLiteral("https://") + QString::fromStdString(service), QUrl::StrictMode);
}

// Whether \p service is a host with an optional port, as in "localhost:8443".
bool isHostAndPort(const std::string &service)
{
    const QUrl url = serviceUrl(service);
    return url.isValid() && !url.host().isEmpty() && url.port(443) > 0 && url.path().isEmpty()
        && url.userInfo().isEmpty() && !url.hasQuery() && !url.hasFragment();
}

} // namespace

void LookupOptions::addTo(CLI::App &command)
{
    command.add_option("--service", service, "Use this lyric service.")
        ->type_name("HOST[:PORT]")
        ->check([](const std::string &name) {
            return isHostAndPort(name) ? "" : "not a host and port: " + name;
        });
    command
        .add_option("--ca-file", caFile,
                    "Trust the certificate authorities in this PEM file instead of the system's.")
        ->type_name("FILE")
        ->check([](const std::string &file) { return file.empty() ? "the file name is empty" : ""; });
}

void LookupOptions::apply() const
{
    if (!service.empty()) {
        const QUrl url = serviceUrl(service);
        QVLyricService::setEndpoint(url.host(), quint16(url.port(443)));
    }
    if (!caFile.empty()) {
        const FileDescriptor file(open(caFile.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file.isValid())
            throw FileError(caFile, systemError(errno));
        try {
            QVLyricService::addCertificateAuthorities(readAll(file.get(), caFile));
        } catch (const std::invalid_argument &) {
            throw FileError(caFile, "does not hold certificates in PEM");
        }
    }
}
