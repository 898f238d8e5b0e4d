// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "MisbehavingServer.h"
#include "TestAuthority.h"

#include <QVSongLrc/QVLyricService.h>

/// The lyric service of a test. Lookups trust its certificate, unless the test passes another configuration than
/// trusted().
class LookupServer : public MisbehavingServer
{
public:
    explicit LookupServer(Behaviour behaviour, const QSslConfiguration &configuration = trusted())
        : MisbehavingServer(configuration, std::move(behaviour))
    {
        QVLyricService::setEndpoint(QStringLiteral("127.0.0.1"), port());
    }

    static const TestAuthority &authority()
    {
        static const TestAuthority theAuthority = [] {
            TestAuthority made;
            QVLyricService::addCertificateAuthorities(made.pem());
            return made;
        }();
        return theAuthority;
    }

    static const QSslConfiguration &trusted()
    {
        static const QSslConfiguration configuration = authority().issue("IP:127.0.0.1");
        return configuration;
    }
};
