// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricService.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QVLyricService::setEndpoint("localhost", 1); // where nobody listens
    ZTLyricRequestModel::initWithReqParams({{"track", "Auld Lang Syne"}})
        ->requestWithCompletion([](const std::optional<QVLyricError> &error, const QString &) {
            QCoreApplication::exit(error && error->domain == QVLyricError::TransportDomain ? 0 : 1);
        });
    return QCoreApplication::exec();
}
